#include "gateway/Login.h"

#include <utility>

#include "common/Numbers.h"
#include "gateway/KBAInterface.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int32_t httpOk = 200;

// Return codes of the gateway's login.
constexpr std::int32_t passwordChanged = 300;
constexpr std::int32_t passwordExpiresSoon = 500;
constexpr std::int32_t firstRefusal = 1000;
constexpr std::int32_t passwordExpired = 3005;
constexpr std::int32_t passwordMustChange = 3006;

bool changeDemanded(std::int32_t code) { return code == passwordExpired || code == passwordMustChange; }

}  // namespace

LoginAnswer attemptLogin(Runtime& runtime, KBAInterface& kba, const std::string& password,
                         const std::string& newPassword) {
  const auto request = kba.createDocument();
  const auto response = kba.createDocument();
  KBAInterface::NewXmlDocument(*request, "ZEVIS-LOGIN", "");
  platform::XmlNode root = request->documentElement();
  request->appendElement(root, "KENN", runtime.konfiguration.ZEVISUserName);
  request->appendElement(root, "PASS", password);
  if (!newPassword.empty()) request->appendElement(root, "PASSN", newPassword);

  LoginAnswer answer;
  const Effect effect = newPassword.empty() ? Effect::reads : Effect::changes;
  answer.status = kba.PostXml(runtime.konfiguration.ZEVISAuthURI, *request, *response, answer.errorText, effect);
  answer.kind = rootName(*response);
  answer.RETC = leadingInt32(firstText(*response, "//RETC"));
  answer.RETT = firstText(*response, "//RETT");
  return answer;
}

std::int32_t Login::ZEVISLogin(std::string password, std::string& returnText, std::string& newPassword) {
  constexpr std::int32_t firstStatus = 100;
  constexpr std::int32_t lastStatus = 999;
  Reporting& reporting = runtime_.reporting;
  for (;;) {
    const LoginAnswer answer = attemptLogin(runtime_, kba_, password, newPassword);
    const bool reportable = answer.status < 0 || (answer.status >= firstStatus && answer.status <= lastStatus);
    if (answer.status != httpOk && reportable) {
      kba_.CheckHttpStatus(answer.status, answer.errorText);
      return login_result::failed;
    }
    if (!answer.isLogin()) {
      reporting.ReportError(201, answer.kind);
      return login_result::failed;
    }
    returnText = answer.RETT;
    // A confirmation that nobody asked for must not replace the stored password by an empty one.
    if (answer.RETC == passwordChanged && !newPassword.empty()) {
      runtime_.konfiguration.SaveZEVISPass(newPassword);
      runtime_.konfiguration.ZEVISPass = newPassword;
      password = std::exchange(newPassword, {});
      reporting.InfoMsg("Das ZEVIS-Passwort wurde geändert.", hintCaption);
    } else if (changeDemanded(answer.RETC)) {
      if (!runtime_.konfiguration.AllowPassChange) {
        reporting.InfoMsg(
            "Das ZEVIS-Passwort muß geändert werden, aber Sie haben keine Berechtigung dazu. Bitte wenden Sie sich "
            "an "
            "einen Systembetreuer.",
            "Abfrage fehlgeschlagen.");
        return login_result::refused;
      }
      const PasswordChange change = prompt_.askNewPassword();
      newPassword = change.newPassword;
      if (change.result != 1) return answer.RETC;
    } else if (answer.RETC == passwordExpiresSoon) {
      reporting.InfoMsg(std::to_string(answer.RETC) + ": " + answer.RETT, "ZEVIS-Passwort läuft bald ab");
      return answer.RETC;
    } else if (answer.RETC < firstRefusal) {
      return answer.RETC;
    } else {
      reporting.ReportError(202, std::to_string(answer.RETC), answer.RETT);
      return login_result::refused;
    }
  }
}

}  // namespace kartix
