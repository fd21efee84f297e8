#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
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
  std::string_view kind;             ///< name in trace and order book
  std::string_view sending;          ///< status while the request goes out
  std::string_view refused;          ///< status after a refusal
  std::int32_t refusal = 0;          ///< error reported after a refusal over the own transport
  std::int32_t refusalByObject = 0;  ///< error reported with the text of an automation object
  std::int32_t notLoggedIn = 0;      ///< return code that asks for a login
  bool animateLogin = true;
};

/// Return code of an answer; nothing for one that was not understood.
using ReturnCode = std::optional<std::int32_t>;

/// Sends a request over the component's own transport. Only when the answer asks for a login it logs in and sends
/// once more; nothing else is ever sent twice. `build` makes the request and is False when it cannot; `read` gives
/// the answer's return code, has recorded what was accepted and told the clerk of a refusal. True when the code is 0;
/// otherwise the clerk knows.
bool exchangeHttp(const ExchangeContext& context, const OperationTraits& traits, std::string_view path,
                  const std::function<bool(platform::XmlDocument& request)>& build,
                  const std::function<ReturnCode(const platform::XmlDocument& answer)>& read);

/// Lets the host's automation object of class `progId` do the exchange: `fill` hands the message over, `send` calls
/// the member that sends it and gives its number, 0 when it was accepted, which `send` has recorded. A refusal is
/// reported with the object's own text, an object that cannot be created and a member that fails with the system's.
bool exchangeAutomation(const ExchangeContext& context, const OperationTraits& traits, std::string_view progId,
                        const std::function<void(platform::AutomationObject& object)>& fill,
                        const std::function<std::int32_t(platform::AutomationObject& object)>& send);

/// Tells the clerk that the operation was carried out, in the words of `message`. It stays carried out when the
/// telling fails, which is traced.
void announceSuccess(const ExchangeContext& context, std::string_view status,
                     const std::function<std::string()>& message, std::string_view caption);

}  // namespace kartix
