#include "adapters/script/JsonText.h"

#include "adapters/script/InputFile.h"

namespace kartix::adapters {

JsonText& JsonText::add(std::string_view json) {
  if (!line_.empty() && line_.back() != '{' && line_.back() != '[' && line_.back() != ':') line_ += ',';
  line_ += json;
  return *this;
}

JsonText& JsonText::open(char bracket) {
  open_ += bracket == '{' ? '}' : ']';
  return add({&bracket, 1});
}

JsonText& JsonText::close() {
  line_ += open_.back();
  open_.pop_back();
  return *this;
}

JsonText& JsonText::name(std::string_view name) {
  text(name);
  line_ += ':';
  return *this;
}

JsonText& JsonText::text(std::string_view value) { return add(toLine(Json(value))); }
JsonText& JsonText::number(std::int64_t value) { return add(std::to_string(value)); }
JsonText& JsonText::number(double value) { return add(toLine(Json(value))); }
JsonText& JsonText::boolean(bool value) { return add(value ? "true" : "false"); }
JsonText& JsonText::null() { return add("null"); }

}  // namespace kartix::adapters
