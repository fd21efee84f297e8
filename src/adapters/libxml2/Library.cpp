#include <libxml/parser.h>

#include <algorithm>
#include <mutex>
#include <utility>

#include "adapters/libxml2/Decoding.h"
#include "adapters/libxml2/Document.h"
#include "adapters/libxml2/LibXml.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

class LibXml final : public platform::XmlLibrary {
 public:
  explicit LibXml(std::vector<std::string> classNames) : classNames_(std::move(classNames)) {
    // Once and never undone: the host may use the same library.
    static std::once_flag initialised;
    std::call_once(initialised, xmlInitParser);
  }

  std::unique_ptr<platform::XmlDocument> createDocument(std::string_view className) override {
    const bool known = std::any_of(classNames_.begin(), classNames_.end(),
                                   [&](const std::string& name) { return text::equalNoCase(name, className); });
    if (!known) return nullptr;
    return std::make_unique<Document>();
  }

  std::optional<std::string> decode(std::string_view bytes) override {
    if (bytes.size() > documentLimit) return std::nullopt;
    return decodeXml(bytes);
  }

 private:
  std::vector<std::string> classNames_;
};

}  // namespace

std::vector<std::string> xmlClassNames() {
  return {"Msxml2.DOMDocument.4.0", "Msxml2.DOMDocument.3.0", "Msxml2.DOMDocument.2.6", "Msxml2.DOMDocument.2.0",
          "Microsoft.XMLDOM"};
}

std::unique_ptr<platform::XmlLibrary> makeLibXml(std::vector<std::string> classNames) {
  return std::make_unique<LibXml>(std::move(classNames));
}

}  // namespace kartix::adapters
