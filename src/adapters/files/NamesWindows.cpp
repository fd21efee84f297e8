#include "adapters/files/Names.h"
#include "common/Text.h"

namespace kartix::adapters {

std::string nativeName(std::string_view path) { return text::replaceAll(path, "/", "\\"); }

std::optional<std::string> findOtherCase(const std::filesystem::path& /*wanted*/) { return std::nullopt; }

}  // namespace kartix::adapters
