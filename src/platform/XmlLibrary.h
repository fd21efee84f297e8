#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::platform {

/// An element of a document; valid as long as the document holds its content. Empty means the document itself.
using XmlNode = void*;

/// One XML document. Texts are UTF-8. Loading never touches the network, never reads a document type's file,
/// expands no entities but the predefined five and character references, and limits size and depth.
class XmlDocument {
 public:
  virtual ~XmlDocument() = default;

  /// Replaces the content by the document in `text`, whatever encoding its declaration names. False when it is
  /// not well-formed; the document is then empty.
  virtual bool loadXML(std::string_view text) = 0;

  /// The whole document as text. A document that was loaded with `<?xml version="1.0"?>` begins with exactly
  /// that. Characters of XML are escaped; an element without text is written `<name/>`.
  virtual std::string xml() const = 0;

  /// The document element, or nothing when the document is empty.
  virtual XmlNode documentElement() const = 0;

  /// Appends a child element holding one text node. Characters that XML cannot carry are left out.
  virtual XmlNode appendElement(XmlNode parent, std::string_view name, std::string_view text) = 0;

  /// Elements to which `xpath` leads from `context` (or the document), in document order: steps "/name" to a child
  /// and "//name" to any descendant, the first one also as "name" or ".//name". No other form selects anything.
  virtual std::vector<XmlNode> selectNodes(std::string_view xpath, XmlNode context = nullptr) const = 0;

  /// The first of them, or nothing: looks no further than there.
  virtual XmlNode selectSingleNode(std::string_view xpath) const = 0;

  /// Child elements of `parent` called `name`, in document order.
  virtual std::vector<XmlNode> children(XmlNode parent, std::string_view name) const = 0;

  virtual std::string nodeName(XmlNode node) const = 0;
  /// Text of an element and all below it.
  virtual std::string nodeText(XmlNode node) const = 0;
};

/// Makes documents by the name of their class.
class XmlLibrary {
 public:
  virtual ~XmlLibrary() = default;

  /// A new empty document, or nothing when there is no such class.
  virtual std::unique_ptr<XmlDocument> createDocument(std::string_view className) = 0;

  /// The text of a received document as UTF-8: by byte order mark, else by the declared encoding, else as UTF-8
  /// when it is valid, else as Windows-1252. Nothing when the declared encoding is unknown or does not fit.
  virtual std::optional<std::string> decode(std::string_view bytes) = 0;
};

}  // namespace kartix::platform
