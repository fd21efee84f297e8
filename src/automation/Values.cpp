#include "automation/Values.h"

#include "automation/Failure.h"
#include "common/Text.h"
#include "common/Values.h"

namespace kartix::automation {

std::string_view textFrom(const char* text, std::string_view what) {
  if (!text) throw Failure(KARTIX_NULL_POINTER, std::string(what) + " is NULL");
  if (!text::isValidUtf8(text)) throw Failure(KARTIX_INVALID_TEXT, std::string(what) + " is not UTF-8 text");
  return text;
}

platform::Value fromC(const kartix_value& value, std::string_view what) {
  switch (value.type) {
    case KARTIX_EMPTY:
      return {};
    case KARTIX_BOOLEAN:
      return value.as.boolean != 0;
    case KARTIX_INTEGER:
      return value.as.integer;
    case KARTIX_TEXT:
      return std::string(textFrom(value.as.text, what));
    default:
      throw Failure(KARTIX_WRONG_TYPE,
                    std::string(what) + " has no type that there is: " + std::to_string(value.type));
  }
}

kartix_value toC(const platform::Value& value, std::string& place) {
  if (std::holds_alternative<std::monostate>(value)) return kartix_empty();
  if (const auto* const truth = std::get_if<bool>(&value)) return kartix_boolean(*truth ? 1 : 0);
  if (const auto* const number = std::get_if<std::int64_t>(&value)) return kartix_integer(*number);
  if (const auto* const text = std::get_if<std::string>(&value)) return kartix_text(text->c_str());
  place = toText(value);
  return kartix_text(place.c_str());
}

}  // namespace kartix::automation
