#pragma once

#include <functional>
#include <string_view>

#include "platform/XmlLibrary.h"

namespace kartix {

class KBAInterface;

/// Writes the elements of a message below one of its elements, in the order of the calls. Raises std::runtime_error
/// when the document refuses one.
class ElementWriter {
 public:
  ElementWriter(platform::XmlDocument& document, platform::XmlNode node) : document_(document), node_(node) {}

  /// An element that holds further elements.
  ElementWriter group(std::string_view name);
  /// An element with a value, which may be empty.
  ElementWriter& value(std::string_view name, std::string_view text);
  /// The same, left out for an empty value.
  ElementWriter& valueIfAny(std::string_view name, std::string_view text);

 private:
  platform::XmlNode append(std::string_view name, std::string_view text);

  platform::XmlDocument& document_;
  platform::XmlNode node_;
};

/// What a kind of message is called.
struct MessageType {
  std::string_view root;     ///< its root element
  std::string_view dtdPath;  ///< path of its document type at the gateway's host
};

/// Makes `document` a message and lets `fill` write below its root. `address` chooses the host of the document type.
/// False when it could not be built.
bool buildMessage(const KBAInterface& kba, platform::XmlDocument& document, const MessageType& type,
                  std::string_view address, const std::function<void(ElementWriter root)>& fill);

}  // namespace kartix
