#include <gtest/gtest.h>

#include "adapters/settings/Settings.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

using test::readBytes;
using test::writeBytes;

const std::string content =
    "stray=0\r\n; remark\r\n [ Zkr ] \r\n;Ort=no\r\nOrt = K\xF6ln \r\nORT=second\r\nQuoted=\" a \"\r\n"
    "Single='b'\r\nHalf=\"c\r\nSum=1=2\r\nword\r\nEmpty=\r\n\r\n[Next]\nUnix=x\n[ZKR]\r\nLate=y";

TEST(IniFiles, ReadsAsTheProfileCallsDo) {
  const test::TempDir directory;
  const std::string file = (directory / "host.ini").string();
  writeBytes(file, content);
  const auto ini = makeIniFiles();
  const auto read = [&](const std::string& section, const std::string& key, std::size_t size = 1024) {
    return ini->GetPrivateProfileString(section, key, "-", size, file);
  };
  for (const std::string wanted :
       {"ZKR.ort=Köln", "zkr.QUOTED= a ", "zkr.single=b", "zkr.half=\"c", "zkr.sum=1=2", "zkr.word=-",
        "zkr.empty=", "next.unix=x", "zkr.late=-", "zkr.stray=-", "no.ort=-", "zkr.;ort=-"}) {
    const auto dot = wanted.find('.');
    const std::string key = wanted.substr(dot + 1, wanted.find('=') - dot - 1);
    EXPECT_EQ(wanted.substr(0, dot) + "." + key + "=" + read(wanted.substr(0, dot), key), wanted);
  }
  EXPECT_EQ(read("ZKR", "ort", 3), "Kö");
  EXPECT_EQ(read("ZKR", "ort", 0), "");
  EXPECT_EQ(ini->GetPrivateProfileString("a", "b", "-", 9, directory.path().string()), "-");
}

TEST(IniFiles, WriteChangesOneLineAndNothingElse) {
  const test::TempDir directory;
  const std::string file = (directory / "host.ini").string();
  const auto ini = makeIniFiles();
  const auto written = [&](const std::string& section, const std::string& key, const std::string& value) {
    writeBytes(file, content);
    EXPECT_TRUE(ini->WritePrivateProfileString(section, key, value, file));
    EXPECT_EQ(ini->GetPrivateProfileString(section, key, "-", 1024, file), value);
    return readBytes(file);
  };
  const auto with = [](const std::string& before, const std::string& after) {
    std::string text = content;
    return text.replace(text.find(before), before.size(), after);
  };
  EXPECT_EQ(written("zkr", "ORT", "Mön"), with("Ort = K\xF6ln ", "Ort = M\xF6n"));
  EXPECT_EQ(written("next", "Unix", " 'y' "), with("Unix=x\n", "Unix=\" 'y' \"\n"));
  EXPECT_EQ(written("zkr", "New", "\"q\""), with("Empty=\r\n", "Empty=\r\nNew=\"\"q\"\"\r\n"));
  EXPECT_EQ(written("Fresh", "a", "\u0081"), content + "\r\n[Fresh]\r\na=\x81\r\n");
  std::filesystem::remove(file);
  EXPECT_TRUE(ini->WritePrivateProfileString("ZKR", "ZEVISPass", "x", file));
  EXPECT_EQ(readBytes(file), "[ZKR]\r\nZEVISPass=x\r\n");
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

TEST(IniFiles, RefusesWhatWouldDamageTheFile) {
  const test::TempDir directory;
  const std::string file = (directory / "host.ini").string();
  const auto ini = makeIniFiles();
  const auto refused = [&](const std::string& bytes, const std::string& section, const std::string& key,
                           const std::string& value) {
    writeBytes(file, bytes);
    return !ini->WritePrivateProfileString(section, key, value, file) && readBytes(file) == bytes;
  };
  EXPECT_TRUE(refused(content, "ZKR", "Ort", "a\nb"));
  EXPECT_TRUE(refused(content, "Z]R", "Ort", "a"));
  EXPECT_TRUE(refused(content, "ZKR", "O=t", "a"));
  EXPECT_TRUE(refused(content, "ZKR", "", "a"));
  EXPECT_TRUE(refused(std::string("[\0Z\0]\0", 6), "ZKR", "Ort", "a"));
  EXPECT_TRUE(refused(std::string(5U << 20U, ';'), "ZKR", "Ort", "a"));
  EXPECT_FALSE(ini->WritePrivateProfileString("ZKR", "Ort", "a", (directory / "no" / "file").string()));
  for (const char* foreign : {R"(C:\kba\argo.ini)", R"(kba\argo.ini)", "c:argo.ini"}) {
    EXPECT_FALSE(ini->WritePrivateProfileString("ZKR", "Ort", "a", foreign));
    EXPECT_FALSE(std::filesystem::exists(foreign));
  }
}

}  // namespace
}  // namespace kartix::adapters
