#include "gateway/OperationExchange.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "common/Values.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/OperationWindow.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int16_t done = 100;
constexpr std::string_view communicationFailed = "Kommunikation fehlgeschlagen";
constexpr std::string_view loginFailed = "Login fehlgeschlagen";

/// One request and its answer; nothing when there is none, which the clerk knows already.
std::unique_ptr<platform::XmlDocument> sendOnce(const ExchangeContext& context, const OperationTraits& traits,
                                                std::string_view path,
                                                const std::function<bool(platform::XmlDocument&)>& build) {
  const auto request = context.kba.createDocument();
  auto answer = context.kba.createDocument();
  context.window.ShowProgress(40, traits.sending, true);
  if (!build(*request)) return nullptr;
  context.window.ShowProgress(45, "", true);
  std::string errorText;
  const std::int32_t status = context.kba.PostXml(path, *request, *answer, errorText, Effect::changes);
  context.window.ShowProgress(50, "", true);
  if (!context.kba.CheckHttpStatus(status, errorText)) return nullptr;
  return answer;
}

bool logIn(const ExchangeContext& context, const OperationTraits& traits) {
  context.window.ShowProgress(20, "ZEVIS Login", traits.animateLogin);
  std::string returnText;
  std::string newPassword;
  const std::int32_t login = context.login.ZEVISLogin(context.window.password(), returnText, newPassword);
  if (login >= 0 && login <= login_result::lastSuccess) return true;
  context.window.ShowProgress(done, loginFailed, true);
  return false;
}

bool failed(const ExchangeContext& context, std::string_view status, std::int32_t error) {
  context.window.ShowProgress(done, status, true);
  context.runtime.reporting.ReportError(error);
  return false;
}

std::string errorMessage(platform::AutomationObject& object) {
  try {
    return toText(object.call("GetErrorMsg", {}));
  } catch (const platform::AutomationError& failure) {
    return failure.what();
  }
}

}  // namespace

bool exchangeHttp(const ExchangeContext& context, const OperationTraits& traits, std::string_view path,
                  const std::function<bool(platform::XmlDocument&)>& build,
                  const std::function<std::int32_t(const platform::XmlDocument&)>& read) {
  bool loginTried = false;
  for (;;) {
    const auto answer = sendOnce(context, traits, path, build);
    if (!answer) {
      context.window.ShowProgress(done, communicationFailed, true);
      return false;
    }
    context.window.ShowProgress(55, "Antwort wird verarbeitet...", true);
    const std::int32_t code = read(*answer);
    if (code == 0) return true;
    if (code != traits.notLoggedIn) return failed(context, traits.refused, traits.refusal);
    if (loginTried) return failed(context, loginFailed, 205);
    loginTried = true;
    if (!logIn(context, traits)) return false;
  }
}

bool exchangeAutomation(const ExchangeContext& context, const OperationTraits& traits, std::string_view progId,
                        const std::function<bool(platform::AutomationObject&)>& perform) {
  std::unique_ptr<platform::AutomationObject> object;
  std::optional<std::string> systemText;
  try {
    object = context.runtime.machine.objects.createObject(progId);
    if (perform(*object)) return true;
  } catch (const platform::AutomationError& failure) {
    systemText = failure.what();
  }
  context.window.ShowProgress(done, traits.refused, true);
  context.runtime.reporting.ReportError(traits.refusalByObject, systemText ? *systemText : errorMessage(*object));
  return false;
}

void announceSuccess(const ExchangeContext& context, std::string_view status, std::string_view message,
                     std::string_view caption) {
  try {
    context.window.ShowProgress(done, status, true);
    context.runtime.reporting.InfoMsg(message, caption);
  } catch (const std::exception& failure) {
    const std::string line = std::string(status) + ", aber nicht angezeigt: " + failure.what();
    context.runtime.trace.TraceLine(line, trace_level::calls);
  }
}

}  // namespace kartix
