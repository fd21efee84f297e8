#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "platform/ObjectClasses.h"
#include "runtime/Konfiguration.h"

namespace kartix {

/// A member of an automation object that takes one field of a message.
template <class Message>
struct Setter {
  std::string_view member;
  std::string Message::*field;
  bool onlyIfAny = false;  ///< not called with an empty text
};

/// The setters of a message in the order in which they are called.
template <class Message>
using Setters = std::span<const Setter<Message>>;

/// Gives `object` the account of the host's database.
inline void setAccount(platform::AutomationObject& object, const Konfiguration& settings) {
  object.call("SetDbeUser", {settings.SysUser});
  object.call("SetDbePass", {settings.SysPass});
}

/// Hands `message` over to `object`.
template <class Message>
void callSetters(platform::AutomationObject& object, const Message& message, Setters<Message> setters) {
  for (const Setter<Message>& setter : setters) {
    const std::string& text = message.*setter.field;
    if (!setter.onlyIfAny || !text.empty()) object.call(setter.member, {text});
  }
}

/// The field of `message` that `member` takes; nothing when it takes none.
template <class Message>
std::string* fieldOf(Message& message, std::string_view member, Setters<Message> setters) {
  const auto found =
      std::find_if(setters.begin(), setters.end(), [&](const auto& setter) { return setter.member == member; });
  return found == setters.end() ? nullptr : &(message.*found->field);
}

}  // namespace kartix
