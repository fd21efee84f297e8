#include "host/Command.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "adapters/system/System.h"
#include "common/Text.h"

namespace kartix::host {
namespace {

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

}  // namespace

void requireSubcommand(CLI::App& command) {
  command.callback([&command] {
    if (command.get_subcommands().empty()) throw CLI::RequiredError("A subcommand");
  });
}

std::string coloured(std::string_view text, Colour colour) {
  if (std::getenv("NO_COLOR") || !adapters::system::showsColours()) return std::string(text);
  const char* const code = colour == Colour::green ? "32" : colour == Colour::yellow ? "33" : "31";
  return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

std::string printable(std::string_view text) {
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t c = text::nextCharacter(text, position);
    if (!isControl(c)) {
      text::append(result, c);
      continue;
    }
    std::array<char, 7> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
    result += escape.data();
  }
  return result;
}

}  // namespace kartix::host
