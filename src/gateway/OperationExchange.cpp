#include "gateway/OperationExchange.h"

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "common/Values.h"
#include "gateway/Delivery.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/OperationWindow.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int32_t httpOk = 200;
constexpr std::int16_t done = 100;
constexpr std::string_view communicationFailed = "Kommunikation fehlgeschlagen";
constexpr std::string_view loginFailed = "Login fehlgeschlagen";

/// Progress after the message has gone out: it is there to be looked at, and must not cost the outcome.
void show(const ExchangeContext& context, std::int16_t percent, std::string_view status) noexcept {
  try {
    context.window.ShowProgress(percent, status, true);
  } catch (...) {
    context.runtime.trace.TraceLine("Fortschritt nicht angezeigt", trace_level::calls);
  }
}

/// One request and its answer; nothing when there is none, which the clerk knows already.
std::unique_ptr<platform::XmlDocument> sendOnce(const ExchangeContext& context, const OperationTraits& traits,
                                                std::string_view path, Delivery& delivery,
                                                const std::function<bool(platform::XmlDocument&)>& build) {
  const auto request = context.kba.createDocument();
  auto answer = context.kba.createDocument();
  context.window.ShowProgress(40, traits.sending, true);
  if (!build(*request)) return nullptr;
  context.window.ShowProgress(45, "", true);
  std::string errorText;
  const std::int32_t status = context.kba.PostXml(path, *request, *answer, errorText, Effect::changes);
  show(context, 50, "");
  if (status == httpOk) return answer;
  // Before the clerk reads the message: nobody knows how long that takes.
  delivery.failed(status);
  context.kba.CheckHttpStatus(status, errorText);
  return nullptr;
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

/// Tells the clerk how it ended, by `tell`, which is False when nothing could be shown. A machine short of memory
/// gets a second chance; after that the trace and standard error are told.
template <class Tell>
void insist(const ExchangeContext& context, std::string_view status, Tell tell) noexcept {
  constexpr int tries = 2;
  for (int i = 0; i < tries; ++i) {
    try {
      context.window.ShowProgress(done, status, true);
      if (tell()) return;
    } catch (...) {  // told below
    }
  }
  context.runtime.trace.TraceLine("Meldung nicht angezeigt", trace_level::calls);
  std::fprintf(stderr, "kartix: %.*s, Meldung nicht angezeigt\n", static_cast<int>(status.size()), status.data());
}

bool failed(const ExchangeContext& context, std::string_view status, std::int32_t error,
            std::string_view detail = {}) noexcept {
  insist(context, status, [&] { return context.runtime.reporting.ReportError(error, detail); });
  return false;
}

std::string errorMessage(platform::AutomationObject& object) {
  try {
    return toText(object.call("GetErrorMsg", {}));
  } catch (const platform::AutomationError& failure) {
    return failure.what();
  }
}

/// Nothing has been sent, and the window is as it was.
bool givenUp(const ExchangeContext& context) {
  context.window.ShowProgress(0, "Bereit", false);
  return false;
}

/// The rounds of `exchangeHttp`: one, and a second after a login.
bool sendUntilAnswered(const ExchangeContext& context, const OperationTraits& traits, std::string_view path,
                       Delivery& delivery, const std::function<bool(platform::XmlDocument&)>& build,
                       const std::function<ReturnCode(const platform::XmlDocument&)>& read) {
  bool loginTried = false;
  for (;;) {
    const auto answer = sendOnce(context, traits, path, delivery, build);
    if (!answer) {
      show(context, done, communicationFailed);
      return false;
    }
    show(context, 55, "Antwort wird verarbeitet...");
    const ReturnCode code = read(*answer);
    if (code == 0) {
      delivery.accepted();
      return true;
    }
    if (code) context.kba.answerUnderstood();
    if (code != traits.notLoggedIn) {
      delivery.failed(code.value_or(-1));
      return failed(context, traits.refused, traits.refusal);
    }
    if (loginTried) return failed(context, loginFailed, 205);
    loginTried = true;
    if (!logIn(context, traits)) return false;
  }
}

}  // namespace

bool exchangeHttp(const ExchangeContext& context, const OperationTraits& traits, std::string_view path,
                  const std::function<bool(platform::XmlDocument&)>& build,
                  const std::function<ReturnCode(const platform::XmlDocument&)>& read) {
  Delivery delivery(context, traits, Delivery::Road::http);
  if (!delivery.begin()) return givenUp(context);
  try {
    return sendUntilAnswered(context, traits, path, delivery, build, read);
  } catch (...) {
    if (!delivery.unclear()) throw;
    delivery.lost("Abbruch");
  }
  return failed(context, traits.refused, traits.refusal);
}

bool exchangeAutomation(const ExchangeContext& context, const OperationTraits& traits, std::string_view progId,
                        const std::function<void(platform::AutomationObject&)>& fill,
                        const std::function<std::int32_t(platform::AutomationObject&)>& send) {
  Delivery delivery(context, traits, Delivery::Road::automation);
  if (!delivery.begin()) return givenUp(context);
  std::string text;
  try {
    const auto object = context.runtime.machine.objects.createObject(progId);
    fill(*object);
    delivery.handOver();
    const std::int32_t result = send(*object);
    if (result == 0) {
      delivery.accepted();
      return true;
    }
    delivery.failed(result);
    text = errorMessage(*object);
  } catch (const platform::AutomationError& failure) {
    if (delivery.unclear()) delivery.lost("Automatisierungsfehler");
    return failed(context, traits.refused, traits.refusalByObject, failure.what());
  } catch (...) {
    if (!delivery.unclear()) throw;
    delivery.lost("Abbruch");
  }
  return failed(context, traits.refused, traits.refusalByObject, text);
}

void announceSuccess(const ExchangeContext& context, std::string_view status,
                     const std::function<std::string()>& message, std::string_view caption) {
  insist(context, status, [&] { return context.runtime.reporting.InfoMsg(message(), caption); });
}

}  // namespace kartix
