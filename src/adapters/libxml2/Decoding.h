#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// UTF-8 text of a received document, without byte order mark: by the mark, else by the encoding that the XML
/// declaration names, else as UTF-8 when it is valid, else as Windows-1252. Nothing when the encoding is unknown or
/// the bytes do not fit it.
std::optional<std::string> decodeXml(std::string_view bytes);

}  // namespace kartix::adapters
