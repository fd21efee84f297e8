#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "gateway/KBAInterface.h"
#include "platform/XmlLibrary.h"

namespace kartix::objects {

struct ObjectContext;

/// An answer of the gateway, or in words why there is none.
struct Exchanged {
  std::unique_ptr<platform::XmlDocument> answer;
  std::string failure;
};

/// A request and how to tell that its answer asks for a login.
struct Request {
  std::string_view path;
  std::function<bool(platform::XmlDocument&)> build;
  std::function<bool(const platform::XmlDocument&)> asksForLogin;
  Effect effect;
};

/// Sends `request`; logs in and sends it once more when the answer asks for that. The last answer is still to be
/// understood (`KBAInterface::answerUnderstood`).
Exchanged exchange(const ObjectContext& context, const Request& request);

}  // namespace kartix::objects
