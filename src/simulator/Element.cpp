#include "simulator/Element.h"

#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <climits>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace kartix::simulator {
namespace {

constexpr std::size_t deepest = 32;
constexpr std::size_t mostElements = 10'000;

/// Builds the elements from the parser's events. There is no document in between, so a large photo is held once.
class Builder {
 public:
  explicit Builder(xmlParserCtxt& parser) : parser_(parser) {}

  void start(const xmlChar* name) {
    if (open_.size() == deepest || ++elements_ > mostElements) return refuse();
    open_.push_back({reinterpret_cast<const char*>(name)});
  }

  void end() {
    if (open_.empty()) return;
    Element element = std::move(open_.back());
    open_.pop_back();
    if (open_.empty()) {
      root_ = std::move(element);
    } else {
      open_.back().children.push_back(std::move(element));
    }
  }

  void characters(const xmlChar* text, int length) {
    if (!open_.empty())
      open_.back().text.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  }

  void refuse() {
    refused_ = true;
    xmlStopParser(&parser_);
  }

  std::optional<Element> take() { return refused_ ? std::nullopt : std::move(root_); }

 private:
  xmlParserCtxt& parser_;
  std::vector<Element> open_;
  std::optional<Element> root_;
  std::size_t elements_ = 0;
  bool refused_ = false;
};

Builder& builder(void* context) { return *static_cast<Builder*>(context); }

void onStart(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int, const xmlChar**, int, int,
             const xmlChar**) {
  builder(context).start(name);
}

void onEnd(void* context, const xmlChar*, const xmlChar*, const xmlChar*) { builder(context).end(); }

void onText(void* context, const xmlChar* text, int length) { builder(context).characters(text, length); }

void onEntityDeclaration(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  builder(context).refuse();
}

/// Messages carry no attributes, and values for attributes that are left out cost the parser time without measure.
void onAttributeDeclaration(void* context, const xmlChar*, const xmlChar*, int, int, const xmlChar*,
                            xmlEnumeration* choices) {
  xmlFreeEnumeration(choices);
  builder(context).refuse();
}

/// Called for all but the predefined five.
xmlEntity* onEntity(void* context, const xmlChar*) {
  builder(context).refuse();
  return nullptr;
}

xmlSAXHandler handlers() {
  xmlSAXHandler sax{};
  sax.initialized = XML_SAX2_MAGIC;
  sax.startElementNs = onStart;
  sax.endElementNs = onEnd;
  sax.characters = onText;
  sax.ignorableWhitespace = onText;
  sax.cdataBlock = onText;
  sax.entityDecl = onEntityDeclaration;
  sax.attributeDecl = onAttributeDeclaration;
  sax.getEntity = onEntity;
  sax.getParameterEntity = onEntity;
  return sax;
}

template <class Made>
Made& made(Made* thing) {
  if (!thing) throw std::bad_alloc();
  return *thing;
}

const xmlChar* bytesOf(const std::string& text) { return reinterpret_cast<const xmlChar*>(text.c_str()); }

/// The document takes over what is made.
xmlNode& makeNode(xmlDoc& document, const Element& element) {
  xmlNode& node = made(xmlNewDocNode(&document, nullptr, bytesOf(element.name), nullptr));
  if (!element.text.empty()) xmlAddChild(&node, &made(xmlNewDocText(&document, bytesOf(element.text))));
  for (const Element& child : element.children) xmlAddChild(&node, &makeNode(document, child));
  return node;
}

}  // namespace

const Element* Element::find(std::string_view wanted) const {
  for (const Element& child : children) {
    if (child.name == wanted) return &child;
    if (const Element* const found = child.find(wanted)) return found;
  }
  return nullptr;
}

std::string Element::content() const {
  constexpr const char* blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string Element::value(std::string_view wanted) const {
  const Element* const found = find(wanted);
  return found ? found->content() : std::string();
}

std::optional<Element> parseXml(std::string_view bytes) {
  static std::once_flag initialised;
  std::call_once(initialised, xmlInitParser);
  if (bytes.size() > INT_MAX) return std::nullopt;

  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), xmlFreeParserCtxt);
  if (!parser) throw std::bad_alloc();
  Builder target(*parser);
  *parser->sax = handlers();
  parser->userData = &target;
  // A photo may be larger than the library's usual limit of one text; depth and entities have limits of their own
  // here.
  constexpr int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;
  xmlFreeDoc(
      xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, options));
  return parser->wellFormed == 1 ? target.take() : std::nullopt;
}

std::string writeXml(const Element& root) {
  constexpr const char* encoding = "ISO-8859-1";
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(xmlNewDoc(nullptr), xmlFreeDoc);
  xmlDocSetRootElement(document.get(), &makeNode(made(document.get()), root));
  const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> bytes(xmlBufferCreate(), xmlBufferFree);
  xmlSaveCtxt& writer = made(xmlSaveToBuffer(&made(bytes.get()), encoding, XML_SAVE_NO_DECL | XML_SAVE_AS_XML));
  xmlSaveTree(&writer, xmlDocGetRootElement(document.get()));
  xmlSaveClose(&writer);
  std::string text = std::string(R"(<?xml version="1.0" encoding=")") + encoding + R"("?>)";
  return text.append(reinterpret_cast<const char*>(xmlBufferContent(bytes.get())));
}

}  // namespace kartix::simulator
