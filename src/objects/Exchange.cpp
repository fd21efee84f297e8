#include "objects/Exchange.h"

#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "objects/GatewayObjects.h"
#include "objects/Members.h"
#include "runtime/Runtime.h"

namespace kartix::objects {
namespace {

constexpr std::int32_t httpOk = 200;

std::string transportFailure(std::int32_t status, const std::string& text) {
  return std::string(status < 0 ? "COM" : "HTTP") + "/" + std::to_string(status) + ": " + text;
}

/// Why there is no login; empty when there is one. The login has told the clerk the reason by itself: here it is only
/// said what came of it.
std::string logIn(const ObjectContext& context) {
  std::string returnText;
  std::string newPassword;
  const std::int32_t code =
      context.login.ZEVISLogin(context.runtime.konfiguration.ZEVISPass, returnText, newPassword);
  if (code >= 0 && code <= login_result::lastSuccess) return {};
  if (login_result::changeDemanded(code)) return "Ohne ein neues ZEVIS-Passwort ist keine Anmeldung möglich.";
  return "Keine Anmeldung am ZEVIS-Gateway.";
}

Exchanged send(const ObjectContext& context, const Request& request) {
  const auto document = context.kba.createDocument();
  if (!request.build(*document)) return {nullptr, "Die Anfrage konnte nicht erstellt werden."};
  auto answer = context.kba.createDocument();
  std::string errorText;
  const std::int32_t status = context.kba.PostXml(request.path, *document, *answer, errorText, request.effect);
  if (status != httpOk) return {nullptr, transportFailure(status, errorText)};
  return {std::move(answer), {}};
}

}  // namespace

Exchanged exchange(const ObjectContext& context, const Request& request) {
  Exchanged first = send(context, request);
  if (!first.answer || !request.asksForLogin(*first.answer)) return first;
  context.kba.answerUnderstood();
  if (std::string failure = logIn(context); !failure.empty()) return {nullptr, std::move(failure)};
  Exchanged second = send(context, request);
  if (!second.answer || !request.asksForLogin(*second.answer)) return second;
  context.kba.answerUnderstood();
  return {nullptr, "Fehler beim Login KBA."};
}

}  // namespace kartix::objects
