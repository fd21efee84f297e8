#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "adapters/sqlite/Sqlite.h"
#include "common/Text.h"
#include "runtime/SettingsTable.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string root(productKey);
const std::string imageKey = R"(Software\Tessel\ARGO Anwendungen\Version 9\KXFS\FOTOFS)";

class Settings : public testing::Test {
 protected:
  void store(const std::string& section, const std::string& name, const std::string& value) {
    ASSERT_TRUE(machine.registry->RegSetValueEx(root + section, name, value));
  }

  test::TestMachine machine{adapters::makeSqliteDbe()};
  Konfiguration& k = machine.runtime.konfiguration;
};

/// Notes the settings that are asked for.
struct Asked : platform::Registry {
  std::optional<platform::RegistryValue> RegQueryValueEx(std::string_view key, std::string_view name) override {
    asked.insert(text::upper(std::string(key) + (key.ends_with('\\') ? "" : "\\") + std::string(name)));
    if (name == "SektionKennung") return platform::RegistryValue{platform::RegistryValue::Type::string, section};
    if (name == "DebugLevel") return platform::RegistryValue{platform::RegistryValue::Type::dword, "", 1};
    return std::nullopt;
  }
  bool RegCreateKeyEx(std::string_view) override { return false; }
  bool RegSetValueEx(std::string_view, std::string_view, std::string_view) override { return false; }

  std::string section;
  std::set<std::string> asked;
};

TEST_F(Settings, EverySettingThatIsReadStandsInTheTableAndEveryOneThereIsRead) {
  Asked store;
  test::IdleParts& idle = machine.idle;
  Runtime runtime{{store, *machine.files, idle, *machine.dbe, idle, idle, idle, idle, idle, idle, machine.clock}};
  runtime.reporting.setMessageWindow(&machine.messages);
  for (const char* const section : {"ZEVIS", "ZKR", "KBA"}) {
    store.section = section;
    runtime.konfiguration.readOnce();
    runtime.konfiguration.init();
  }
  runtime.konfiguration.GetImageDir("1");
  runtime.TraceOpen();
  std::set<std::string> known;
  for (const SettingEntry& each : settingsTable()) {
    // The test clerk is asked for where components are put together.
    if (each.name != "TestClerk") known.insert(text::upper(each.key() + std::string(each.name)));
    EXPECT_EQ(misfit(each, each.fallback), "") << each.path();
    EXPECT_EQ(countsAs(each, each.fallback), each.fallback) << each.path();
  }
  // Without an ini file, sections are also looked for as keys of their own.
  std::erase_if(store.asked, [](const std::string& key) { return !key.starts_with("SOFTWARE"); });
  EXPECT_EQ(store.asked, known);
}

TEST_F(Settings, WithoutIniFileTheSectionIsAKeyOfItsOwn) {
  ASSERT_TRUE(machine.registry->RegSetValueEx("ZKR", "KENZA", "stray"));
  bool fromIni = false;
  EXPECT_EQ(k.parameter("ZKR", "KENZA", fromIni, false), "stray");
  EXPECT_TRUE(fromIni);
}

TEST_F(Settings, AutomationIsOnBySwitchOrByDate) {
  struct Case {
    platform::LocalTime day;
    std::string value;
    bool on;
  };
  for (const Case& c : {Case{{2014, 11, 16, 23, 59, 59}, "", false},
                        {{2014, 11, 16}, "1", true},
                        {{2014, 11, 16}, "01", false},
                        {{2014, 11, 17}, "", true},
                        {{2026, 3, 9}, "0", true}}) {
    machine.clock.time = c.day;
    store("ZKR", "ZKRNeu", c.value);
    k.init();
    EXPECT_EQ(k.ZKRNeu, c.on) << c.day.day << c.value;
  }
}

TEST_F(Settings, ImageDirectoryOfAPerson) {
  EXPECT_FALSE(k.GetImageDir("42"));
  EXPECT_EQ(k.ImageDir, "");
  struct Case {
    std::string root, number, directory;
  };
  for (const Case& c : {Case{R"(D:\Bilder)", "1234567", R"(D:\Bilder\00\012\34500\0001234567)"},
                        {R"( \\srv\Bilder\ )", " 42 ", R"(\\srv\Bilder\00\000\00000\0000000042)"},
                        {"/srv/bilder", "249", R"(/srv/bilder\00\000\00000\0000000249)"},
                        {"/srv/bilder", "250", R"(/srv/bilder\00\000\00250\0000000250)"},
                        {"D:", "1234599999", R"(D:\12\345\99750\1234599999)"},
                        {"D:", "98765432101", R"(D:\98\765\32000\98765432101)"}}) {
    ASSERT_TRUE(machine.registry->RegSetValueEx(imageKey, "KODSImageDir", c.root));
    EXPECT_TRUE(k.GetImageDir(c.number));
    EXPECT_EQ(k.ImageDir, c.directory);
  }
}

TEST_F(Settings, RegistryValuesEndAt1024SingleBytes) {
  std::string longest = "D:\\";
  while (longest.size() < 3 + 2 * 1021U) longest += "ü";
  for (const bool fits : {true, false}) {
    ASSERT_TRUE(machine.registry->RegSetValueEx(imageKey, "KODSImageDir", longest));
    EXPECT_EQ(k.GetImageDir("1"), fits);
    EXPECT_EQ(k.ImageDir, fits ? longest + R"(\00\000\00000\0000000001)" : "");
    longest += "x";
  }
  test::writeBytes(machine.directory / "registry.reg",
                   "REGEDIT4\r\n[HKEY_CURRENT_USER\\K]\r\n\"dword\"=dword:ffffffff\r\n\"binary\"=hex:31,32\r\n"
                   "\"expand\"=hex(2):25,58,25,00\r\n\"nul\"=hex(1):31,00,32,00\r\n");
  EXPECT_EQ(k.RegReadString("K", "dword"), "4294967295");
  EXPECT_EQ(k.RegReadString("K", "binary"), "");
  EXPECT_EQ(k.RegReadString("K", "expand"), "%X%");
  EXPECT_EQ(k.RegReadString("K", "nul"), "1");
  EXPECT_EQ(k.RegReadString("K", "missing"), "");
  EXPECT_EQ(k.RegReadString("No", "dword"), "");
}

}  // namespace
}  // namespace kartix
