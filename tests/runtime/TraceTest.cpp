#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/sqlite/Sqlite.h"
#include "common/Scrambling.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::string key = std::string(productKey) + "ZFER\\";
const std::string line60(60, '*');
const std::string longText(5000, 'x');

class TraceFile : public testing::Test {
 protected:
  void openAt(const std::string& level, const std::string& path) {
    ASSERT_TRUE(machine.registry->RegSetValueEx(key, "DebugLevel", level));
    ASSERT_TRUE(machine.registry->RegSetValueEx(key, "DebugFile", path));
    runtime.TraceOpen();
  }
  /// The lines of the file, each with the time that the clock stands at.
  std::string expected(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines) text += "09.03.2026 07:05:04  " + line + "\r\n";
    return text;
  }

  test::TestMachine machine{adapters::makeSqliteDbe()};
  Runtime& runtime = machine.runtime;
  const std::string file = machine.directory / "trace.txt";
};

TEST_F(TraceFile, HoldsTheLinesOfItsLevel) {
  struct Case {
    std::string level;
    bool parameters, counts, columns;
  };
  for (const Case& c : {Case{" 1", false, false, false},
                        {"2.9", true, false, false},
                        {"5", true, true, false},
                        {"99 alles", true, true, true}}) {
    test::writeBytes(file, "what an earlier object has written");
    openAt(c.level, "  " + file + " ");
    runtime.trace.TraceCall("Function init");
    runtime.trace.TraceEnter("Global::x");
    runtime.trace.TraceParam("name", std::string_view("Müller €"));
    runtime.trace.TraceParam("on", true);
    runtime.trace.TraceParam("count", std::int32_t{-7}, trace_level::columns);
    runtime.trace.TraceLine("gelesen: 3", trace_level::counts);
    runtime.trace.TraceLeave("Global::x", "Đ");
    runtime.trace.TraceLine({longText, "<", longText}, trace_level::calls);
    runtime.trace.TraceLeave("Global::y");
    runtime.TraceClose();
    std::vector<std::string> lines = {"ARGO Kartix",      line60, "REG-DUMP", line60, line60, "Call: Function init",
                                      ">>> Global::x >>>"};
    if (c.parameters) {
      lines.emplace_back("*** Parameter name=M\xFCller \x80");
      lines.emplace_back("*** Parameter on=True");
    }
    if (c.columns) lines.emplace_back("*** Parameter count=-7");
    if (c.counts) lines.emplace_back("gelesen: 3");
    for (const std::string& line :
         {std::string("<<< Global::x <<< Result: ?"), longText + "<" + longText, std::string("<<< Global::y <<< ")}) {
      lines.emplace_back(line);
    }
    lines.insert(lines.end(), {line60, "EOF"});
    // The message that the file is closed is shown when it is closed.
    EXPECT_EQ(test::readBytes(file), expected(lines)) << c.level;
    const std::string level = std::to_string(std::stoi(c.level));
    EXPECT_THAT(machine.messages.take(),
                ElementsAre("ARGO Kartix - Hinweis|Debuglevel: " + level + "\r\nDatei: " + file,
                            "ARGO Kartix - Hinweis|Debug-Datei " + file + " geschlossen."));
  }
}

TEST_F(TraceFile, IsForItsOwnerAlone) {
  openAt("1", file);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(TraceFile, LevelStoredAsANumberIsRead) {
  test::writeBytes(machine.directory / "registry.reg",
                   "REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Tessel\\ARGO KBA ONLINE\\ZFER]\r\n"
                   "\"DebugLevel\"=dword:00000003\r\n\"DebugFile\"=\"" +
                       file + "\"\r\n");
  runtime.TraceOpen();
  EXPECT_TRUE(runtime.trace.TraceOn());
  EXPECT_EQ(runtime.trace.DebugLevel(), 3);
}

TEST_F(TraceFile, ShowsStoredSecretsOnlyScrambled) {
  machine.registry->RegSetValueEx(std::string(productKey) + "FS", "SysPass", CryptLong("geheim12"));
  openAt("99", file);
  runtime.konfiguration.init();
  EXPECT_EQ(runtime.konfiguration.SysPass, "geheim12");
  const std::string text = test::readBytes(file);
  EXPECT_THAT(text, HasSubstr("<<< Global::DecryptLong <<< Result: *****"));
  EXPECT_THAT(text, HasSubstr("<<< Konfiguration::parameter <<< Result: *****"));
  EXPECT_THAT(text, HasSubstr("*** Parameter Schluessel=SysPass"));
  EXPECT_THAT(text, Not(HasSubstr("geheim12")));
}

}  // namespace
}  // namespace kartix
