#include "gateway/KBAInterface.h"

#include <array>
#include <stdexcept>

#include "common/Text.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// Classes of message documents, newest first.
constexpr std::array<std::string_view, 5> documentClasses = {
    "Msxml2.DOMDocument.4.0", "Msxml2.DOMDocument.3.0", "Msxml2.DOMDocument.2.6",
    "Msxml2.DOMDocument.2.0", "Microsoft.XMLDOM",
};

constexpr std::string_view plainDeclaration = R"(<?xml version="1.0"?>)";
constexpr std::string_view isoDeclaration = R"(<?xml version="1.0" encoding="ISO-8859-1"?>)";

}  // namespace

void KBAInterface::init() {
  runtime_.trace.TraceEnter("KBAInterface::init");
  XMLDom.clear();
  runtime_.trace.TraceLeave("KBAInterface::init");
}

bool KBAInterface::InitXML() {
  runtime_.trace.TraceEnter("KBAInterface::InitXML");
  for (std::string_view name : documentClasses) {
    if (!runtime_.machine.xml.createDocument(name)) continue;
    XMLDom = name;
    runtime_.trace.TraceLeave("KBAInterface::InitXML, XMLDom = '" + XMLDom + "'", true);
    return true;
  }
  XMLDom.clear();
  runtime_.trace.TraceLeave("KBAInterface::InitXML", false);
  return false;
}

std::unique_ptr<platform::XmlDocument> KBAInterface::createDocument() const {
  auto document = runtime_.machine.xml.createDocument(XMLDom);
  if (!document) throw std::runtime_error("no document of class '" + XMLDom + "'");
  return document;
}

void KBAInterface::NewXmlDocument(platform::XmlDocument& document, std::string_view rootName,
                                  std::string_view doctypeLine) {
  std::string text(plainDeclaration);
  text.append(doctypeLine).append("<").append(rootName).append("/>");
  document.loadXML(text);
}

bool KBAInterface::namesFirstHost(std::string_view address) const {
  const std::string& first = runtime_.konfiguration.DTDHost1;
  return !first.empty() && text::upper(address).find(text::upper(first)) != std::string::npos;
}

std::string KBAInterface::doctypeLine(std::string_view rootName, std::string_view dtdPath,
                                      std::string_view address) const {
  const Konfiguration& settings = runtime_.konfiguration;
  const std::string& host = namesFirstHost(address) ? settings.DTDHost1 : settings.DTDHost2;
  std::string line = "<!DOCTYPE ";
  return line.append(rootName).append(" SYSTEM \"http://").append(host).append(dtdPath).append("\">");
}

std::string KBAInterface::SetIsoDeclaration(std::string xmlText) {
  if (xmlText.starts_with(plainDeclaration)) xmlText.replace(0, plainDeclaration.size(), isoDeclaration);
  return xmlText;
}

std::string firstText(const platform::XmlDocument& document, std::string_view xpath) {
  platform::XmlNode node = document.selectSingleNode(xpath);
  return node ? text::trimSpace(document.nodeText(node)) : std::string();
}

std::string rootName(const platform::XmlDocument& document) {
  platform::XmlNode root = document.documentElement();
  return root ? document.nodeName(root) : std::string();
}

}  // namespace kartix
