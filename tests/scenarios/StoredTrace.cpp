#include "scenarios/StoredTrace.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "common/CodePage.h"
#include "common/Numbers.h"
#include "common/Text.h"

namespace kartix::test {
namespace {

using Lines = std::vector<std::string>;

/// Adds `line`, or the lines of the block that it names.
void add(const std::string& line, const std::map<std::string, Lines>& blocks, Lines& lines) {
  const std::string name = line.substr(0, line.find(' '));
  const auto block = blocks.find(name);
  if (block == blocks.end()) return lines.push_back(line);
  for (std::string inner : block->second) {
    std::istringstream arguments(line.substr(name.size() + 1) + "|");
    int number = 0;
    for (std::string argument; std::getline(arguments, argument, '|');) {
      inner = text::replaceAll(inner, "%" + std::to_string(++number), argument);
    }
    add(inner, blocks, lines);
  }
}

}  // namespace

Lines linesOf(const std::string& text) {
  std::istringstream in(text);
  Lines lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string masked(const std::string& trace) {
  constexpr std::string_view shape = "dd.dd.dddd dd:dd:dd  ";
  const auto fits = [](char found, char wanted) {
    return wanted == 'd' ? found >= '0' && found <= '9' : found == wanted;
  };
  std::string result;
  for (std::string line : linesOf(trace)) {
    if (line.size() >= shape.size() && std::equal(shape.begin(), shape.end(), line.begin(),
                                                  [&](char wanted, char found) { return fits(found, wanted); })) {
      line.replace(0, shape.size(), "TIME  ");
    }
    result += line + "\n";
  }
  return result;
}

std::string expandTrace(const std::string& stored, int level) {
  std::map<std::string, Lines> blocks;
  Lines lines;
  Lines* block = nullptr;
  for (const std::string& line : linesOf(stored)) {
    if (line.starts_with("define ")) {
      block = &blocks[line.substr(line.find(' ') + 1)];
    } else if (line == "end") {
      block = nullptr;
    } else if (block) {
      block->push_back(line);
    } else {
      add(line, blocks, lines);
    }
  }
  std::string trace;
  for (const std::string& line : lines) {
    if (leadingInt32(line) > level) continue;
    const std::string text = text::replaceAll(line.substr(line.find(' ') + 1), "\\s", " ");
    const bool noResult = text.ends_with("<<<=");
    trace += "TIME  " + text::replaceAll(text, "<<<=", noResult ? "<<< " : "<<< Result: ") + "\r\n";
  }
  return codepage::toAnsi(trace);
}

}  // namespace kartix::test
