#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/XmlLibrary.h"

namespace kartix::adapters {

/// Class names by which the component asks for documents, newest first.
std::vector<std::string> xmlClassNames();

/// Documents of at most 16 MiB and 256 nested elements. `classNames` are the classes that exist; upper and lower
/// case are the same. A document's text has no line breaks but its own: declaration, document type and document
/// element follow each other directly. A document that declares entities of its own, or values for
/// attributes that are left out, is refused.
std::unique_ptr<platform::XmlLibrary> makeLibXml(std::vector<std::string> classNames = xmlClassNames());

}  // namespace kartix::adapters
