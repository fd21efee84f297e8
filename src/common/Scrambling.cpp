#include "common/Scrambling.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "common/CodePage.h"

namespace kartix {
namespace {

constexpr std::size_t plainBlock = 8;
constexpr std::size_t scrambledBlock = 9;

using Positions = std::array<std::uint8_t, 8>;

/// How a plain block of a given length is laid out and found again; positions count from 1.
struct Pattern {
  unsigned char marker;
  Positions picked;  ///< plain positions of the characters 2 to 9 of the scrambled block
  Positions read;    ///< scrambled positions of the plain characters; 0 beyond the length
};

/// Indexed by length; lengths 0 and 1 have fixed blocks of their own.
constexpr std::array<Pattern, 9> patterns = {{
    {1, {}, {}},
    {68, {}, {5}},
    {98, {1, 1, 1, 1, 2, 1, 2, 1}, {3, 8}},
    {255, {3, 2, 3, 2, 1, 1, 3, 1}, {7, 5, 4}},
    {169, {2, 2, 3, 2, 4, 3, 2, 1}, {9, 2, 4, 6}},
    {97, {1, 2, 1, 4, 1, 3, 1, 5}, {8, 3, 7, 5, 9}},
    {87, {4, 4, 1, 6, 3, 1, 5, 2}, {4, 9, 6, 2, 8, 5}},
    {86, {4, 7, 3, 6, 2, 1, 5, 7}, {7, 6, 4, 2, 8, 5, 3}},
    {88, {2, 4, 6, 8, 7, 3, 1, 5}, {8, 2, 7, 3, 9, 4, 6, 5}},
}};

std::string bytes(std::initializer_list<unsigned char> codes) { return {codes.begin(), codes.end()}; }

class Step {
 public:
  Step(ScramblingObserver* observer, std::string_view routine) : observer_(observer), routine_(routine) {
    if (observer_) observer_->entered(routine_);
  }
  ~Step() {
    if (observer_) observer_->left(routine_);
  }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;

 private:
  ScramblingObserver* observer_;
  std::string_view routine_;
};

std::string umordnen(std::string_view source, const Positions& positions, ScramblingObserver* observer) {
  const Step step(observer, "Global::umordnen");
  std::string result;
  for (const std::uint8_t position : positions) {
    if (position >= 1 && position <= source.size()) result.push_back(source[position - 1]);
  }
  return result;
}

std::string Crypt(std::string_view block, ScramblingObserver* observer) {
  const Step step(observer, "Global::Crypt");
  std::string result;
  if (block.empty()) {
    result = bytes({1, 32, 1, 3, 34, 124, 65, 90, 96});
  } else if (block.size() == 1) {
    const auto c = static_cast<unsigned char>(block.front());
    result = bytes({68, c, 222, 234, c, 123, c, 90, 96});
  } else {
    const Pattern& pattern = patterns.at(block.size());
    result = bytes({pattern.marker}) + umordnen(block, pattern.picked, observer);
    if (block.size() == 2) {
      result[3] = static_cast<char>(234);
      result[8] = static_cast<char>(96);
    }
  }
  std::transform(result.begin() + 1, result.end(), result.begin() + 1, [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return static_cast<char>(code > 128 ? code - 128 : code + 127);
  });
  return result;
}

std::string Decrypt(std::string_view block, ScramblingObserver* observer) {
  const Step step(observer, "Global::Decrypt");
  if (block.empty()) return {};
  const auto marker = static_cast<unsigned char>(block.front());
  const auto* const pattern =
      std::find_if(patterns.begin() + 1, patterns.end(), [&](const Pattern& p) { return p.marker == marker; });
  if (pattern == patterns.end()) return {};
  std::string result = umordnen(block, pattern->read, observer);
  std::transform(result.begin(), result.end(), result.begin(), [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return static_cast<char>(code < 128 ? code + 128 : code - 127);
  });
  return result;
}

}  // namespace

std::string CryptLong(std::string_view plain, ScramblingObserver* observer) {
  const Step step(observer, "Global::CryptLong");
  const std::string ansi = codepage::toAnsi(plain);
  std::string result;
  for (std::size_t i = 0; i <= ansi.size() / plainBlock; ++i) {
    result += Crypt(std::string_view(ansi).substr(i * plainBlock, plainBlock), observer);
  }
  return codepage::fromAnsi(result);
}

std::string DecryptLong(std::string_view stored, ScramblingObserver* observer) {
  const Step step(observer, "Global::DecryptLong");
  const std::string ansi = codepage::toAnsi(stored);
  std::string result;
  for (std::size_t i = 0; i <= ansi.size() / scrambledBlock; ++i) {
    result += Decrypt(std::string_view(ansi).substr(i * scrambledBlock, scrambledBlock), observer);
  }
  return codepage::fromAnsi(result);
}

}  // namespace kartix
