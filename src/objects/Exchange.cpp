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

/// Why the login failed; empty when it did not.
std::string logIn(const ObjectContext& context) {
  const LoginAnswer answer = attemptLogin(context.runtime, context.kba, context.runtime.konfiguration.ZEVISPass, "");
  if (answer.status != httpOk) return transportFailure(answer.status, answer.errorText);
  if (!answer.isLogin()) return unknownAnswer(answer.kind);
  if (answer.RETC >= 0 && answer.RETC <= login_result::lastSuccess) return {};
  return "ZEVIS-Login fehlgeschlagen: " + std::to_string(answer.RETC) + ": " + answer.RETT;
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
