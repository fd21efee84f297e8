#pragma once

#include <string>
#include <string_view>

#include "kartix/automation.h"
#include "platform/ObjectClasses.h"

namespace kartix::automation {

/// `value` as the component knows it. `what` names it in the failure when it is none: an unknown type, no text, a
/// text that is not UTF-8.
platform::Value fromC(const kartix_value& value, std::string_view what);

/// `value` as C knows it. A text stays where it is, in `value`; a number with a fraction becomes a text in `place`.
kartix_value toC(const platform::Value& value, std::string& place);

/// A name or text that the caller passes. Raises `Failure` for NULL and for what is not UTF-8.
std::string_view textFrom(const char* text, std::string_view what);

}  // namespace kartix::automation
