#include "runtime/Trace.h"

#include <cstdio>
#include <filesystem>

#include "common/CodePage.h"
#include "common/Paths.h"
#include "common/Text.h"

namespace kartix {
namespace {

constexpr std::string_view separator = "************************************************************";

/// A new file is made for its owner alone before anything is written to it.
void restrictToOwner(const std::filesystem::path& path) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

/// A line on its way to the file, piece by piece through a buffer of fixed size: no line needs memory.
class AnsiLine {
 public:
  explicit AnsiLine(std::streambuf& file) : file_(file) {}

  void addTime(const platform::LocalTime& t) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%02d.%02d.%04d %02d:%02d:%02d  ", t.day, t.month, t.year, t.hour,
                  t.minute, t.second);
    add(text.data());
  }

  void add(std::string_view utf8) {
    for (std::size_t position = 0; position < utf8.size();) {
      if (size_ == buffer_.size()) flush();
      buffer_.at(size_++) = codepage::toAnsiByte(text::nextCharacter(utf8, position));
    }
  }

  /// False when the file did not take all of the line up to here.
  bool flush() {
    const auto size = static_cast<std::streamsize>(size_);
    if (file_.sputn(buffer_.data(), size) != size) taken_ = false;
    size_ = 0;
    return taken_;
  }

 private:
  std::streambuf& file_;
  std::array<char, 4096> buffer_{};
  std::size_t size_ = 0;
  bool taken_ = true;
};

}  // namespace

bool Trace::open(const std::string& file, std::int16_t level) {
  close();
  path_ = file;
  level_ = level;
  if (file.empty()) return false;
  const std::filesystem::path path = pathOf(file);
  std::error_code ignored;
  const bool existed = std::filesystem::exists(path, ignored);
  const std::lock_guard lock(guard_);
  file_.pubsetbuf(nullptr, 0);  // each line reaches the system at once
  if (!file_.open(path, std::ios::out | std::ios::trunc | std::ios::binary)) return false;
  if (!existed) restrictToOwner(path);
  return true;
}

void Trace::close() {
  on_ = false;
  const std::lock_guard lock(guard_);
  file_.close();
}

void Trace::write(std::initializer_list<std::string_view> parts) noexcept {
  try {
    if (put(parts)) return;
    close();
    if (onWriteFailure) onWriteFailure();
  } catch (...) {
    // A failure of the trace never changes what is traced.
  }
}

/// False when the line could not be written.
bool Trace::put(std::initializer_list<std::string_view> parts) {
  const std::lock_guard lock(guard_);
  if (!file_.is_open()) return true;
  AnsiLine line(file_);
  line.addTime(clock_.now());
  for (const std::string_view part : parts) line.add(part);
  line.add("\r\n");
  return line.flush();
}

void Trace::TraceSeparator() noexcept { TraceLine(separator, trace_level::calls); }

void Trace::TraceCall(std::string_view name) noexcept {
  TraceSeparator();
  TraceLine({"Call: ", name}, trace_level::calls);
}

void Trace::TraceRegDump() noexcept {
  TraceLine("REG-DUMP", trace_level::calls);
  TraceSeparator();
}

void Trace::TraceAbort(std::string_view call, std::string_view reason) noexcept {
  TraceLine({call, ": Abbruch: ", reason}, trace_level::calls);
}

void Trace::TraceRefusal(std::string_view call, std::string_view reason) noexcept {
  try {
    // A line that cannot be written is left for the component's own thread to find out with its next.
    if (writes(trace_level::calls)) put({call, ": abgewiesen, ", reason});
  } catch (...) {
    // A failure of the trace never changes what is traced.
  }
}

}  // namespace kartix
