#pragma once

#include <array>
#include <atomic>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <mutex>
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
///
/// The calls that write a line never throw and allocate nothing, so that a line can be written when memory has run
/// out, in a destructor, and after the point of no return.
class Trace {
 public:
  explicit Trace(platform::Clock& clock) : clock_(clock) {}

  /// Opens `file` anew for lines up to `level`. False when that is not possible. Lines are written from `start` on.
  bool open(const std::string& file, std::int16_t level);
  void start() { on_ = file_.is_open(); }
  void close();
  bool TraceOn() const { return on_; }
  /// Path of the file opened last.
  const std::string& DebugFile() const { return path_; }
  std::int16_t DebugLevel() const { return level_; }

  /// Called once, with the file closed already, when a line could not be written. What it throws is lost.
  std::function<void()> onWriteFailure;

  void TraceLine(std::string_view text, int level) noexcept {
    if (writes(level)) write({text});
  }
  /// The parts as one line.
  void TraceLine(std::initializer_list<std::string_view> parts, int level) noexcept {
    if (writes(level)) write(parts);
  }
  void TraceEnter(std::string_view name, int level = trace_level::calls) noexcept {
    if (writes(level)) write({">>> ", name, " >>>"});
  }
  void TraceParam(std::string_view name, std::string_view value, int level = trace_level::parameters) noexcept {
    if (writes(level)) write({"*** Parameter ", name, "=", value});
  }
  void TraceParam(std::string_view name, std::same_as<bool> auto value,
                  int level = trace_level::parameters) noexcept {
    TraceParam(name, std::string_view(value ? "True" : "False"), level);
  }
  void TraceParam(std::string_view name, std::integral auto value, int level = trace_level::parameters) noexcept
      requires(!std::same_as<decltype(value), bool>) {
    TraceParam(name, Digits(value).text(), level);
  }
  void TraceLeave(std::string_view name, std::string_view value = {}, int level = trace_level::calls) noexcept {
    if (writes(level)) write({"<<< ", name, " <<< ", value.empty() ? "" : "Result: ", value});
  }
  void TraceLeave(std::string_view name, std::same_as<bool> auto value) noexcept {
    TraceLeave(name, std::string_view(value ? "True" : "False"));
  }
  void TraceLeave(std::string_view name, std::integral auto value) noexcept
      requires(!std::same_as<decltype(value), bool>) {
    TraceLeave(name, Digits(value).text());
  }
  void TraceSeparator() noexcept;
  void TraceCall(std::string_view name) noexcept;
  void TraceRegDump() noexcept;
  /// A public call ended early because of `reason`.
  void TraceAbort(std::string_view call, std::string_view reason) noexcept;
  /// A public call was refused because of `reason`. The one line that may be written on any thread. Never throws.
  void TraceRefusal(std::string_view call, std::string_view reason) noexcept;

 private:
  /// A number as text, without a string.
  class Digits {
   public:
    explicit Digits(std::integral auto value) noexcept
        : end_(std::to_chars(buffer_.data(), buffer_.data() + buffer_.size(), value).ptr) {}
    std::string_view text() const noexcept {
      return {buffer_.data(), static_cast<std::size_t>(end_ - buffer_.data())};
    }

   private:
    std::array<char, 24> buffer_{};
    char* end_;
  };

  bool writes(int level) const noexcept { return level <= level_ && on_; }
  void write(std::initializer_list<std::string_view> parts) noexcept;
  bool put(std::initializer_list<std::string_view> parts);

  platform::Clock& clock_;
  std::mutex guard_;  ///< of `file_`
  std::filebuf file_;
  std::string path_;
  std::atomic<std::int16_t> level_ = 0;
  std::atomic<bool> on_ = false;
};

}  // namespace kartix
