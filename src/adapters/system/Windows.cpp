#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <system_error>

#include "adapters/system/System.h"
#include "common/Utf16.h"

namespace kartix::adapters::system {
namespace {

/// Set when somebody has asked the program to end.
HANDLE endRequested() {
  static HANDLE const event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return event;
}

BOOL WINAPI onControl(DWORD) {
  SetEvent(endRequested());
  return TRUE;
}

HANDLE handleOf(Stream stream) {
  return GetStdHandle(stream == Stream::input ? STD_INPUT_HANDLE : STD_OUTPUT_HANDLE);
}

bool setEcho(bool shown) {
  DWORD mode = 0;
  if (GetConsoleMode(handleOf(Stream::input), &mode) == 0) return false;
  const bool before = (mode & ENABLE_ECHO_INPUT) != 0;
  mode = shown ? mode | ENABLE_ECHO_INPUT : mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT);
  SetConsoleMode(handleOf(Stream::input), mode);
  return before;
}

}  // namespace

bool isTerminal(Stream stream) {
  DWORD mode = 0;
  return GetConsoleMode(handleOf(stream), &mode) != 0;
}

bool showsColours() {
  DWORD mode = 0;
  HANDLE const output = handleOf(Stream::output);
  return GetConsoleMode(output, &mode) != 0 && SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::vector<std::string> prepare(int argc, char** argv) {
  SetConsoleOutputCP(CP_UTF8);
  for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  // The program's own arguments have lost what the system's code page does not hold.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!wide) return {argv, argv + argc};
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) {
    arguments.push_back(utf16::decode(reinterpret_cast<const char16_t*>(wide[i])));
  }
  LocalFree(wide);
  return arguments;
}

HiddenInput::HiddenInput() : hidden_(setEcho(false)) {}
HiddenInput::~HiddenInput() {
  if (hidden_) setEcho(true);
}

void keepEndRequests() {
  endRequested();
  SetConsoleCtrlHandler(onControl, TRUE);
}

void awaitEnd() { WaitForSingleObject(endRequested(), INFINITE); }

bool canRead(const std::filesystem::path& path) {
  constexpr int reading = 4;
  return _waccess(path.c_str(), reading) == 0;
}

bool canWrite(const std::filesystem::path& path) {
  constexpr int writing = 2;
  return _waccess(path.c_str(), writing) == 0;
}

std::filesystem::path makeTemporaryDirectory(const std::string& prefix) {
  constexpr int tries = 100;
  std::error_code error;
  for (int i = 0; i < tries; ++i) {
    const std::string number = std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64() + i);
    const std::filesystem::path made = std::filesystem::temp_directory_path(error) / (prefix + number);
    // A user's temporary directory is open to that user alone.
    if (std::filesystem::create_directory(made, error)) return made;
  }
  return {};
}

}  // namespace kartix::adapters::system
