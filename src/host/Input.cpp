#include "host/Input.h"

#include <cstddef>
#include <iostream>
#include <optional>

#include "adapters/system/System.h"
#include "host/Command.h"

namespace kartix::host {

std::string readLine(const std::string& what, bool secret) {
  constexpr std::size_t longestLine = 4096;
  const bool person = adapters::system::isTerminal(adapters::system::Stream::input);
  if (person) std::cerr << what << ": " << std::flush;
  std::optional<adapters::system::HiddenInput> hidden;
  if (secret && person) hidden.emplace();
  std::string line;
  for (char c = 0; line.size() <= longestLine && std::cin.get(c) && c != '\n';) line.push_back(c);
  if (hidden) std::cerr << '\n';
  if (line.size() > longestLine) throw UsageError(what + ": Der Wert ist zu lang");
  if (line.empty() && !std::cin) throw UsageError(what + ": Es wurde kein Wert angegeben");
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace kartix::host
