#include <libxml/parser.h>

#include <memory>

#include "adapters/libxml2/LibXml.h"
#include "bench/Targets.h"

namespace kartix::bench {
namespace {

/// A register's answer with `hits` records.
std::string answer(int hits) {
  std::string text = "<?xml version=\"1.0\"?><zkr-auskunft><trefferliste>";
  for (int i = 0; i < hits; ++i) {
    text +=
        "<treffer><kartennr>DF00000012345678</kartennr><familienname>Müller-Lüdenscheidt</familienname>"
        "<vorname>Jörg &amp; Söhne</vorname><geburtsdatum>19620317</geburtsdatum><plz>24944</plz>"
        "<wohnort>Flensburg</wohnort><status>1</status><leer/></treffer>";
  }
  return text + "</trefferliste></zkr-auskunft>";
}

bool plain(const std::string& text) {
  xmlDoc* const document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  xmlFreeDoc(document);
  return document != nullptr;
}

Target answerTarget(int hits) {
  const std::string text = answer(hits);
  const std::shared_ptr<platform::XmlLibrary> library = adapters::makeLibXml();
  return compare(
      "answer with " + std::to_string(hits) + " records parsed",
      [text, library] { return library->createDocument("Microsoft.XMLDOM")->loadXML(text); }, "libxml2",
      [text] { return plain(text); }, 1.5);
}

}  // namespace

std::vector<Target> xmlTargets() { return {answerTarget(1), answerTarget(500)}; }

}  // namespace kartix::bench
