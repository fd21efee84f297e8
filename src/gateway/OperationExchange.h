#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kartix::platform {
class AutomationObject;
class XmlDocument;
}  // namespace kartix::platform

namespace kartix {

class KBAInterface;
class Login;
class OperationWindow;
class Runtime;
class Session;

/// What the drivers of order, cancellation and notification work with.
struct ExchangeContext {
  Runtime& runtime;
  Session& session;
  KBAInterface& kba;
  Login& login;
  OperationWindow& window;
};

/// Texts and numbers in which the three operations differ.
struct OperationTraits {
  std::string_view sending;          ///< status while the request goes out
  std::string_view refused;          ///< status after a refusal
  std::int32_t refusal = 0;          ///< error reported after a refusal over the own transport
  std::int32_t refusalByObject = 0;  ///< error reported with the text of an automation object
  std::int32_t notLoggedIn = 0;      ///< return code that asks for a login
  bool animateLogin = true;
};

/// Sends a request over the component's own transport. Only when the answer asks for a login it logs in and sends
/// once more; nothing else is ever sent twice. `build` makes the request and is False when it cannot; `read` gives
/// the answer's return code and has told the clerk of a refusal. True when the code is 0; otherwise the clerk knows.
bool exchangeHttp(const ExchangeContext& context, const OperationTraits& traits, std::string_view path,
                  const std::function<bool(platform::XmlDocument& request)>& build,
                  const std::function<std::int32_t(const platform::XmlDocument& answer)>& read);

/// Lets the host's automation object of class `progId` do the exchange: `perform` calls its members and is True when
/// it accepted. A refusal is reported with the object's own text, an object that cannot be created and a member that
/// fails with the system's.
bool exchangeAutomation(const ExchangeContext& context, const OperationTraits& traits, std::string_view progId,
                        const std::function<bool(platform::AutomationObject& object)>& perform);

/// Tells the clerk that the operation was carried out. It stays carried out when the telling fails, which is traced.
void announceSuccess(const ExchangeContext& context, std::string_view status, std::string_view message,
                     std::string_view caption);

}  // namespace kartix
