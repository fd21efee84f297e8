#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kartix::test {

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

/// The whole file; empty when there is none.
inline std::string readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kartix::test
