#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "command/CommandFixture.h"

namespace kartix::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Command : public CommandTest {
 protected:
  /// A host database with person 4711 and one card record, named by the settings.
  void makeDatabase() {
    ASSERT_EQ(kartix("db create host.db").status, 0);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open((dir / "host.db").c_str(), &db), SQLITE_OK);
    const char* const rows =
        "insert into personalien (personennummer, familienname) values ('4711', 'Meier');"
        "insert into fahrerkarte (personennummer, lfdnr) values ('4711', '1');";
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db, rows, nullptr, nullptr, &error), SQLITE_OK) << error;
    sqlite3_close(db);
    kartix("settings set FS.DBName " + (dir / "host.db").string());
  }
};

TEST_F(Command, WrongUsageEndsWith2AndSaysWhatIsWrong) {
  write("bad.json", R"([{"window": "StartForm", "press": "Button[0]"}])");
  write("objects.json", "[]");
  const std::string run = "run ZKRAnfrage --person 1 --lfdnr 1 --clerk x ";
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"", "subcommand is required"},
      {"frobnicate", "frobnicate"},
      {"run Anfrage --person 1 --lfdnr 1 --clerk x", "Anfrage"},
      {"run ZKRAnfrage --person 1 --clerk x", "--lfdnr"},
      {"run ZKRAnfrage --lfdnr 1 --clerk x", "--person"},
      {run + "--now 2015-02-30T00:00:00", "--now"},
      {run + "--now 2015-02-03", "--now"},
      {run + "--script gone.json", "gone.json"},
      {run + "--script " + std::string(300, 'x'), "xxx: File name too long"},
      {run + "--script bad.json", R"(bad.json: step 1: unknown action "press")"},
      {run + "--objects objects.json", "objects.json: "},
      {run + "--script bad.json --transcript gone/t", R"(unknown action "press")"},
      {run + "--transcript gone/t", "gone/t"},
      {"settings get FS.Gone", "FS.Gone"},
      {"settings get ZEVISPass", "mehreren Abschnitten"},
  };
  for (const auto& [arguments, expected] : cases) {
    const Outcome outcome = kartix(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_THAT(outcome.err, HasSubstr(expected)) << arguments;
  }
  EXPECT_THAT(kartix("--version").out, testing::StartsWith("kartix "));
  const Outcome help = kartix("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("Examples:"), HasSubstr("doctor")));
}

TEST_F(Command, SettingsComeBackAndSecretsStayScrambled) {
  EXPECT_EQ(kartix("settings set fs.serverip 10.0.0.1").status, 0);
  EXPECT_EQ(kartix("settings set ZKR.ZEVISPass", "geheim7ü\n").status, 0);
  EXPECT_EQ(kartix("settings get ServerIP").out, "10.0.0.1\n");
  const std::string scrambled = kartix("settings get ZKR.ZEVISPass").out;
  EXPECT_GE(scrambled.size(), 18U);
  EXPECT_THAT(scrambled, Not(HasSubstr("geheim")));
  EXPECT_THAT(kartix("settings list").out,
              AllOf(HasSubstr("FS.ServerIP = 10.0.0.1\n"), HasSubstr("ZKR.ZEVISPass = *****\n")));
  const fs::path store = dir / "config/kartix/registry.reg";
  EXPECT_EQ(fs::status(store).permissions(), fs::perms::owner_read | fs::perms::owner_write);

  EXPECT_EQ(kartix("settings export backup.reg").status, 0);
  EXPECT_EQ(kartix("settings export backup.reg").status, 1);
  EXPECT_EQ(kartix("settings import backup.reg --registry other.reg").status, 0);
  EXPECT_EQ(kartix("settings get ZKR.ZEVISPass --registry other.reg").out, scrambled);
  EXPECT_EQ(kartix("settings set ZKR.ZEVISPass --scrambled", scrambled).status, 0);
  EXPECT_EQ(kartix("settings get ZKR.ZEVISPass").out, scrambled);
  EXPECT_EQ(kartix("settings set FS.DBPass", "Đorđe").status, 2) << "would not come back";
  EXPECT_EQ(kartix("settings set ZKR.ZEVISPass").status, 2) << "nothing was entered";
  EXPECT_EQ(kartix("settings get ZKR.ZEVISPass").out, scrambled);
  EXPECT_EQ(kartix("settings get FS.DBPass").status, 1) << "not set";

  write("long.reg",
        "REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Tessel\\ARGO KBA ONLINE\\FS]\n\"ServerIP\"=\"x\"\n\"DBName\"=\"" +
            std::string(1025, 'y') + "\"\n");
  EXPECT_EQ(kartix("settings import long.reg").status, 2);
  EXPECT_EQ(kartix("settings get ServerIP").out, "10.0.0.1\n") << "all or nothing";
}

TEST_F(Command, SettingsShowWhatCountsAndRefuseWhatDoesNotFit) {
  EXPECT_THAT(kartix("settings list").err, HasSubstr("liefert nichts: No such file or directory"));
  EXPECT_EQ(kartix("settings get FS.DBName").status, 1);
  write("own.ini", "[ZKR]\r\nKENZA=15003\r\nZPPER=ini\r\nTestClerk=1\r\n");
  kartix("settings set InfoDatei " + (dir / "own.ini").string());
  kartix("settings set ZKR.ZPPER store");
  const Outcome inIni = kartix("settings get ZKR.KENZA");
  EXPECT_EQ(inIni.out + inIni.err, "15003\nZKR.KENZA: Ini-Datei\n");
  EXPECT_THAT(kartix("settings list").out,
              AllOf(HasSubstr("ZKR.KENZA = 15003  (Ini-Datei)\n"), HasSubstr("ZKR.ZPPER = store\n"),
                    HasSubstr("ZKR.TestClerk = 0  (Vorgabe)\n"), HasSubstr("FS.DBName = \n")));
  EXPECT_EQ(kartix("settings unset ZPPER").status, 0);
  EXPECT_EQ(kartix("settings get ZPPER").out, "ini\n");
  for (const char* const wrong : {"ZEVISPort abc", "ZEVISPort 65536", "GATEWAY ja", "SektionKennung zevis",
                                  "Testsystem ja", "AnfrageURI zkr", "SecureProxy proxy", "FS.DBPass geheim"}) {
    const Outcome outcome = kartix("settings set " + std::string(wrong));
    EXPECT_EQ(outcome.status, 2) << wrong;
    EXPECT_THAT(outcome.err, Not(HasSubstr("geheim")));
  }
  fs::create_directory(dir / "config/kartix/.registry.reg.new");
  EXPECT_THAT(kartix("settings set KENZA 1").err, HasSubstr("kann nicht geschrieben werden: File exists"));
  write("config/kartix/registry.reg", "REGEDIT");
  for (const char* const line :
       {"settings list", "settings get KENZA", "settings unset KENZA", "settings set KENZA 1"}) {
    const Outcome outcome = kartix(line);
    EXPECT_EQ(outcome.status, 1) << line;
    EXPECT_THAT(outcome.err, HasSubstr("beschädigt")) << line;
  }
}

TEST_F(Command, AFullStandardOutputIsAFailure) {
  makeDatabase();
  for (const std::string arguments :
       {"--version", "settings --help", "settings list", "settings get FS.DBName", "doctor",
        "run none --person 4711 --clerk Meier", "gateway --listen 127.0.0.1:0"}) {
    const Outcome outcome = kartix(arguments + " >/dev/full");
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_THAT(outcome.err, HasSubstr("standard output cannot be written")) << arguments;
  }
  EXPECT_EQ(kartix("run --person 4711 >/dev/full").status, 2);
}

TEST_F(Command, DatabaseIsMadeOnceAndDoctorFindsIt) {
  EXPECT_EQ(kartix("db create host.db").status, 0);
  const std::string made = readBytes(dir / "host.db");
  EXPECT_EQ(kartix("db create host.db").status, 1);
  EXPECT_EQ(readBytes(dir / "host.db"), made);
  kartix("settings set FS.DBName host.db");
  EXPECT_THAT(kartix("doctor").out,
              HasSubstr("ok       Datenbank: lässt sich öffnen, hat ihre Tabellen und nimmt Änderungen an: host.db"));
}

TEST_F(Command, DoctorTellsWhatIsWrongAndItsAdviceForADamagedStoreWorks) {
  EXPECT_THAT(kartix("doctor").out, HasSubstr("FEHLER   Einstellungen: Es gibt keinen Einstellungsspeicher "));
  kartix("settings set ZKR.KENZA 17");
  kartix("settings export SICHERUNG.reg");
  write("config/kartix/registry.reg", "kein Export");
  Outcome doctor = kartix("doctor --json");
  EXPECT_EQ(doctor.status, 1);
  EXPECT_EQ(doctor.err, "");
  const json found = json::parse(doctor.out);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]["level"], "fault");
  const std::string mend = found[0]["mend"];
  EXPECT_EQ(shell(mend.substr(mend.find("mv "))).status, 0) << mend;
  EXPECT_EQ(kartix("settings get ZKR.KENZA").out, "17\n");

  write("fonts.conf", "<fontconfig/>");
  doctor = shell("FONTCONFIG_FILE=$PWD/fonts.conf kartix doctor");
  EXPECT_THAT(doctor.out, AllOf(HasSubstr("FEHLER   Schriften: "), HasSubstr("\n         -> eine davon installieren"),
                                HasSubstr(" Fehler zu beheben\n"), Not(HasSubstr("ZKR.KENZA"))));
}

TEST_F(Command, AScriptThatDoesNotFitEndsWith3AndSecretsAreMasked) {
  makeDatabase();
  kartix("settings set FS.SysPass", "geheim1");
  kartix("settings set ZKR.ZEVISPass", "geheim2");
  write("script.json", R"([{"window":"StartForm","click":"Button[0]"},{"window":"Auswahl","pick":0}])");
  write("objects.json", R"({"TSW.Schnittstellen.KBA.ZKR.ARGO2006Anfrage": {"DoAnfrage": -1, "GetErrorMsg": "weg"}})");
  const Outcome outcome = kartix(
      "run ZKRAnfrage --person 4711 --lfdnr 1 --clerk Meier --script script.json --transcript t --objects "
      "objects.json");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err,
              HasSubstr(R"(step 2: expected to pick row 0 in window "Auswahl"; found window "MessageBox")"));
  EXPECT_THAT(outcome.out, testing::StartsWith(R"({"init":true,"operation":"ZKRAnfrage","result":-1,"properties":{)"
                                               R"("antragsdatum":"00.00.0000","familienname":"",)"));
  const std::string transcript = readBytes(dir / "t");
  EXPECT_THAT(transcript, AllOf(HasSubstr(R"("member":"SetDbePass","args":["*****"])"),
                                HasSubstr(R"("ZEVISPass":{"text":"*****")"), Not(HasSubstr("geheim"))));
}

TEST_F(Command, OrdersShowsTheBookAndSettlesWhatIsUnclear) {
  const std::string unclear = "aaaaaaaaaaaaaaaa";
  EXPECT_EQ(kartix("orders").status, 1) << "no book is kept";
  kartix("settings set ZKR.Bestellbuch " + (dir / "book.txt").string());
  write("book.txt", "begin\t" + unclear +
                        "\t2014-03-05T10:15:00\tBestellung\thttp\t4711\t1\t4711/1\tMeier\n"
                        "end\t" +
                        unclear +
                        "\t2014-03-05T10:15:09\tunclear\tCOM/-26\n"
                        "begin\tbbbbbbbbbbbbbbbb\t2014-03-05T10:16:00\tStorno\thttp\t4711\t2\t4711/2\tMeier\n"
                        "end\tbbbbbbbbbbbbbbbb\t2014-03-05T10:16:02\taccepted\t\n");
  EXPECT_EQ(kartix("orders --open").out,
            unclear + "  2014-03-05T10:15:00  Bestellung 4711/1 (Meier): unklar, COM/-26\n");
  EXPECT_THAT(kartix("orders").out, HasSubstr("Storno 4711/2 (Meier): angenommen\n"));
  EXPECT_THAT(kartix("doctor").out, HasSubstr("Offen oder unklar: 1 von 2 Sendungen"));
  const json all = json::parse(kartix("orders --json").out);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0]["outcome"], "unclear");
  EXPECT_EQ(all[0]["endTime"], "2014-03-05T10:15:09");
  EXPECT_EQ(kartix("orders --settle bbbbbbbbbbbbbbbb").status, 2);
  EXPECT_EQ(kartix("orders --settle " + unclear).status, 0);
  EXPECT_EQ(kartix("orders --open").out, "");
  EXPECT_THAT(kartix("orders").out, HasSubstr("Bestellung 4711/1 (Meier): geklärt, unclear"));
}

}  // namespace
}  // namespace kartix::test
