#include "adapters/dbe/RowSet.h"

#include <algorithm>

#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters::dbe {
namespace {

/// Tells the fields of a row apart. Fields never hold it.
constexpr char separator = '\x1F';

constexpr std::size_t mostRows = 100'000;
constexpr std::size_t mostBytes = 64U << 20U;

bool isPlain(std::string_view field) {
  return field.size() <= fieldSize &&
         std::all_of(field.begin(), field.end(), [](char c) { return c >= ' ' && c < '\x7F'; });
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
  std::string row;
  row.reserve(rows_.empty() ? 0 : rows_.back().size());
  for (const std::string_view field : fields) {
    // Most are empty or plain.
    isPlain(field) ? row.append(field) : row.append(cleaned(field));
    row.push_back(separator);
  }
  if (!row.empty()) row.pop_back();
  if (row.size() > bufferSize) row = text::left(row, bufferSize);
  bytes_ += row.size();
  if (rows_.size() == mostRows || bytes_ > mostBytes) return false;
  rows_.push_back(std::move(row));
  return true;
}

std::string fieldOf(std::string_view row, std::int16_t field, std::size_t capacity) {
  if (field < 1) return {};
  for (; field > 1; --field) {
    const std::size_t end = row.find(separator);
    if (end == std::string_view::npos) return {};
    row.remove_prefix(end + 1);
  }
  return text::left(row.substr(0, row.find(separator)), capacity);
}

}  // namespace kartix::adapters::dbe
