#pragma once

#include <filesystem>
#include <string>

namespace kartix::test {

/// Makes what `description` says: a picture ("300x400", all black, as a bitmap), one whose file is cut in half
/// ("300x400 broken off"), or a "directory" in its place. Raises `BadScenario`.
void makePicture(const std::filesystem::path& file, const std::string& description);

/// Size and resolution of a JPEG file with a JFIF head: "368x490 at 500x500"; empty for any other file.
std::string describePicture(const std::filesystem::path& file);

std::string base64Of(const std::filesystem::path& file);

}  // namespace kartix::test
