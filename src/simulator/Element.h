#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::simulator {

/// An element of a message. Messages carry no attributes: every value is the text of an element. Texts are UTF-8.
///
/// ```cpp
/// const Element hint{"zkr-mhinweis", "", {{"retc", "0"}, {"rett", "Mitteilung verarbeitet"}}};
/// ```
struct Element {
  std::string name;
  std::string text = {};  ///< its own text, without that of its children
  std::vector<Element> children = {};

  /// Its own text without blanks and line ends around it.
  std::string content() const;
  /// The first element below this one that is called `name`, in document order.
  const Element* find(std::string_view name) const;
  /// The content of that element; empty when there is none.
  std::string value(std::string_view name) const;
};

/// The document element of a received document: nothing when it is not well-formed, when it declares attributes, or
/// declares or uses an entity of its own making, or when it nests more than 32 elements or holds more than 10,000.
std::optional<Element> parseXml(std::string_view bytes);

/// The document with its declaration, in ISO-8859-1. Characters outside it become character references.
std::string writeXml(const Element& root);

}  // namespace kartix::simulator
