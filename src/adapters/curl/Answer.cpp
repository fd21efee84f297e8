#include "adapters/curl/Answer.h"

#include <algorithm>
#include <utility>

#include "common/CodePage.h"
#include "common/Numbers.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

/// Most bytes of all heads of one answer, interim answers included.
constexpr std::size_t headLimit = std::size_t{256} * 1024;

constexpr std::int32_t switchingProtocols = 101;
constexpr std::int32_t firstStatus = 100;
constexpr std::int32_t firstFinalStatus = 200;

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

std::string_view withoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// Of UTF-8, those of both blocks.
bool hasControlCharacter(std::string_view text) {
  unsigned char before = 0;
  return std::any_of(text.begin(), text.end(), [&before](unsigned char c) {
    const bool second = std::exchange(before, c) == 0xC2 && c < 0xA0;
    return c < 0x20 || c == 0x7F || second;
  });
}

std::string asUtf8(std::string_view bytes) {
  return text::isValidUtf8(bytes) ? std::string(bytes) : codepage::fromAnsi(bytes);
}

}  // namespace

bool Answer::addHeadLine(std::string_view line) {
  headSize_ += line.size();
  tooLarge_ = headSize_ > headLimit;
  if (tooLarge_) return false;
  line = withoutLineEnd(line);
  if (part_ == Part::body) return true;
  if (part_ == Part::statusLine) return takeStatusLine(line);
  if (!line.empty()) return takeField(line);
  part_ = status_ < firstFinalStatus ? Part::statusLine : Part::body;
  return true;
}

bool Answer::takeStatusLine(std::string_view line) {
  constexpr std::string_view version = "HTTP/1.";
  constexpr std::size_t codeAt = version.size() + 2;
  constexpr std::size_t codeEnd = codeAt + 3;
  if (!line.starts_with(version) || line.size() < codeEnd || line[codeAt - 1] != ' ') return breakOff();
  const std::string_view code = line.substr(codeAt, 3);
  const std::string_view rest = line.substr(codeEnd);
  if (!text::allDigits(code) || (!rest.empty() && !rest.starts_with(' '))) return breakOff();
  status_ = leadingInt32(code);
  if (status_ < firstStatus || status_ == switchingProtocols) return breakOff();
  reason_ = asUtf8(rest);
  if (hasControlCharacter(reason_)) return breakOff();
  reason_ = stripped(reason_);
  contentLength_.clear();
  cookies_.clear();  // of an interim answer
  promise_ = {};
  part_ = Part::fields;
  return true;
}

bool Answer::takeField(std::string_view line) {
  const std::string_view name = stripped(line.substr(0, line.find(':')));
  const std::string_view value = stripped(fromFirst(line, ':'));
  promise_.read(name, value);
  if (text::equalNoCase(name, "Content-Length")) {
    // The library would choose one of two, and half an answer could pass for a whole one.
    if (!contentLength_.empty() && contentLength_ != value) return breakOff();
    contentLength_ = value;
  } else if (text::equalNoCase(name, "Transfer-Encoding")) {
    // No other was asked for, and the library would hand on what it cannot decode.
    if (!text::equalNoCase(value, "chunked") && !text::equalNoCase(value, "identity")) return breakOff();
  } else if (text::equalNoCase(name, "Set-Cookie")) {
    const std::string_view setting = value.substr(0, value.find(';'));
    cookies_[std::string(stripped(setting.substr(0, setting.find('='))))] = stripped(fromFirst(setting, '='));
  }
  return true;
}

bool Answer::breakOff() {
  broken_ = true;
  reason_.clear();
  return false;
}

bool Answer::addBody(std::string_view bytes) {
  tooLarge_ = bytes.size() > bodyLimit - body_.size();
  if (tooLarge_) return false;
  body_.append(bytes);
  return true;
}

std::string Answer::cookie(const std::string& name) const {
  const auto found = cookies_.find(name);
  return found == cookies_.end() ? std::string() : found->second;
}

}  // namespace kartix::adapters
