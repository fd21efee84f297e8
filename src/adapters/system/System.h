#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What a program on a command line asks of its system.
namespace kartix::adapters::system {

enum class Stream { input, output };
bool isTerminal(Stream stream);
/// True for a terminal that understands the escape sequences of colours.
bool showsColours();

/// The arguments of the program in UTF-8. Sees to it that what it writes is taken as UTF-8 too, and that line ends
/// stay as they are.
std::vector<std::string> prepare(int argc, char** argv);

/// Keeps the terminal of standard input from showing what is typed, for as long as it exists.
class HiddenInput {
 public:
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

 private:
  bool hidden_;
};

/// From here on, in threads that start afterwards too, what asks the program to end is kept for `awaitEnd`.
void keepEndRequests();
/// Returns when somebody has asked the program to end.
void awaitEnd();

bool canRead(const std::filesystem::path& path);
bool canWrite(const std::filesystem::path& path);

/// A new directory for this user alone, its name beginning with `prefix`; empty when none can be made.
std::filesystem::path makeTemporaryDirectory(const std::string& prefix);

}  // namespace kartix::adapters::system
