#include "gateway/OrderBook.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <unordered_map>

#include "common/Text.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

namespace kartix {
namespace {

constexpr char separator = '\t';
constexpr std::string_view beginStep = "begin";
constexpr std::string_view endStep = "end";

constexpr std::array<std::pair<Outcome, std::string_view>, 6> outcomes = {{
    {Outcome::open, "open"},
    {Outcome::accepted, "accepted"},
    {Outcome::refused, "refused"},
    {Outcome::notSent, "notSent"},
    {Outcome::unclear, "unclear"},
    {Outcome::settled, "settled"},
}};

using TimeText = std::array<char, 24>;

TimeText timeText(const platform::LocalTime& time) noexcept {
  TimeText text{};
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u", static_cast<unsigned>(time.year) % 10000U,
                static_cast<unsigned>(time.month) % 100U, static_cast<unsigned>(time.day) % 100U,
                static_cast<unsigned>(time.hour) % 100U, static_cast<unsigned>(time.minute) % 100U,
                static_cast<unsigned>(time.second) % 100U);
  return text;
}

/// Unique among all processes that keep the book.
std::string newId() {
  std::random_device random;
  std::array<char, 17> text{};
  std::snprintf(text.data(), text.size(), "%08x%08x", random(), random());
  return text.data();
}

/// `text` in a form that keeps the fields of its line apart, and at most `longestField` characters of it.
std::string field(std::string_view text) {
  constexpr std::size_t longestField = 100;
  std::string result = text::left(text, longestField);
  std::replace_if(
      result.begin(), result.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
  return result;
}

std::vector<std::string_view> split(std::string_view line) {
  std::vector<std::string_view> fields;
  for (;;) {
    const auto end = line.find(separator);
    fields.push_back(line.substr(0, end));
    if (end == std::string_view::npos) return fields;
    line.remove_prefix(end + 1);
  }
}

std::optional<Outcome> outcomeNamed(std::string_view name) {
  const auto* const found =
      std::find_if(outcomes.begin(), outcomes.end(), [&](const auto& known) { return known.second == name; });
  return found == outcomes.end() ? std::nullopt : std::optional(found->first);
}

/// Entries as their lines come in.
class Reader {
 public:
  explicit Reader(std::vector<BookEntry>& entries) : entries_(entries) {}

  void take(std::string_view line) {
    const auto fields = split(line);
    if (fields.size() == 9 && fields[0] == beginStep) begin(fields);
    if (fields.size() == 5 && fields[0] == endStep) end(fields);
  }

 private:
  void begin(const std::vector<std::string_view>& fields) {
    const auto text = [&](std::size_t index) { return std::string(fields[index]); };
    if (!places_.emplace(text(1), entries_.size()).second) return;
    entries_.push_back({.id = text(1),
                        .time = text(2),
                        .kind = text(3),
                        .road = text(4),
                        .person = text(5),
                        .lfdnr = text(6),
                        .mark = text(7),
                        .clerk = text(8),
                        .outcome = Outcome::open,
                        .endTime = {},
                        .detail = {}});
  }

  void end(const std::vector<std::string_view>& fields) {
    const auto found = places_.find(std::string(fields[1]));
    const auto outcome = outcomeNamed(fields[3]);
    if (found == places_.end() || !outcome) return;
    BookEntry& entry = entries_[found->second];
    entry.outcome = *outcome;
    entry.endTime = fields[2];
    entry.detail = fields[4];
  }

  std::vector<BookEntry>& entries_;
  std::unordered_map<std::string, std::size_t> places_;
};

}  // namespace

OrderBook::OrderBook(platform::FileSystem& files, platform::Clock& clock, std::string_view path)
    : files_(files), clock_(clock), path_(files.nativePath(path)) {}

std::error_code OrderBook::begin(BookEntry& entry) {
  entry.id = newId();
  entry.time = timeText(clock_.now()).data();
  std::string line(beginStep);
  for (const std::string* part :
       {&entry.id, &entry.time, &entry.kind, &entry.road, &entry.person, &entry.lfdnr, &entry.mark, &entry.clerk}) {
    line.append(1, separator).append(field(*part));
  }
  return files_.appendLine(path_, line);
}

std::error_code OrderBook::end(std::string_view id, Outcome outcome, std::string_view detail) noexcept {
  const std::string_view name = outcomeName(outcome);
  std::array<char, 256> line{};
  const int length = std::snprintf(line.data(), line.size(), "end\t%.*s\t%s\t%.*s\t%.*s",
                                   static_cast<int>(std::min<std::size_t>(id.size(), 32)), id.data(),
                                   timeText(clock_.now()).data(), static_cast<int>(name.size()), name.data(),
                                   static_cast<int>(std::min<std::size_t>(detail.size(), 100)), detail.data());
  return files_.appendLine(path_, {line.data(), static_cast<std::size_t>(length)});
}

std::error_code OrderBook::read(std::vector<BookEntry>& entries) {
  Reader reader(entries);
  return files_.readLines(path_, [&](std::string_view line) { reader.take(line); });
}

std::error_code OrderBook::findLast(std::string_view person, std::string_view lfdnr,
                                    std::optional<BookEntry>& found) {
  std::vector<BookEntry> entries;
  Reader reader(entries);
  const std::string key = std::string(1, separator) + field(person) + separator + field(lfdnr) + separator;
  const std::error_code failure = files_.readLines(path_, [&](std::string_view line) {
    // A book of years holds few entries of one card: only theirs, and the ends of theirs, are kept.
    if (line.starts_with(endStep) || line.find(key) != std::string_view::npos) reader.take(line);
  });
  if (failure) return failure;
  const auto last = std::find_if(entries.rbegin(), entries.rend(), [&](const BookEntry& entry) {
    return entry.person == field(person) && entry.lfdnr == field(lfdnr) && entry.outcome != Outcome::notSent;
  });
  if (last != entries.rend()) found = *last;
  return {};
}

std::string_view outcomeName(Outcome outcome) {
  const auto* const found =
      std::find_if(outcomes.begin(), outcomes.end(), [&](const auto& known) { return known.first == outcome; });
  return found == outcomes.end() ? std::string_view() : found->second;
}

}  // namespace kartix
