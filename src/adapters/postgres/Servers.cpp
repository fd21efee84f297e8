#include "adapters/postgres/Servers.h"

#include <algorithm>

#include "common/Text.h"

namespace kartix::adapters::postgres {
namespace {

constexpr std::string_view usualPort = "5432";

std::vector<std::string> split(std::string_view list) {
  std::vector<std::string> parts;
  for (;;) {
    const auto comma = list.find(',');
    parts.push_back(text::trim(list.substr(0, comma)));
    if (comma == std::string_view::npos) return parts;
    list.remove_prefix(comma + 1);
  }
}

std::string joined(const std::vector<std::pair<std::string, std::string>>& servers,
                   std::string std::pair<std::string, std::string>::*part) {
  std::string list;
  for (const auto& server : servers) list += (list.empty() ? "" : ",") + server.*part;
  return list;
}

}  // namespace

Servers::Servers(std::string_view names, std::string_view ports) {
  const std::vector<std::string> hosts = split(names);
  const std::vector<std::string> numbers = split(ports);
  // The client library would put values of its own in place of empty names.
  if (std::any_of(hosts.begin(), hosts.end(), [](const std::string& host) { return host.empty(); })) {
    trouble_ = "ein Name eines Servers ist leer";
  } else if (numbers.size() != 1 && numbers.size() != hosts.size()) {
    trouble_ = std::to_string(hosts.size()) + " Server, aber " + std::to_string(numbers.size()) + " Ports";
  } else {
    for (std::size_t i = 0; i < hosts.size(); ++i) {
      const std::string& port = numbers.size() == 1 ? numbers.front() : numbers[i];
      all_.emplace_back(hosts[i], port.empty() ? usualPort : port);
    }
  }
}

std::string Servers::names() const { return joined(all_, &std::pair<std::string, std::string>::first); }
std::string Servers::ports() const { return joined(all_, &std::pair<std::string, std::string>::second); }

void Servers::prefer(const std::pair<std::string, std::string>& server) {
  const auto found = std::find(all_.begin(), all_.end(), server);
  if (found != all_.end()) std::rotate(all_.begin(), found, found + 1);
}

}  // namespace kartix::adapters::postgres
