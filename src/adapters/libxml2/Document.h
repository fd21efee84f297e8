#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/XmlLibrary.h"

namespace kartix::adapters {

/// Most bytes of a document's text.
inline constexpr std::size_t documentLimit = std::size_t{16} * 1024 * 1024;

class Document final : public platform::XmlDocument {
 public:
  bool loadXML(std::string_view text) override;
  std::string xml() const override;
  platform::XmlNode documentElement() const override;
  platform::XmlNode appendElement(platform::XmlNode parent, std::string_view name, std::string_view text) override;
  std::vector<platform::XmlNode> selectNodes(std::string_view xpath, platform::XmlNode context) const override;
  platform::XmlNode selectSingleNode(std::string_view xpath) const override;
  std::vector<platform::XmlNode> children(platform::XmlNode parent, std::string_view name) const override;
  std::string nodeName(platform::XmlNode node) const override;
  std::string nodeText(platform::XmlNode node) const override;

 private:
  /// The node behind `node`; the document itself for none.
  xmlNode* nodeOf(platform::XmlNode node) const;

  bool declared_ = false;  ///< the document begins with an XML declaration
  std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document_{nullptr, xmlFreeDoc};
};

}  // namespace kartix::adapters
