#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// JSON on one line, written from its beginning to its end. It keeps no values: those of the JSON library take memory
/// even when they are let go, and end the process when there is none.
///
/// ```cpp
/// JsonText line;
/// line.open('{').name("event").text("show").name("rows").open('[').close().close();
/// ```
class JsonText {
 public:
  /// Begins an object ('{') or an array ('['), which `close` ends.
  JsonText& open(char bracket);
  JsonText& close();
  /// Of the value that comes next.
  JsonText& name(std::string_view name);
  /// Bytes that are not UTF-8 are replaced.
  JsonText& text(std::string_view value);
  JsonText& number(std::int64_t value);
  JsonText& number(double value);
  JsonText& boolean(bool value);
  JsonText& null();

  const std::string& line() const { return line_; }

 private:
  JsonText& add(std::string_view json);

  std::string line_;
  std::string open_;  ///< what ends the objects and arrays that are open
};

}  // namespace kartix::adapters
