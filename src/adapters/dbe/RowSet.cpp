#include "adapters/dbe/RowSet.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>

#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters::dbe {
namespace {

/// Tells the fields of a row apart. Fields never hold it.
constexpr char separator = '\x1F';

constexpr std::size_t mostRows = 100'000;
constexpr std::size_t mostBytes = 64U << 20U;

/// Where the field after `separators` of them begins; nothing when there are fewer. Eight bytes at a time, since
/// fields are short and rows have many.
std::optional<std::size_t> fieldStart(std::string_view row, std::size_t separators) {
  constexpr std::uint64_t pattern = 0x1F1F1F1F1F1F1F1F;
  constexpr std::uint64_t lowBits = 0x7F7F7F7F7F7F7F7F;
  constexpr std::uint64_t ones = 0x0101010101010101;
  std::size_t at = 0;
  for (std::uint64_t eight = 0; separators > 0 && at + sizeof eight <= row.size(); at += sizeof eight) {
    std::memcpy(&eight, row.data() + at, sizeof eight);
    const std::uint64_t other = eight ^ pattern;
    // A high bit for each byte that is a separator; moved down, the multiplication adds them all up in the last byte.
    const std::uint64_t marks = ~(((other & lowBits) + lowBits) | other | lowBits);
    const auto found = static_cast<std::size_t>(((marks >> 7U) * ones) >> 56U);
    if (found >= separators) break;
    separators -= found;
  }
  for (; separators > 0 && at < row.size(); ++at) separators -= row[at] == separator ? 1 : 0;
  return separators == 0 ? std::optional(at) : std::nullopt;
}

bool isPlain(std::string_view field) {
  return field.size() <= fieldSize && text::printableRun(field) == field.size();
}

/// One field as it stands in a row. Text that is not UTF-8 was stored by a program that writes the single-byte code
/// page. A NUL would end the row for its readers.
std::string cleaned(std::string_view field) {
  std::string result = text::isValidUtf8(field) ? std::string(field) : codepage::fromAnsi(field);
  if (result.size() > fieldSize) result = text::left(result, fieldSize);
  std::replace_if(
      result.begin(), result.end(), [](char c) { return c == separator || c == '\0'; }, ' ');
  return result;
}

}  // namespace

bool RowSet::add(const std::vector<std::string_view>& fields) {
  if (ends_.size() == mostRows) return false;
  const std::size_t start = text_.size();
  for (const std::string_view field : fields) {
    // Most are empty or plain.
    isPlain(field) ? text_.append(field) : text_.append(cleaned(field));
    text_.push_back(separator);
  }
  if (!fields.empty()) text_.pop_back();
  if (text_.size() - start > bufferSize) {
    text_.resize(start + text::left(std::string_view(text_).substr(start), bufferSize).size());
  }
  ends_.push_back(text_.size());
  return text_.size() <= mostBytes;
}

std::string_view RowSet::operator[](std::size_t index) const {
  const std::size_t start = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(text_).substr(start, ends_[index] - start);
}

std::string fieldOf(std::string_view row, std::int16_t field, std::size_t capacity) {
  if (field < 1) return {};
  const auto start = fieldStart(row, static_cast<std::size_t>(field - 1));
  if (!start) return {};
  row.remove_prefix(*start);
  return text::left(row.substr(0, row.find(separator)), capacity);
}

}  // namespace kartix::adapters::dbe
