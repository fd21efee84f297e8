#include "adapters/settings/RegDocument.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

using platform::RegistryValue;

constexpr std::string_view currentHeader = "Windows Registry Editor Version 5.00";
constexpr std::string_view oldHeader = "REGEDIT4";

/// Types of values written as bytes: "hex(2):", and "hex:" for 3.
constexpr unsigned stringType = 1;
constexpr unsigned expandStringType = 2;
constexpr unsigned binaryType = 3;
constexpr unsigned dwordType = 4;

constexpr std::string_view root = "HKEY_CURRENT_USER\\";

/// How the path of a key is found again.
std::string_view plainPath(std::string_view key) {
  while (key.ends_with('\\')) key.remove_suffix(1);
  return key;
}

bool hasControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' '; });
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result.push_back('\\');
    result.push_back(c);
  }
  return result + "\"";
}

/// Moves what stands before the closing quote from `source` to the end of `text` and drops the quote. False when
/// there is none; all of `source` has been moved then.
bool takeUntilQuote(std::string_view& source, std::string& text) {
  std::size_t i = 0;
  while (i < source.size() && source[i] != '"') {
    if (source[i] == '\\' && i + 1 < source.size()) ++i;
    text.push_back(source[i++]);
  }
  const bool closed = i < source.size();
  source.remove_prefix(closed ? i + 1 : i);
  return closed;
}

template <typename Number>
bool readHexNumber(std::string_view digits, Number& number) {
  constexpr int base = 16;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
  return !digits.empty() && stop == end && error == std::errc();
}

std::optional<std::string> readBytes(std::string_view list) {
  std::string bytes;
  while (!(list = withoutBlanks(list)).empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    std::uint8_t byte = 0;
    if (!readHexNumber(withoutBlanks(list.substr(0, comma)), byte)) return std::nullopt;
    bytes.push_back(static_cast<char>(byte));
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return bytes;
}

std::string writeBytes(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string list;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!list.empty()) list.push_back(',');
    list.push_back(digits[byte >> 4U]);
    list.push_back(digits[byte & 0xFU]);
  }
  return list;
}

bool nothingFollows(std::string_view rest) {
  rest = withoutBlanks(rest);
  return rest.empty() || rest.starts_with(';');
}

}  // namespace

RegDocument::RegDocument() : RegDocument(std::string(currentHeader) + "\r\n\r\n", RegEncoding::utf16) {}

std::optional<RegDocument> RegDocument::parse(std::string_view bytes) {
  // An empty file has nothing to lose.
  if (bytes.empty()) return RegDocument();
  RegEncoding encoding{};
  const auto text = decodeRegFile(bytes, encoding);
  if (!text) return std::nullopt;
  RegDocument document(*text, encoding);
  if (!document.index()) return std::nullopt;
  return document;
}

bool RegDocument::index() {
  if (lines_.size() == 0) return false;
  const std::string_view header = withoutBlanks(lines_[0]);
  if (header != currentHeader && header != oldHeader) return false;
  Key* key = nullptr;
  for (std::size_t i = 1; i < lines_.size(); ++i) {
    const std::string_view line = withoutBlanks(lines_[i]);
    if (line.empty()) continue;
    if (line.starts_with('[')) {
      // "[-key]" is no part of a store; nothing below it counts.
      const std::size_t end = line.rfind(']');
      const std::string_view path = end == std::string_view::npos ? "" : line.substr(1, end - 1);
      const bool known = text::equalNoCase(path.substr(0, root.size()), root);
      key = known ? &keys_[std::string(path.substr(root.size()))] : nullptr;
    } else if (key != nullptr) {
      if (auto found = readValue(i)) {
        i += found->second.count - 1;
        key->values.insert_or_assign(std::move(found->first), std::move(found->second));
      }
    }
    if (key != nullptr) key->end = i + 1;
  }
  return true;
}

std::optional<std::pair<std::string, RegDocument::Value>> RegDocument::readValue(std::size_t line) const {
  std::string_view source = withoutBlanks(lines_[line]);
  std::string name;
  if (source.starts_with('@')) {
    source.remove_prefix(1);
  } else if (source.starts_with('"')) {
    source.remove_prefix(1);
    if (!takeUntilQuote(source, name)) return std::nullopt;
  } else {
    return std::nullopt;
  }
  source = withoutBlanks(source);
  if (!source.starts_with('=')) return std::nullopt;
  source = withoutBlanks(source.substr(1));
  Value where;
  where.line = line;
  if (source != "-") {
    where.value = readData(source, where);
    if (!where.value) return std::nullopt;
  }
  return std::pair(std::move(name), std::move(where));
}

std::optional<RegistryValue> RegDocument::readData(std::string_view data, Value& where) const {
  constexpr std::string_view dword = "dword:";
  if (data.starts_with('"')) return readText(data, where);
  if (text::equalNoCase(data.substr(0, dword.size()), dword)) {
    data.remove_prefix(dword.size());
    RegistryValue value;
    value.type = RegistryValue::Type::dword;
    if (!readHexNumber(withoutBlanks(data.substr(0, data.find(';'))), value.number)) return std::nullopt;
    return value;
  }
  return readHex(data, where);
}

std::optional<RegistryValue> RegDocument::readText(std::string_view data, Value& where) const {
  // A text may hold line breaks. They count only when the text ends where a line ends: a forgotten quote must not
  // swallow the values below it.
  RegistryValue value;
  value.type = RegistryValue::Type::string;
  data.remove_prefix(1);
  while (!takeUntilQuote(data, value.text)) {
    const std::size_t next = where.line + where.count;
    if (next >= lines_.size() || lines_[next].starts_with('[')) return std::nullopt;
    value.text.append("\r\n");
    data = lines_[next];
    ++where.count;
  }
  if (!nothingFollows(data)) return std::nullopt;
  return value;
}

std::optional<RegistryValue> RegDocument::readHex(std::string_view data, Value& where) const {
  if (!text::equalNoCase(data.substr(0, 3), "hex")) return std::nullopt;
  const std::size_t colon = data.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  unsigned type = binaryType;
  const std::string_view kind = data.substr(3, colon - 3);
  if (!kind.empty() && (!kind.starts_with('(') || !kind.ends_with(')') || kind.size() < 3 ||
                        !readHexNumber(kind.substr(1, kind.size() - 2), type))) {
    return std::nullopt;
  }
  std::string list(withoutBlanks(data.substr(colon + 1)));
  while (list.ends_with('\\') && where.line + where.count < lines_.size()) {
    // What was broken off before its next line must not end with whatever is written there later.
    const std::string_view next = withoutBlanks(lines_[where.line + where.count]);
    if (next.empty()) return std::nullopt;
    list.pop_back();
    list += next;
    ++where.count;
  }
  const auto bytes = readBytes(list);
  if (!bytes) return std::nullopt;
  RegistryValue value;
  if (type == dwordType && bytes->size() == sizeof(value.number)) {
    value.type = RegistryValue::Type::dword;
    for (std::size_t i = bytes->size(); i-- > 0;) {
      value.number = value.number << 8U | static_cast<unsigned char>((*bytes)[i]);
    }
  } else if (type == stringType || type == expandStringType) {
    auto text = encoding_ == RegEncoding::ansi ? codepage::fromAnsi(*bytes) : fromUtf16(*bytes);
    if (!text) return std::nullopt;
    value.type = type == stringType ? RegistryValue::Type::string : RegistryValue::Type::expandString;
    value.text = std::move(*text);
    if (value.text.ends_with('\0')) value.text.pop_back();
  }
  return value;
}

std::optional<RegistryValue> RegDocument::value(std::string_view key, std::string_view name) const {
  const auto found = keys_.find(plainPath(key));
  if (found == keys_.end()) return std::nullopt;
  const auto value = found->second.values.find(name);
  return value == found->second.values.end() ? std::nullopt : value->second.value;
}

bool RegDocument::hasKey(std::string_view key) const { return keys_.contains(plainPath(key)); }

/// A name that begins like a remark would do the same as a text that does, see `valueLine`. What the file's code page
/// does not have would make another name of it.
bool RegDocument::holdsName(std::string_view text) const {
  const bool encodable = encoding_ != RegEncoding::ansi || codepage::fromAnsi(codepage::toAnsi(text)) == text;
  return encodable && !hasControl(text) && text::isValidUtf8(text) && !withoutBlanks(text).starts_with(';');
}

bool RegDocument::createKey(std::string_view key) {
  if (hasKey(key)) return true;
  if (key.empty() || !holdsName(key)) return false;
  if (!withoutBlanks(lines_[lines_.size() - 1]).empty()) lines_.insert(lines_.size(), "");
  const std::string path(plainPath(key));
  lines_.insert(lines_.size(), "[" + std::string(root) + path + "]");
  keys_[path].end = lines_.size();
  return true;
}

std::string RegDocument::valueLine(std::string_view name, std::string_view text) const {
  const std::string start = (name.empty() ? "@" : quoted(name)) + "=";
  const bool likeRemark = name.empty() && withoutBlanks(text).starts_with(';');
  if (!hasControl(text) && !likeRemark) return start + quoted(text);
  // Control characters would break the line: such a text is written as its bytes, terminator included. So is one that
  // would stand like a remark behind the quote that ends a text broken off above.
  const std::string terminated = std::string(text) + '\0';
  return start +
         "hex(1):" + writeBytes(encoding_ == RegEncoding::ansi ? codepage::toAnsi(terminated) : toUtf16(terminated));
}

bool RegDocument::setString(std::string_view key, std::string_view name, std::string_view text) {
  if (!holdsName(name) || !text::isValidUtf8(text) || !createKey(key)) return false;
  const Key& place = keys_.find(plainPath(key))->second;
  const std::string line = valueLine(name, text);
  const auto former = place.values.find(name);
  if (former != place.values.end()) {
    lines_.replace(former->second.line, former->second.count, line);
  } else {
    lines_.insert(place.end, line);
  }
  return true;
}

void RegDocument::remove(std::string_view key, std::string_view name) {
  const auto place = keys_.find(plainPath(key));
  if (place == keys_.end()) return;
  const auto former = place->second.values.find(name);
  if (former == place->second.values.end()) return;
  lines_.replace(former->second.line, former->second.count, (name.empty() ? "@" : quoted(name)) + "=-");
}

std::string RegDocument::encode() const { return encodeRegFile(lines_.join(), encoding_); }

}  // namespace kartix::adapters
