#include <functional>
#include <optional>

#include "Installation.h"
#include "adapters/files/Files.h"
#include "adapters/settings/RegDocument.h"
#include "adapters/settings/Settings.h"
#include "common/CodePage.h"
#include "common/Text.h"
#include "platform/ProfileFiles.h"
#include "support/Files.h"
#include "support/TestMachine.h"

/// Text files that others write too: the settings store, ini files and order books. The first lines say what is to be
/// written, the rest is the file as it was.
namespace kartix::fuzz {
namespace {

using Place = std::pair<std::string, std::string>;
using Found = std::map<Place, std::string>;
using Read = std::function<std::optional<std::string>(const Place&)>;

/// What `read` finds at the places that `text` may name, by what stands in brackets, in quotes and before "=".
Found valuesOf(const std::string& text, const Read& read) {
  constexpr std::size_t most = 12;
  std::vector<std::string> groups = {""};
  std::vector<std::string> names = {""};
  for (Input lines(text); !lines.empty();) {
    const std::string line = text::trimSpace(lines.line());
    const auto bracket = line.find('[');
    if (bracket != std::string::npos && groups.size() < most)
      groups.push_back(line.substr(bracket + 1, line.rfind(']') - bracket - 1));
    std::string name = line.substr(0, line.find('='));
    if (name.size() > 1 && name.front() == '"') name = name.substr(1, name.size() - 2);
    if (names.size() < most) names.push_back(name);
  }
  Found found;
  for (const std::string& group : groups)
    for (const std::string& name : names)
      if (const auto value = read({group, name})) found[{group, name}] = *value;
  return found;
}

/// A name as both kinds of files compare it, and a path as the settings store does.
std::string normal(const std::string& name) {
  constexpr std::string_view root = "HKEY_CURRENT_USER\\";
  std::string path = text::upper(text::trimSpace(codepage::toAnsi(name)));
  if (path.starts_with(root)) path.erase(0, root.size());
  while (path.ends_with('\\')) path.pop_back();
  return path;
}

void expectOthers(const Found& before, const Found& after, const Place& place) {
  for (const auto& [where, value] : before) {
    if (normal(where.first).ends_with(normal(place.first)) && normal(where.second) == normal(place.second)) continue;
    const auto found = after.find(where);
    expect(found != after.end() && found->second == value, "no other value changes",
           where.first + "|" + where.second);
  }
  for (const auto& [where, value] : after)
    expect(before.contains(where) || normal(where.second) == normal(place.second), "no other value appears", value);
}

}  // namespace

void registry(Input input) {
  const Place place = {input.line(), input.line()};
  const std::string value = text::replaceAll(input.line(), "\\n", "\r\n");
  auto document = adapters::RegDocument::parse(input.rest());
  if (!document) return;
  adapters::RegEncoding encoding{};
  const std::string text = adapters::decodeRegFile(input.rest(), encoding).value_or("");
  const Read read = [&](const Place& where) -> std::optional<std::string> {
    const std::string root = "HKEY_CURRENT_USER\\";
    const auto found = document->value(where.first.substr(std::min(root.size(), where.first.size())), where.second);
    if (!found) return std::nullopt;
    return std::to_string(static_cast<int>(found->type)) + found->text + std::to_string(found->number);
  };
  const auto reread = [&] {
    document = adapters::RegDocument::parse(document->encode());
    expect(document.has_value(), "a store that was written is one");
  };
  const std::string bytes = document->encode();
  const Found before = valuesOf(text, read);
  reread();
  expect(valuesOf(text, read) == before, "what is written is what was read", bytes);
  if (!document->setString(place.first, place.second, value)) return;
  reread();
  const auto written = document->value(place.first, place.second);
  expect(written && (written->text == value || encoding == adapters::RegEncoding::ansi),
         "a value is as it was written");
  expectOthers(before, valuesOf(text, read), place);
  document->remove(place.first, place.second);
  reread();
  expect(!document->value(place.first, place.second), "a value that was removed is none");
  expectOthers(before, valuesOf(text, read), place);
}

void ini(Input input) {
  const Place place = {input.line(), input.line()};
  const std::string value = input.line();
  const std::string file = directory() / "kartix.ini";
  const std::string bytes(input.rest());
  test::writeBytes(file, bytes);
  const auto files = adapters::makeIniFiles();
  constexpr std::size_t longest = 1 << 20;
  const Read read = [&](const Place& where) {
    return std::optional(files->GetPrivateProfileString(where.first, where.second, "none", longest, file));
  };
  const Found before = valuesOf(codepage::fromAnsi(bytes), read);
  const bool written = files->WritePrivateProfileString(place.first, place.second, value, file);
  expect(written || test::readBytes(file) == bytes, "what cannot be written changes nothing");
  if (!written) return;
  const std::string kept = codepage::fromAnsi(codepage::toAnsi(value));
  expect(read(place) == kept && files->asReadBack(value) == kept, "a value is as it was written", kept);
  expectOthers(before, valuesOf(codepage::fromAnsi(bytes), read), place);
}

void book(Input input) {
  const std::string person = input.line();
  BookEntry entry;
  entry.person = person;
  entry.lfdnr = "1";
  entry.clerk = input.line();
  test::writeBytes(bookFile(), std::string(input.rest()) + "\n");
  const auto before = bookEntries();
  const auto files = adapters::makeFiles();
  test::StandingClock clock;
  OrderBook kept(*files, clock, bookFile());
  expect(!kept.begin(entry) && !kept.end(entry.id, Outcome::unclear, "COM/-26"), "an entry can be written");
  const auto after = bookEntries();
  expect(after.size() == before.size() + 1, "a message is one entry");
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool same = after[i].id == before[i].id && after[i].outcome == before[i].outcome;
    expect(same && after[i].clerk == before[i].clerk, "other entries stay as they are", before[i].id);
  }
  std::optional<BookEntry> last;
  expect(!kept.findLast(person, "1", last) && last && last->id == entry.id, "the last entry is found", person);
  expect(last->outcome == Outcome::unclear, "it says how it ended");
}

}  // namespace kartix::fuzz
