#include "adapters/libxml2/Document.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlsave.h>

#include <limits>
#include <new>

#include "adapters/libxml2/Path.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

const xmlChar* bytesOf(const std::string& text) { return reinterpret_cast<const xmlChar*>(text.c_str()); }

std::string textOf(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : std::string(); }

/// Ends the parsing; the document counts as not well-formed.
void refuse(void* context) {
  auto* const parser = static_cast<xmlParserCtxt*>(context);
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

/// Entities other than the predefined five make a document unusable, be they declared or used. So nothing is ever
/// expanded or fetched.
xmlEntity* onlyPredefined(void* context, const xmlChar* name) {
  if (xmlEntity* const predefined = xmlGetPredefinedEntity(name)) return predefined;
  refuse(context);
  return nullptr;
}

xmlEntity* noParameterEntity(void* context, const xmlChar*) {
  refuse(context);
  return nullptr;
}

void noEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) { refuse(context); }

/// Values for attributes that are left out make it unusable too. The library tries each of them on every element: a
/// few thousand of both would keep it busy for minutes.
void noDefaultValue(void* context, const xmlChar*, const xmlChar*, int, int, const xmlChar* value,
                    xmlEnumeration* choices) {
  xmlFreeEnumeration(choices);
  if (value) refuse(context);
}

void sayNothing(void* /*context*/, xmlError* /*error*/) {}

using DocumentPointer = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

/// The library tells that memory has run out in many ways, or not at all: by nothing found, a document cut short, a
/// node without its text. Only the last error of the thread is always right.
class MemoryWatch {
 public:
  MemoryWatch() { xmlResetLastError(); }
  /// Throws std::bad_alloc when memory has run out since.
  void check() const {
    const xmlError* const last = xmlGetLastError();
    if (last && last->code == XML_ERR_NO_MEMORY) throw std::bad_alloc();
  }
};

/// `text` is UTF-8 without NUL, so that the library takes it as it is. When told an encoding it converts, and reads
/// through a null pointer when there is no memory for that.
DocumentPointer parsed(const std::string& text) {
  const MemoryWatch watch;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), xmlFreeParserCtxt);
  if (!parser) throw std::bad_alloc();
  parser->sax->getEntity = onlyPredefined;
  parser->sax->getParameterEntity = noParameterEntity;
  parser->sax->entityDecl = noEntity;
  parser->sax->attributeDecl = noDefaultValue;
  // Without memory the library would quote the document on standard error, and with it a person.
  parser->sax->serror = sayNothing;
  constexpr int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_IGNORE_ENC;
  DocumentPointer document(
      xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()), nullptr, nullptr, options),
      xmlFreeDoc);
  watch.check();
  if (parser->errNo == XML_ERR_NO_MEMORY) throw std::bad_alloc();
  return document;
}

bool isCarriable(std::string_view text) {
  // An image is one long text of printable characters.
  for (std::size_t position = 0; (position += text::printableRun(text, position)) < text.size();) {
    // One that is damaged reads as U+FFFD, which is three bytes long itself.
    const std::size_t start = position;
    const auto character = static_cast<unsigned>(text::nextCharacter(text, position));
    // A macro, which looks at its argument more than once.
    if (!IS_CHAR(character) || (character == 0xFFFD && position - start != 3)) return false;
  }
  return true;
}

/// `text` without the characters that XML cannot carry.
std::string carriable(std::string_view text) {
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = text::nextCharacter(text, position);
    if (IS_CHAR(static_cast<unsigned>(character))) text::append(result, character);
  }
  return result;
}

xmlNode* newText(xmlDoc* document, std::string_view text) {
  if (text.size() > std::numeric_limits<int>::max()) throw std::bad_alloc();
  xmlNode* const node =
      xmlNewDocTextLen(document, reinterpret_cast<const xmlChar*>(text.data()), static_cast<int>(text.size()));
  if (!node) throw std::bad_alloc();
  return node;
}

/// Writes the document's nodes through `write`, piece by piece.
void save(const xmlDoc& document, xmlOutputWriteCallback write, void* context) {
  const MemoryWatch watch;
  xmlSaveCtxt* const writer = xmlSaveToIO(write, nullptr, context, "UTF-8", XML_SAVE_NO_DECL | XML_SAVE_AS_XML);
  if (!writer) throw std::bad_alloc();
  for (xmlNode* node = document.children; node; node = node->next) xmlSaveTree(writer, node);
  xmlSaveClose(writer);
  watch.check();
}

/// About as many bytes as the node and what is in it will take: more than that only where there is much to escape.
std::size_t expectedSize(const xmlNode* node) {
  constexpr std::size_t brackets = 5;
  std::size_t size = 0;
  for (; node; node = node->next) {
    if (node->type == XML_ELEMENT_NODE) {
      size += 2 * static_cast<std::size_t>(xmlStrlen(node->name)) + brackets + expectedSize(node->children);
    } else if (node->type == XML_TEXT_NODE) {
      size += static_cast<std::size_t>(xmlStrlen(node->content));
    }
  }
  return size;
}

/// Text that grows out of the library, through which nothing may be thrown.
struct Growing {
  std::string text;
  bool failed = false;
};

int appendBytes(void* context, const char* bytes, int length) noexcept {
  auto& [text, failed] = *static_cast<Growing*>(context);
  try {
    text.append(bytes, static_cast<std::size_t>(length));
    return length;
  } catch (const std::exception&) {
    failed = true;
    return -1;
  }
}

std::string qualifiedName(const xmlNode& node) {
  const bool prefixed = node.type == XML_ELEMENT_NODE && node.ns && node.ns->prefix;
  return prefixed ? textOf(node.ns->prefix) + ":" + textOf(node.name) : textOf(node.name);
}

}  // namespace

xmlNode* Document::nodeOf(platform::XmlNode node) const {
  return node ? static_cast<xmlNode*>(node) : reinterpret_cast<xmlNode*>(document_.get());
}

bool Document::loadXML(std::string_view text) {
  document_.reset();
  if (text.size() > documentLimit || text.find('\0') != std::string_view::npos || !text::isValidUtf8(text))
    return false;
  document_ = parsed(std::string(text));
  declared_ = text.starts_with("<?xml ");
  return document_ != nullptr;
}

std::string Document::xml() const {
  if (!document_) return {};
  Growing writing;
  if (declared_) {
    const int standalone = document_->standalone;
    writing.text = "<?xml version=\"" + textOf(document_->version) + "\"";
    if (standalone >= 0) writing.text += standalone == 1 ? " standalone=\"yes\"" : " standalone=\"no\"";
    writing.text += "?>";
  }
  // In one piece, and with room for a document type and a longer declaration: a message with images is large.
  constexpr std::size_t room = 512;
  writing.text.reserve(expectedSize(document_->children) + room);
  save(*document_, appendBytes, &writing);
  if (writing.failed) throw std::bad_alloc();
  return std::move(writing.text);
}

platform::XmlNode Document::documentElement() const {
  return document_ ? xmlDocGetRootElement(document_.get()) : nullptr;
}

platform::XmlNode Document::appendElement(platform::XmlNode parent, std::string_view name, std::string_view text) {
  const std::string elementName(name);
  if (xmlValidateNCName(bytesOf(elementName), 0) != 0) return nullptr;
  if (!document_) document_.reset(xmlNewDoc(nullptr));
  if (!document_) throw std::bad_alloc();
  if (!parent && xmlDocGetRootElement(document_.get())) return nullptr;

  const MemoryWatch watch;
  xmlNode* const element = xmlNewDocNode(document_.get(), nullptr, bytesOf(elementName), nullptr);
  if (!element) throw std::bad_alloc();
  xmlAddChild(nodeOf(parent), element);
  std::string filtered;
  if (!isCarriable(text)) text = filtered = carriable(text);
  // No node for an empty text: it would be written as a start and an end tag.
  if (!text.empty()) xmlAddChild(element, newText(document_.get(), text));
  watch.check();
  return element;
}

std::vector<platform::XmlNode> Document::selectNodes(std::string_view xpath, platform::XmlNode context) const {
  if (!document_) return {};
  const std::vector<xmlNode*> found = elementsAt(xpath, *nodeOf(xpath.starts_with('/') ? nullptr : context));
  return {found.begin(), found.end()};
}

platform::XmlNode Document::selectSingleNode(std::string_view xpath) const {
  if (!document_) return nullptr;
  const std::vector<xmlNode*> found = elementsAt(xpath, *nodeOf(nullptr), 1);
  return found.empty() ? nullptr : found.front();
}

std::vector<platform::XmlNode> Document::children(platform::XmlNode parent, std::string_view name) const {
  std::vector<platform::XmlNode> nodes;
  if (!document_) return nodes;
  for (xmlNode* node = nodeOf(parent)->children; node; node = node->next) {
    if (node->type == XML_ELEMENT_NODE && qualifiedName(*node) == name) nodes.push_back(node);
  }
  return nodes;
}

std::string Document::nodeName(platform::XmlNode node) const {
  return node ? qualifiedName(*static_cast<xmlNode*>(node)) : "#document";
}

std::string Document::nodeText(platform::XmlNode node) const {
  if (!document_) return {};
  xmlNode* const source = node ? nodeOf(node) : xmlDocGetRootElement(document_.get());
  const MemoryWatch watch;
  const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(source), xmlFree);
  watch.check();
  return textOf(content.get());
}

}  // namespace kartix::adapters
