#include "gateway/Login.h"

#include <algorithm>
#include <utility>

#include "common/Numbers.h"
#include "gateway/KBAInterface.h"
#include "gateway/UnclearEnd.h"
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

}  // namespace

bool login_result::changeDemanded(std::int32_t code) { return code == passwordExpired || code == passwordMustChange; }

/// One attempt, as it was answered.
struct Login::Answer {
  std::int32_t status = 0;  ///< as `KBAInterface::PostXml` returns it
  std::string errorText;
  std::string kind;       ///< name of the answer's document element
  std::int32_t RETC = 0;  ///< return code
  std::string RETT;       ///< return text
};

Login::Answer Login::attempt(const std::string& password, const std::string& newPassword) {
  const auto request = kba_.createDocument();
  const auto response = kba_.createDocument();
  KBAInterface::NewXmlDocument(*request, "ZEVIS-LOGIN", "");
  platform::XmlNode root = request->documentElement();
  request->appendElement(root, "KENN", runtime_.konfiguration.ZEVISUserName);
  request->appendElement(root, "PASS", password);
  if (!newPassword.empty()) request->appendElement(root, "PASSN", newPassword);

  Answer answer;
  const Effect effect = newPassword.empty() ? Effect::reads : Effect::changes;
  answer.status = kba_.PostXml(runtime_.konfiguration.ZEVISAuthURI, *request, *response, answer.errorText, effect);
  answer.kind = rootName(*response);
  answer.RETC = leadingInt32(firstText(*response, "//RETC"));
  answer.RETT = firstText(*response, "//RETT");
  return answer;
}

/// Nothing when the gateway gave no answer of a login, which the clerk has been told.
std::optional<Login::Answer> Login::ask(const std::string& password, const std::string& newPassword,
                                        const std::string& stored) {
  constexpr std::int32_t firstStatus = 100;
  constexpr std::int32_t lastStatus = 999;
  if (!newPassword.empty()) kba_.forgetChange();
  Answer answer;
  try {
    answer = attempt(password, newPassword);
  } catch (...) {
    doubt(stored, newPassword, "Abbruch");
    throw;
  }
  const bool reportable = answer.status < 0 || (answer.status >= firstStatus && answer.status <= lastStatus);
  if (answer.status != httpOk && reportable) {
    doubt(stored, newPassword, (answer.status < 0 ? "COM/" : "HTTP/") + std::to_string(answer.status));
    kba_.CheckHttpStatus(answer.status, answer.errorText);
    return std::nullopt;
  }
  if (answer.kind != "ZEVIS-HINWEIS") {
    doubt(stored, newPassword, "Antwort nicht verstanden");
    runtime_.reporting.ReportError(201, answer.kind);
    return std::nullopt;
  }
  if (!newPassword.empty()) kba_.answerUnderstood();
  return answer;
}

/// Remembers a change that went out when no answer tells of it.
void Login::doubt(const std::string& stored, const std::string& newPassword, std::string_view reason) {
  if (newPassword.empty()) return;
  const bool sent = kba_.lastChange() == KBAInterface::Change::unanswered;
  // The message that this login is for has been answered: with the wish for a login.
  kba_.answerUnderstood();
  if (!sent) return;
  const std::string& user = runtime_.konfiguration.ZEVISUserName;
  traceUnclearEnd(runtime_.trace, "Passwortänderung", user, reason);
  runtime_.trace.TraceLine("Das alte ZEVIS-Passwort bleibt gespeichert", trace_level::calls);
  if (!unclear_ || unclear_->user != user || unclear_->oldPassword != stored) unclear_ = {user, stored, {}};
  std::erase(unclear_->newPasswords, newPassword);
  unclear_->newPasswords.push_back(newPassword);
}

/// The new password of a change in doubt when `stored` is the old one; `refused` is none any more.
std::optional<std::string> Login::alternativeTo(const std::string& stored, const std::string& refused) {
  const bool fits =
      unclear_ && unclear_->user == runtime_.konfiguration.ZEVISUserName && unclear_->oldPassword == stored;
  if (!fits) return std::nullopt;
  std::erase(unclear_->newPasswords, refused);
  if (unclear_->newPasswords.empty()) return std::nullopt;
  return unclear_->newPasswords.back();
}

/// The gateway knows `newPassword` from now on, whether that can be stored and told or not. One that could not be
/// stored is tried when the former is refused. True when it is the stored one from now on.
bool Login::adopt(const std::string& stored, const std::string& newPassword) {
  bool saved = false;
  try {
    unclear_ = {runtime_.konfiguration.ZEVISUserName, stored, {newPassword}};
    saved = runtime_.konfiguration.SaveZEVISPass(newPassword);
    runtime_.konfiguration.ZEVISPass = newPassword;
    if (saved) unclear_.reset();
  } catch (...) {
    runtime_.trace.TraceLine("Neues ZEVIS-Passwort konnte nicht gespeichert werden", trace_level::calls);
  }
  try {
    if (runtime_.reporting.InfoMsg("Das ZEVIS-Passwort wurde geändert.", hintCaption)) return saved;
  } catch (...) {  // traced below
  }
  runtime_.trace.TraceLine("Meldung nicht angezeigt", trace_level::calls);
  return saved;
}

/// True when the clerk has entered a new password; else `result` is what the login comes to.
bool Login::askForChange(std::string& newPassword, std::int32_t& result) {
  if (!runtime_.konfiguration.AllowPassChange) {
    runtime_.reporting.InfoMsg(
        "Das ZEVIS-Passwort muß geändert werden, aber Sie haben keine Berechtigung dazu. Bitte wenden Sie sich an "
        "einen Systembetreuer.",
        "Abfrage fehlgeschlagen.");
    result = login_result::refused;
    return false;
  }
  const PasswordChange change = prompt_.askNewPassword();
  newPassword = change.newPassword;
  return change.result == 1;
}

std::int32_t Login::ZEVISLogin(std::string password, std::string& returnText, std::string& newPassword) {
  std::string stored = password;
  bool offered = false;  // `password` comes from a change in doubt
  for (;;) {
    const auto answer = ask(password, newPassword, stored);
    if (!answer) return login_result::failed;
    returnText = answer->RETT;
    std::int32_t result = answer->RETC;
    // A confirmation that nobody asked for must not replace the stored password by an empty one.
    if (result == passwordChanged && !newPassword.empty()) {
      const bool saved = adopt(stored, newPassword);
      password = std::exchange(newPassword, {});
      if (saved) stored = password;
      offered = false;
      continue;
    }
    const bool demanded = login_result::changeDemanded(result);
    if (result >= firstRefusal && !demanded) {
      auto alternative = alternativeTo(stored, password);
      if (!alternative) {
        runtime_.reporting.ReportError(202, std::to_string(result), returnText);
        return login_result::refused;
      }
      password = std::move(*alternative);
      if (newPassword == password) newPassword.clear();
      offered = true;
      continue;
    }
    if (offered && adopt(stored, password)) stored = password;
    offered = false;
    // One that counts and could not be stored is needed once more when the stored one is.
    const auto counts = [&](const std::string& known) { return known == password; };
    if (unclear_ && std::ranges::none_of(unclear_->newPasswords, counts)) unclear_.reset();
    if (demanded) {
      if (!askForChange(newPassword, result)) return result;
      continue;
    }
    if (result == passwordExpiresSoon) {
      runtime_.reporting.InfoMsg(std::to_string(result) + ": " + returnText, "ZEVIS-Passwort läuft bald ab");
    }
    return result;
  }
}

}  // namespace kartix
