#include "Target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace kartix::fuzz {

std::uint8_t Input::byte() {
  if (rest_.empty()) return 0;
  const char first = rest_.front();
  rest_.remove_prefix(1);
  return static_cast<std::uint8_t>(first);
}

std::string Input::until(std::string_view end) {
  const std::size_t size = std::min(rest_.find(end), rest_.size());
  const std::string piece(rest_.substr(0, size));
  rest_.remove_prefix(std::min(size + end.size(), rest_.size()));
  return piece;
}

void expect(bool holds, const char* promise, const std::string& seen) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\nseen: %s\n", promise, seen.c_str());
  std::abort();
}

void run(std::string_view name, std::string_view bytes) {
  static const std::map<std::string_view, void (*)(Input)> targets = {
      {"answers", answers},   {"book", book}, {"calls", calls},   {"documents", documents},
      {"images", images},     {"ini", ini},   {"names", names},   {"objects", objects},
      {"registry", registry}, {"rows", rows}, {"script", script}, {"transport", transport},
      {"values", values}};
  const auto found = targets.find(name);
  expect(found != targets.end(), "there is such a target", std::string(name));
  found->second(Input(bytes));
}

}  // namespace kartix::fuzz
