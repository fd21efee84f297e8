#include "gateway/MessageDocument.h"

#include <exception>
#include <stdexcept>
#include <string>

#include "gateway/KBAInterface.h"

namespace kartix {

platform::XmlNode ElementWriter::append(std::string_view name, std::string_view text) {
  platform::XmlNode element = document_.appendElement(node_, name, text);
  if (!element) throw std::runtime_error("element " + std::string(name) + " refused");
  return element;
}

ElementWriter ElementWriter::group(std::string_view name) { return {document_, append(name, {})}; }

ElementWriter& ElementWriter::value(std::string_view name, std::string_view text) {
  append(name, text);
  return *this;
}

ElementWriter& ElementWriter::valueIfAny(std::string_view name, std::string_view text) {
  return text.empty() ? *this : value(name, text);
}

bool buildMessage(const KBAInterface& kba, platform::XmlDocument& document, const MessageType& type,
                  std::string_view address, const std::function<void(ElementWriter root)>& fill) {
  try {
    KBAInterface::NewXmlDocument(document, type.root, kba.doctypeLine(type.root, type.dtdPath, address));
    platform::XmlNode root = document.documentElement();
    if (!root) return false;
    fill(ElementWriter(document, root));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace kartix
