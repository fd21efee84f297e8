#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ObjectClasses.h"

namespace kartix {
struct KbaAnswer;
}

namespace kartix::objects {

/// True for the members that take the account of the host's database, which these objects do not need.
bool isAccount(std::string_view member);

/// The one argument of a setter as text. Raises `AutomationError` when there is another number of them.
std::string soleText(std::string_view member, const std::vector<platform::Value>& arguments);

/// Raises `AutomationError` as the system does for a member that an object has not got.
[[noreturn]] void unknownMember(std::string_view member);

/// Words for an answer of a kind that nobody knows, by its document element.
std::string unknownAnswer(const std::string& kind);

/// Why the KBA refused, in words for the clerk; empty when it did not.
std::string refusalText(const KbaAnswer& answer);

}  // namespace kartix::objects
