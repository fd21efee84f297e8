#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::adapters::dbe {

/// Size in characters of the statement and row buffers.
inline constexpr std::size_t bufferSize = 65536;
/// Longest field that a caller can read, in characters.
inline constexpr std::size_t fieldSize = 4096;

/// The rows of one answer, each as one text of UTF-8 fields: 4096 characters of each field, `bufferSize` characters
/// of each row, at most 100,000 rows and 64 MiB.
class RowSet {
 public:
  /// Adds a row of `fields`. False when the answer is too large.
  bool add(const std::vector<std::string_view>& fields);

  std::size_t size() const { return ends_.size(); }
  std::string_view operator[](std::size_t index) const;

 private:
  std::string text_;  ///< of all rows
  std::vector<std::size_t> ends_;
};

/// Field `field` (from 1) of a row, cut to `capacity` characters; empty when the row has no such field.
std::string fieldOf(std::string_view row, std::int16_t field, std::size_t capacity);

}  // namespace kartix::adapters::dbe
