#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace kartix::host {

/// What the command tells its caller when it ends.
namespace exit_status {
inline constexpr int done = 0;
inline constexpr int failed = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int scriptDidNotFit = 3;
}  // namespace exit_status

/// The command line or a file it names cannot be used.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command could not do what it was asked to.
class CommandFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Makes a subcommand of `command` necessary; unlike the library's own way it lets a misspelt one be named.
void requireSubcommand(CLI::App& command);

/// Colours of standard output; plain text unless it is a terminal that shows them.
enum class Colour { green, yellow, red };
std::string coloured(std::string_view text, Colour colour);

/// `text` with control characters written as `\u00xx`, so that no terminal takes them for orders.
std::string printable(std::string_view text);

}  // namespace kartix::host
