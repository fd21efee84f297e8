#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/sqlite/Sqlite.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix {
namespace {

using testing::HasSubstr;

const std::string key = std::string(productKey) + "ZFER\\";

class TraceFile : public testing::Test {
 protected:
  void openAt(const std::string& level, const std::string& path) {
    ASSERT_TRUE(machine.registry->RegSetValueEx(key, "DebugLevel", level));
    ASSERT_TRUE(machine.registry->RegSetValueEx(key, "DebugFile", path));
    runtime.TraceOpen();
  }

  test::TestMachine machine{adapters::makeSqliteDbe()};
  Runtime& runtime = machine.runtime;
  const std::string file = machine.directory / "trace.txt";
};

TEST_F(TraceFile, TakesLinesOfAnyLengthAndLetter) {
  const std::string longText(5000, 'x');
  openAt(" 2.9", "  " + file + " ");
  runtime.trace.TraceParam("name", std::string_view("Müller € Đ"));
  runtime.trace.TraceLine({longText, "<", longText}, trace_level::calls);
  const std::string text = test::readBytes(file);
  EXPECT_THAT(text, HasSubstr("\r\n09.03.2026 07:05:04  *** Parameter name=M\xFCller \x80 ?\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\n09.03.2026 07:05:04  " + longText + "<" + longText + "\r\n"));
}

TEST_F(TraceFile, IsForItsOwnerAlone) {
  openAt("1", file);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

}  // namespace
}  // namespace kartix
