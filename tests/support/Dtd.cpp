#include "support/Dtd.h"

#include <libxml/parser.h>
#include <libxml/valid.h>

#include <memory>

namespace kartix::test {
namespace {

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;
using Dtd = std::unique_ptr<xmlDtd, decltype(&xmlFreeDtd)>;
using Validation = std::unique_ptr<xmlValidCtxt, decltype(&xmlFreeValidCtxt)>;

/// Collects what the library has to say while it lives.
class Messages {
 public:
  Messages() {
    xmlSetStructuredErrorFunc(this,
                              [](void* self, auto error) { static_cast<Messages*>(self)->text += error->message; });
  }
  ~Messages() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  std::string text;
};

}  // namespace

std::string dtdViolations(const std::string& document) {
  constexpr int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;
  const Document message(xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr, options),
                         xmlFreeDoc);
  if (!message) return "not well-formed";
  const std::string root = reinterpret_cast<const char*>(xmlDocGetRootElement(message.get())->name);
  const std::string file = std::string(KARTIX_DTDS) + "/" + root + ".dtd";
  const Dtd dtd(xmlParseDTD(nullptr, reinterpret_cast<const xmlChar*>(file.c_str())), xmlFreeDtd);
  if (!dtd) return "no " + file;
  const Validation validation(xmlNewValidCtxt(), xmlFreeValidCtxt);
  const Messages messages;
  if (xmlValidateDtd(validation.get(), message.get(), dtd.get()) == 1) return {};
  return messages.text.empty() ? "invalid" : messages.text;
}

}  // namespace kartix::test
