#include "adapters/curl/KeepPromise.h"

#include <algorithm>

#include "common/Numbers.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

/// On the way the server's time runs on.
constexpr std::chrono::seconds margin{1};

}  // namespace

void KeepPromise::read(std::string_view name, std::string_view value) {
  const bool parameters = text::equalNoCase(name, "Keep-Alive");
  if (!parameters && !text::equalNoCase(name, "Connection")) return;
  while (!value.empty()) {
    const auto end = std::min(value.find(','), value.size());
    const std::string token = text::upper(text::trim(value.substr(0, end)));
    value.remove_prefix(std::min(end + 1, value.size()));
    if (parameters && token.starts_with("TIMEOUT=")) {
      const std::chrono::seconds said{leadingInt32(token.substr(token.find('=') + 1))};
      limit = std::min(limit, std::max(said - margin, std::chrono::seconds{0}));
    } else if (parameters && token.starts_with("MAX=") && leadingInt32(token.substr(token.find('=') + 1)) < 1) {
      limit = std::chrono::seconds{0};
    }
    given = given || parameters || token == "KEEP-ALIVE";
  }
}

}  // namespace kartix::adapters
