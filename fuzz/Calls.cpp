#include <array>
#include <deque>

#include "Installation.h"
#include "common/Text.h"
#include "component/Component.h"
#include "component/HostSettings.h"
#include "kartix/automation.h"
#include "soak/Clerk.h"

/// Calls by name and by slot, with any arguments, through the C interface. A call is some bytes for the way, the
/// class, the slot and each argument's type, and a line for each text, in which "$DB" leads to the database.
namespace kartix::fuzz {
namespace {

using Objects = std::array<kartix_object, 4>;
constexpr std::array<const char*, 4> classes = {"Kartix", "DBETXTDatabase", "CPersonalien", "CFahrerkarte"};

/// The component of this process, with a clerk who does what is asked, and no way out.
bool prepared() {
  static test::Clerk clerk;
  static Pictures pictures;
  return Component::prepareShared([](Setup& setup) {
    setup.registry = std::make_shared<HostSettings>(
        [](const std::string& name) -> std::optional<std::string> { return installed()[name]; }, nullptr);
    setup.userInterface = &clerk;
    setup.sounds = &clerk;
    setup.images = &pictures;
    setup.http = &clerk;
  });
}

void check(std::int32_t code, const kartix_value& value) {
  expect(code >= KARTIX_OK && code <= KARTIX_FAILED, "a code is one", std::to_string(code));
  if (code != KARTIX_OK) return;
  expect(value.type >= KARTIX_EMPTY && value.type <= KARTIX_TEXT, "a value has a type");
  if (value.type == KARTIX_TEXT) expect(text::isValidUtf8(value.as.text), "a text is UTF-8", value.as.text);
}

kartix_value valueFrom(Input& input, std::deque<std::string>& texts) {
  const std::uint8_t type = input.byte();
  if (type >= 200) return {type, {}};
  if (type >= 190) return kartix_text(nullptr);
  if (type >= 180) return kartix_empty();
  if (type >= 170) return kartix_boolean(input.byte());
  std::string text = input.line();
  if (text == "$DB") text = databaseFile();
  if (type >= 128) return kartix_integer(std::strtoll(text.c_str(), nullptr, 10));
  return kartix_text(texts.emplace_back(text).c_str());
}

void call(Input& input, const Objects& objects) {
  std::deque<std::string> texts;
  const std::uint8_t way = input.byte();
  const std::uint8_t which = input.byte();
  const std::int32_t slot = input.byte();
  kartix_member member{};
  const bool known = kartix_describe(classes.at(which % 4), slot, &member) == KARTIX_OK;
  const kartix_object object = which < 250 ? objects.at(which % 4) : which;
  const char* const name = known ? member.name : texts.emplace_back(input.line()).c_str();
  const std::int32_t count = known && way < 128 ? member.count : input.byte() % 11;
  std::vector<kartix_value> arguments;
  while (std::ssize(arguments) < count) arguments.push_back(valueFrom(input, texts));
  kartix_value result = kartix_empty();
  std::int32_t code = KARTIX_OK;
  if (way % 4 == 0) code = kartix_call(object, name, arguments.data(), count, &result);
  if (way % 4 == 1) code = kartix_call_slot(object, slot, arguments.data(), count, nullptr);
  if (way % 4 == 2) code = kartix_get(object, name, &result);
  if (way % 4 == 3) code = kartix_let(object, name, count > 0 ? arguments[0] : kartix_empty());
  expect((*kartix_error_text() == '\0') == (code == KARTIX_OK), "a failure has words, and nothing else");
  check(code, result);
  if (way % 4 > 1) return;
  for (const kartix_value& argument : arguments) check(code, argument);
}

}  // namespace

void calls(Input input) {
  static const bool ready = prepared();
  expect(ready && !installed().empty(), "there is a component");
  Objects objects{};
  for (std::size_t i = 0; i < classes.size(); ++i) kartix_create(classes.at(i), &objects.at(i));
  for (int i = 0; i < 50 && !input.empty(); ++i) call(input, objects);
  for (const kartix_object object : objects) expect(kartix_release(object) == KARTIX_OK, "objects can be given back");
}

}  // namespace kartix::fuzz
