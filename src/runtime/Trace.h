#pragma once

#include <concepts>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace kartix {

/// Levels of trace lines. A line is written when its level is not greater than the level that is set.
namespace trace_level {
inline constexpr int calls = 1;
inline constexpr int parameters = 2;
inline constexpr int counts = 5;
inline constexpr int columns = 99;
}  // namespace trace_level

/// The diagnostic trace file: one line a call, in the single-byte code page, ended by CRLF, each beginning with the
/// local time. While it is closed every call returns after one comparison. The file is created with access for its
/// owner only, since it may hold secrets; each line reaches the system before the call returns.
class Trace {
 public:
  explicit Trace(platform::Clock& clock) : clock_(clock) {}

  /// Opens `file` anew for lines up to `level`. False when that is not possible. Lines are written from `start` on.
  bool open(const std::string& file, std::int16_t level);
  void start() { on_ = file_ != nullptr; }
  void close();
  bool TraceOn() const { return on_; }
  /// Path of the file opened last.
  const std::string& DebugFile() const { return path_; }
  std::int16_t DebugLevel() const { return level_; }

  /// Called once, with the file closed already, when a line could not be written.
  std::function<void()> onWriteFailure;

  void TraceLine(std::string_view text, int level);
  void TraceEnter(std::string_view name, int level = trace_level::calls);
  void TraceParam(std::string_view name, std::string_view value, int level = trace_level::parameters);
  void TraceParam(std::string_view name, std::same_as<bool> auto value, int level = trace_level::parameters) {
    TraceParam(name, std::string_view(value ? "True" : "False"), level);
  }
  void TraceParam(std::string_view name, std::integral auto value,
                  int level = trace_level::parameters) requires(!std::same_as<decltype(value), bool>) {
    if (writes(level)) TraceParam(name, std::string_view(std::to_string(value)), level);
  }
  void TraceLeave(std::string_view name, std::string_view value = {}, int level = trace_level::calls);
  void TraceLeave(std::string_view name, std::same_as<bool> auto value) {
    TraceLeave(name, std::string_view(value ? "True" : "False"));
  }
  void TraceSeparator();
  void TraceCall(std::string_view name);
  void TraceRegDump();
  /// A public call ended early because of `reason`. Never throws, whatever the state of the machine.
  void TraceAbort(std::string_view call, std::string_view reason) noexcept;

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool writes(int level) const { return level <= level_ && on_; }
  void write(std::string_view text);

  platform::Clock& clock_;
  std::unique_ptr<std::FILE, Close> file_;
  std::string path_;
  std::int16_t level_ = 0;
  bool on_ = false;
};

}  // namespace kartix
