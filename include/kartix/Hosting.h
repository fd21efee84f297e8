#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "kartix/Export.h"

/// What a host can tell and ask the component that its process shares.
namespace kartix {

/// The settings of a host that keeps them itself. They are called as docs/settings.md calls them: "FS.ServerIP",
/// "InfoDatei". Secret ones pass as they are, not scrambled. Texts are UTF-8. An exception counts as no value, and as
/// a value that could not be kept.
using ReadSetting = std::function<std::optional<std::string>(const std::string& name)>;
/// True when `value` is kept.
using WriteSetting = std::function<bool(const std::string& name, const std::string& value)>;

/// Takes the settings from the host in place of the settings store of the user. To be called before anything else of
/// this library: False, and nothing changes, when the component is in use already. Without `write` no value is kept.
KARTIX_EXPORT bool useSettings(ReadSetting read, WriteSetting write);

/// A message for the clerk.
struct LastError {
  std::int32_t number = 0;  ///< in the error catalogue; 0 for a message that has none
  std::string text;         ///< empty when there was no message
};

/// The last message that the clerk was shown, or would have been shown if there were a display, since the last call
/// of `init` or an operation began.
KARTIX_EXPORT LastError lastError();

}  // namespace kartix
