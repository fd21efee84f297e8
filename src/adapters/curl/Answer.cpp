#include "adapters/curl/Answer.h"

#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

/// Most bytes of all heads of one answer, interim answers included.
constexpr std::size_t headLimit = std::size_t{256} * 1024;

constexpr std::string_view whitespace = " \t\r\n";

std::string_view stripped(std::string_view text) {
  const auto first = text.find_first_not_of(whitespace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(whitespace) - first + 1);
}

std::string_view fromFirst(std::string_view text, char c) {
  const auto position = text.find(c);
  return position == std::string_view::npos ? std::string_view() : text.substr(position + 1);
}

std::string asUtf8(std::string_view bytes) {
  return text::isValidUtf8(bytes) ? std::string(bytes) : codepage::fromAnsi(bytes);
}

}  // namespace

bool Answer::addHeadLine(std::string_view line) {
  headSize_ += line.size();
  if (headSize_ > headLimit) return false;
  if (line.starts_with("HTTP/")) {
    // The head of the next answer: what came before was an interim one.
    cookies_.clear();
    reason_ = asUtf8(stripped(fromFirst(fromFirst(line, ' '), ' ')));
    return true;
  }
  const std::string_view name = line.substr(0, line.find(':'));
  if (!text::equalNoCase(stripped(name), "Set-Cookie")) return true;
  const std::string_view pair = fromFirst(line, ':');
  const std::string_view setting = pair.substr(0, pair.find(';'));
  cookies_[std::string(stripped(setting.substr(0, setting.find('='))))] = stripped(fromFirst(setting, '='));
  return true;
}

bool Answer::addBody(std::string_view bytes) {
  if (bytes.size() > bodyLimit - body_.size()) return false;
  body_.append(bytes);
  return true;
}

std::string Answer::cookie(const std::string& name) const {
  const auto found = cookies_.find(name);
  return found == cookies_.end() ? std::string() : found->second;
}

}  // namespace kartix::adapters
