#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "adapters/files/Files.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

using namespace std::string_literals;

TEST(Files, AreFoundWhateverTheCaseOfTheirExtension) {
  const test::TempDir directory;
  const std::string root = directory.path().string();
  std::filesystem::create_directories(directory / "00/012/5.JP0");
  for (const char* name :
       {"1.JP0", "2.jp2", "2.JP2", "2.Jp2", "3.jP3", "3.JPp", "4.jp0.bak", "Ä.JP0", "5.jp0", "6"}) {
    test::writeBytes(directory / "00/012" / name, "x");
  }
  std::filesystem::create_symlink("1.JP0", directory / "00/012/7.jp0");
  std::filesystem::create_symlink("nowhere", directory / "00/012/8.jp0");
  const auto files = makeFiles();
  const std::string folder = root + "/00/012/";
  const std::string asSet = root + R"(\00\012\)";
  std::vector<std::string> cases = {"1.JP0\0.jp1>"s, std::string(5000, 'x') + ".jp0>", ">"};
  std::istringstream more(
      "1.JP0>1.JP0 1.jp0>1.JP0 2.jp2>2.jp2 2.JP2>2.JP2 2.jP2>2.JP2 3.jp3>3.jP3 4.jp0> 4.jp0.BAK>4.jp0.bak 4.JP0.bak> "
      "Ä.jp0>Ä.JP0 ä.jp0> 5.jP0>5.jp0 5.JP0> 6>6 6.jp0> 7.JP0>7.jp0 8.jp0> 8.JP0>");
  for (std::string one; more >> one;) cases.push_back(one);
  for (const std::string& wanted : cases) {
    const std::string name = wanted.substr(0, wanted.find('>'));
    const std::string found = wanted.substr(name.size() + 1);
    for (const std::string& path : {folder + name, asSet + name}) {
      EXPECT_EQ(files->findFile(path).value_or(""), found.empty() ? "" : folder + found) << path;
    }
  }
  EXPECT_FALSE(files->findFile(root + "/none/1.jp0"));
  EXPECT_EQ(files->nativePath("/srv/bilder\\00\\012\\34500\\0001234567"), "/srv/bilder/00/012/34500/0001234567");
}

}  // namespace
}  // namespace kartix::adapters
