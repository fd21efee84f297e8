#include <gtest/gtest.h>
#include <sys/stat.h>

#include "adapters/settings/RegEncoding.h"
#include "adapters/settings/Settings.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

using platform::RegistryValue;
using test::readBytes;
using test::writeBytes;

const std::string key = R"(Software\Tessel\ARGO KBA ONLINE\ZKR)";

/// A store with one of everything, and with lines that mean nothing.
std::string store(const std::string& header) {
  const bool single = header == "REGEDIT4";
  return header +
         "\r\n\r\n; remark\r\n[HKEY_CURRENT_USER\\Software\\Tessel\\ARGO KBA ONLINE\\ZKR]\r\n"
         "\"Ort\"=\"Köln \\\"Süd\\\" C:\\\\x\" ; remark\r\n"
         "@=\"none\"\r\n"
         "\"Level\"=dword:0000000A\r\n"
         "\"Bytes\"=hex:01,02\r\n"
         "\"Path\"=hex(2):" +
         std::string(single ? "25,\\\r\n  58,00\r\n" : "25,00,\\\r\n  58,00,00,00\r\n") +
         "\"Two\"=\"first\r\nsecond\"\r\n"
         "\"Forgotten\"=\"no end\r\nnonsense\r\n"
         "\"Gone\"=\"x\"\r\n\"Gone\"=-\r\n\r\n"
         "[-HKEY_CURRENT_USER\\Software\\Other]\r\n\"Ort\"=\"y\"\r\n"
         "[HKEY_LOCAL_MACHINE\\Software]\r\n\"Last\"=\"z\"";
}

struct EncodingCase {
  std::string name;
  std::string header;
  RegEncoding encoding;
};

void PrintTo(const EncodingCase& value, std::ostream* stream) { *stream << value.name; }

class Encodings : public testing::TestWithParam<EncodingCase> {};

TEST_P(Encodings, EveryKindOfValueIsReadAndAWriteChangesItsLineOnly) {
  const test::TempDir directory;
  const auto file = directory / "store.reg";
  const std::string before = store(GetParam().header);
  writeBytes(file, encodeRegFile(before, GetParam().encoding));
  const auto registry = makeRegFile(file);
  const auto text = [&](const std::string& name) {
    const auto value = registry->RegQueryValueEx(R"(SOFTWARE\tessel\ARGO KBA Online\ZKR\)", name);
    return value ? value->text : "(missing)";
  };
  EXPECT_EQ(text("ORT"), "Köln \"Süd\" C:\\x");
  EXPECT_EQ(text(""), "none");
  EXPECT_EQ(text("Two"), "first\r\nsecond");
  EXPECT_EQ(text("Path"), "%X");
  EXPECT_EQ(text("Gone"), "(missing)");
  EXPECT_EQ(text("Forgotten"), "(missing)");
  EXPECT_EQ(registry->RegQueryValueEx(key, "Path")->type, RegistryValue::Type::expandString);
  EXPECT_EQ(registry->RegQueryValueEx(key, "Level")->number, 10U);
  EXPECT_EQ(registry->RegQueryValueEx(key, "Bytes")->type, RegistryValue::Type::other);
  EXPECT_FALSE(registry->RegQueryValueEx("Software\\Other", "Ort"));

  ASSERT_TRUE(registry->RegSetValueEx(key, "ort", "Ä\"\\"));
  std::string expected = before;
  const std::string line = R"("Ort"="Köln \"Süd\" C:\\x" ; remark)";
  expected.replace(expected.find(line), line.size(), R"("ort"="Ä\"\\")");
  EXPECT_EQ(readBytes(file), encodeRegFile(expected, GetParam().encoding));

  // Control characters do not fit between quotes, and a password may hold them.
  const std::string password = "a\nb\x01 \u0081ÿ\"";
  ASSERT_TRUE(registry->RegSetValueEx(key, "Pass", password));
  ASSERT_TRUE(registry->RegSetValueEx("New\\Key", "Name", "1"));
  EXPECT_EQ(text("Pass"), password);
  EXPECT_EQ(text("ort"), "Ä\"\\");
  EXPECT_EQ(registry->RegQueryValueEx("new\\key", "name")->text, "1");
}

INSTANTIATE_TEST_SUITE_P(
    RegFile, Encodings,
    testing::Values(EncodingCase{"Utf16", "Windows Registry Editor Version 5.00", RegEncoding::utf16},
                    EncodingCase{"Utf8Mark", "Windows Registry Editor Version 5.00", RegEncoding::utf8Mark},
                    EncodingCase{"Utf8", "Windows Registry Editor Version 5.00", RegEncoding::utf8},
                    EncodingCase{"Ansi", "REGEDIT4", RegEncoding::ansi}),
    [](const auto& tested) { return tested.param.name; });

TEST(RegFile, BrokenFileGivesNothingAndIsLeftAlone) {
  const std::string whole = encodeRegFile(store("Windows Registry Editor Version 5.00"), RegEncoding::utf16);
  const std::string halfCharacter = encodeRegFile("Windows Registry Editor Version 5.00\r\n", RegEncoding::utf16);
  for (const std::string& bytes :
       {whole.substr(0, whole.size() - 1), std::string("no store\r\n"), halfCharacter + "\x01\xD8",
        std::string("Windows Registry Editor Version 5.00\r\n\xE4"),
        std::string("REGEDIT4\r\n") + std::string(5U << 20U, ';')}) {
    const test::TempDir directory;
    writeBytes(directory / "store.reg", bytes);
    const auto registry = makeRegFile(directory / "store.reg");
    EXPECT_FALSE(registry->RegQueryValueEx(key, "Ort"));
    EXPECT_FALSE(registry->RegCreateKeyEx(key));
    EXPECT_FALSE(registry->RegSetValueEx(key, "Ort", "x"));
    EXPECT_TRUE(readBytes(directory / "store.reg") == bytes);
  }
}

TEST(RegFile, AForgottenQuoteBeforeAMillionLinesTakesNoTime) {
  const test::TempDir directory;
  writeBytes(directory / "store.reg",
             "REGEDIT4\n[HKEY_CURRENT_USER\\K]\n\"Ort\"=\"x" + std::string(1U << 20U, '\n') + "\"Good\"=\"y\"\n");
  const auto registry = makeRegFile(directory / "store.reg");
  EXPECT_FALSE(registry->RegQueryValueEx("K", "Ort"));
  EXPECT_EQ(registry->RegQueryValueEx("K", "Good")->text, "y");
}

TEST(RegFile, NewFileIsPrivateAndALinkIsFollowed) {
  const test::TempDir directory;
  const auto file = directory / "deep" / "er" / "store.reg";
  std::filesystem::create_symlink(file, directory / "link");
  ASSERT_TRUE(makeRegFile(file)->RegSetValueEx(key, "Ort", "1"));
  ASSERT_TRUE(makeRegFile(directory / "link")->RegSetValueEx(key, "Ort", "2"));
  EXPECT_TRUE(std::filesystem::is_symlink(directory / "link"));
  EXPECT_EQ(makeRegFile(file)->RegQueryValueEx(key, "Ort")->text, "2");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  ASSERT_TRUE(makeRegFile(file)->RegSetValueEx(key, "Ort", "3"));
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(RegFile, ChangeByAnotherProgramIsSeenAndNamesThatBreakTheFileAreRefused) {
  const test::TempDir directory;
  const auto file = directory / "store.reg";
  const auto one = makeRegFile(file);
  const auto other = makeRegFile(file);
  for (const std::string value : {"1", "2", "3"}) {
    ASSERT_TRUE(other->RegSetValueEx(key, "Ort", value));
    EXPECT_EQ(one->RegQueryValueEx(key, "Ort")->text, value);
  }
  EXPECT_FALSE(one->RegCreateKeyEx("a]\r\n[b"));
  EXPECT_FALSE(one->RegSetValueEx(key, "a\n\"b", "x"));
  EXPECT_FALSE(one->RegSetValueEx(key, "a", "\xE4"));
}

}  // namespace
}  // namespace kartix::adapters
