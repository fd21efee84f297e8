#include "runtime/Trace.h"

#include <filesystem>

#include "common/CodePage.h"
#include "common/Dates.h"

namespace kartix {
namespace {

constexpr std::string_view separator = "************************************************************";

/// A new file is made for its owner alone before anything is written to it.
void restrictToOwner(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

}  // namespace

bool Trace::open(const std::string& file, std::int16_t level) {
  close();
  path_ = file;
  level_ = level;
  if (file.empty()) return false;
  std::error_code ignored;
  const bool existed = std::filesystem::exists(file, ignored);
  file_.reset(std::fopen(file.c_str(), "wb"));
  if (!file_) return false;
  if (!existed) restrictToOwner(file);
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  return true;
}

void Trace::close() {
  on_ = false;
  file_.reset();
}

void Trace::write(std::string_view text) {
  std::string line = moment::traceTime(clock_.now()) + "  ";
  line += codepage::toAnsi(text);
  line += "\r\n";
  if (std::fwrite(line.data(), 1, line.size(), file_.get()) == line.size()) return;
  close();
  if (onWriteFailure) onWriteFailure();
}

void Trace::TraceLine(std::string_view text, int level) {
  if (writes(level)) write(text);
}

void Trace::TraceEnter(std::string_view name, int level) {
  if (writes(level)) write(">>> " + std::string(name) + " >>>");
}

void Trace::TraceParam(std::string_view name, std::string_view value, int level) {
  if (writes(level)) write("*** Parameter " + std::string(name) + "=" + std::string(value));
}

void Trace::TraceLeave(std::string_view name, std::string_view value, int level) {
  if (!writes(level)) return;
  std::string line = "<<< " + std::string(name) + " <<< ";
  if (!value.empty()) line.append("Result: ").append(value);
  write(line);
}

void Trace::TraceSeparator() { TraceLine(separator, trace_level::calls); }

void Trace::TraceCall(std::string_view name) {
  if (!writes(trace_level::calls)) return;
  TraceSeparator();
  TraceLine("Call: " + std::string(name), trace_level::calls);
}

void Trace::TraceRegDump() {
  TraceLine("REG-DUMP", trace_level::calls);
  TraceSeparator();
}

void Trace::TraceAbort(std::string_view call, std::string_view reason) noexcept {
  try {
    TraceLine(std::string(call).append(": Abbruch: ").append(reason), trace_level::calls);
  } catch (...) {
    // There is nobody left to tell.
  }
}

}  // namespace kartix
