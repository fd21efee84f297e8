#include "adapters/script/InputFile.h"

#include <cerrno>
#include <cstddef>
#include <fstream>
#include <system_error>

#include "adapters/script/Script.h"
#include "common/Paths.h"

namespace kartix::adapters {
namespace {

constexpr std::size_t largestFile = 16UL * 1024 * 1024;
constexpr int deepestNesting = 8;

}  // namespace

std::string readInputFile(const std::filesystem::path& file) {
  const std::string name = utf8Of(file);
  std::error_code error;  // whatever else is wrong with the file shows when it is opened
  if (std::filesystem::is_directory(file, error)) throw BadInput(name + ": is a directory");
  std::ifstream in(file, std::ios::binary);
  if (!in) throw BadInput(name + ": " + std::generic_category().message(errno));
  std::string content;
  std::string block(64UL * 1024, '\0');
  while (in) {
    in.read(block.data(), static_cast<std::streamsize>(block.size()));
    content.append(block, 0, static_cast<std::size_t>(in.gcount()));
    if (content.size() > largestFile) throw BadInput(name + ": larger than 16 MiB");
  }
  if (in.bad()) throw BadInput(name + ": cannot be read");
  return content;
}

Json parseJson(std::string_view text) {
  // Nothing that is read here is nested deeply; the limit keeps a hostile file from exhausting the stack.
  const Json::parser_callback_t shallow = [](int depth, Json::parse_event_t, Json&) {
    if (depth > deepestNesting) throw BadInput("nested too deeply");
    return true;
  };
  try {
    return Json::parse(text, shallow);
  } catch (const Json::exception& error) {
    throw BadInput(std::string("not valid JSON: ") + error.what());
  }
}

void dissolve(Json& value) noexcept {
  if (!value.is_structured()) return;
  for (Json& part : value) dissolve(part);
  value.clear();
}

std::string toLine(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace kartix::adapters
