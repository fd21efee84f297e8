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

/// A clerk for the tests of a host: a script that takes the place of windows and person. Texts are UTF-8; what is
/// left empty stays as it is.
struct TestClerk {
  std::string script;      ///< path of the steps to take, as `man kartix` describes them
  std::string transcript;  ///< path of a file for what the clerk saw and did; an existing one is replaced
  std::string now;         ///< "YYYY-MM-DDTHH:MM:SS": the component's clock starts here and runs on
};

/// Lets `clerk` play from now on in the component that this process shares; an empty one gives place to the windows
/// again. The variables KARTIX_SCRIPT, KARTIX_TRANSCRIPT and KARTIX_NOW of the environment do the same when the
/// component is first used.
///
/// False when the settings store did not permit it at the component's first use (`TestClerk` = 1 in section "ZKR"),
/// when something of it cannot be used, or while a window is open; `testClerkMismatch` tells which. When something
/// cannot be used every window is closed through its close box until the next call, so that no test waits for a
/// person.
KARTIX_EXPORT bool useTestClerk(const TestClerk& clerk);

/// Whether the script fits, to be asked once the operations that it is for are done: empty when all its steps were
/// taken, else what was expected, what was found, and the windows, controls, entries and rows that there were. The
/// same goes to standard error and to the transcript as soon as it is certain.
KARTIX_EXPORT std::string testClerkMismatch();

}  // namespace kartix
