#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

#include "adapters/system/System.h"

namespace kartix::adapters::system {
namespace {

sigset_t endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

bool setEcho(bool shown) {
  termios state{};
  if (tcgetattr(STDIN_FILENO, &state) != 0) return false;
  const bool before = (state.c_lflag & ECHO) != 0;
  state.c_lflag = shown ? state.c_lflag | ECHO : state.c_lflag & ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &state);
  return before;
}

}  // namespace

bool isTerminal(Stream stream) { return isatty(stream == Stream::input ? STDIN_FILENO : STDOUT_FILENO) == 1; }

bool showsColours() {
  const char* const terminal = std::getenv("TERM");
  return isTerminal(Stream::output) && terminal && std::string_view(terminal) != "dumb";
}

std::vector<std::string> prepare(int argc, char** argv) { return {argv, argv + argc}; }

HiddenInput::HiddenInput() : hidden_(setEcho(false)) {}
HiddenInput::~HiddenInput() {
  if (hidden_) setEcho(true);
}

void keepEndRequests() {
  const sigset_t signals = endSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void awaitEnd() {
  const sigset_t signals = endSignals();
  int received = 0;
  sigwait(&signals, &received);
}

bool canRead(const std::filesystem::path& path) { return access(path.c_str(), R_OK) == 0; }
bool canWrite(const std::filesystem::path& path) { return access(path.c_str(), W_OK) == 0; }

std::filesystem::path makeTemporaryDirectory(const std::string& prefix) {
  std::string name = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
  return mkdtemp(name.data()) ? name : std::string();
}

}  // namespace kartix::adapters::system
