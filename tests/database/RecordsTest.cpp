#include <array>

#include "adapters/sqlite/Sqlite.h"
#include "common/Text.h"
#include "database/HostFixture.h"
#include "hostdb/Own.h"

namespace kartix::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// Numbers that never reach a statement.
const std::vector<std::string> noNumbers = {
    "", " ", "-1", "1.5", "4711 or 1=1", "4711;delete from personalien", "x", "4711'", "４７１１"};

class Records : public HostDatabase {
 protected:
  Records() {
    insertRow("personalien", 177, {{1, "4711"}, {3, "Alt"}, {4, "Eva"}, {9, "Bonn"}, {177, "FS1"}});
    insertRow("personalien", 177, {{1, "4712"}, {3, "Andere"}});
  }
  /// The one row of the host's log, its columns by position.
  std::vector<std::string> logRow() {
    EXPECT_EQ(count("datenaustausch"), 1);
    // A value is stored with at least one blank, which reading trims.
    for (int i = 1; i <= 16; ++i) {
      const std::string column = "spalte0" + std::string(i < 10 ? "0" : "") + std::to_string(i);
      EXPECT_EQ(count("datenaustausch where " + column + " = ''"), 0) << column;
    }
    return select("select * from datenaustausch", 16).at(0);
  }
};

INSTANTIATE_TEST_SUITE_P(Engines, Records, engines(), engineName);

TEST_P(Records, PersonUpdateWritesItsFilledFields) {
  auto person = Own::of<CPersonalien>(runtime);
  person.familienname = "D'Angelo";
  person.geburtsname = "Đorđević";
  person.vornamen = "Anna Maria Luise";
  person.geburtsdatum = "19711224";
  person.geburtsort = "Köln";
  person.titel = "Dr.";
  person.zusatzf = "von";
  person.zusatzg = "de";
  person.setAnrede("2");
  person.strasse = "Weg 1";
  person.plz = "12345";
  person.fsnr = person.fernr = person.vhkgebdat = "never";
  EXPECT_TRUE(person.update("4711"));
  EXPECT_THAT(
      select(
          "select familienname,geburtsname,vorname,weiterevornamen,vornamekomplett,geburtsdatum,geburtsort,titel,"
          "zusatzf,zusatzg,anrede,strasse,plz,wohnort,fsnr,fernr,vhkgebdat from personalien where personennummer = "
          "4711",
          17),
      ElementsAre(ElementsAre("D'Angelo", "Đorđević", "Anna", "Maria Luise", "Anna Maria Luise", "19711224", "Köln",
                              "Dr.", "von", "de", "Frau", "Weg 1", "12345", "Bonn", "FS1", "", "")));
  EXPECT_EQ(count("personalien where familienname = 'Andere'"), 1);
  EXPECT_THAT(logRow(),
              ElementsAre("", "ZKRI", "4711", "", "20260309", "07:05:04", "", "", "",
                          "Aktualisierung Personalien aus ZKR nach ARGO", "00000000", "0", "20260309070504000",
                          "Ümit Größer-Sachbear", "20260309070504000:DATENAUSTAUSCH", ""));
}

TEST_P(Records, FirstNamesAreSplitAtTheFirstBlank) {
  for (const auto& c : std::vector<std::array<std::string, 4>>{{"Anna", "Anna", " ", "Anna"},
                                                               {"Anna   Maria ", "Anna", "Maria", "Anna Maria"},
                                                               {"Anna ", "Anna", " ", "Anna  "},
                                                               {" Anna", " ", "Anna", "  Anna"}}) {
    auto person = Own::of<CPersonalien>(runtime);
    person.vornamen = c[0];
    ASSERT_TRUE(person.update(" 4711 "));
    EXPECT_EQ(count("personalien where vorname = '" + c[1] + "' and weiterevornamen = '" + c[2] +
                    "' and vornamekomplett = '" + c[3] + "'"),
              1)
        << c[0];
  }
}

TEST(Record, SalutationThatIsNoneIsNotKept) {
  TestMachine machine(adapters::makeSqliteDbe());
  auto person = Own::of<CPersonalien>(machine.runtime);
  EXPECT_EQ(person.personennummer, "0");
  for (const std::string written : {"x", "", "frau"}) {
    person.setAnrede("Herr");
    person.setAnrede(written);
    EXPECT_EQ(person.argoanrede() + person.kbaanrede(), "0") << written;
  }
}

TEST_P(Records, NothingIsWrittenWithoutFieldsOrNumber) {
  auto empty = Own::of<CPersonalien>(runtime);
  empty.fsnr = "FS2";
  EXPECT_FALSE(empty.update("4711"));
  auto onlyNumber = Own::of<CFahrerkarte>(runtime);
  onlyNumber.lfdnr = "1";
  EXPECT_FALSE(onlyNumber.update("", "4711"));
  auto person = Own::of<CPersonalien>(runtime);
  person.familienname = "Neu";
  auto card = Own::of<CFahrerkarte>(runtime);
  card.kartennr = "DF1";
  for (const std::string& number : noNumbers) {
    EXPECT_FALSE(person.update(number)) << number;
    EXPECT_FALSE(card.insert(number)) << number;
    EXPECT_FALSE(card.update("", number)) << number;
  }
  EXPECT_EQ(count("personalien where familienname = 'Neu'"), 0);
  EXPECT_EQ(count("bearbeitung"), 0);
  EXPECT_EQ(count("datenaustausch"), 0);
}

TEST_P(Records, CardInsertFillsTheProcessingRecord) {
  auto card = Own::of<CFahrerkarte>(runtime);
  card.kartennr = "DF00000012345678";
  card.gueltigbis = "20270314";
  card.gueltigab = "2022031";
  card.stbab = "00421";
  card.babtx = "Kreis Ü";
  for (int i = 0; i < 60; ++i) card.babtx += "ä";
  card.scode = "12";
  card.sdate = "20220315";
  card.stmit = "009";
  card.mittx = "Kraftfahrt-Bundesamt, Außenstelle für Kontrollgerätkarten Flensburg-Mürwik";
  card.kfsnr = "B0'72";
  ASSERT_TRUE(card.insert("4711"));
  std::vector<std::string> expected(41);
  const auto set = [&](std::size_t position, const std::string& value) { expected.at(position - 1) = value; };
  set(1, "4711");
  set(3, "20260309");
  set(4, "00000000");
  set(7, "2022031");
  set(8, "20270314");
  for (std::size_t i = 9; i <= 15; ++i) set(i, "00000000");
  set(16, "DF00000012345678");
  set(17, text::left("Aussteller: 00421 - " + card.babtx, 66));
  set(18, "Letzte Meldung: 12 - Umtausch einer deutschen Fahrerkarte in einem");
  set(19, text::left("am 15.03.2022 von 009 - " + card.mittx, 66));
  set(31, "00000");
  for (std::size_t i = 32; i <= 34; ++i) set(i, "0");
  set(36, "101");
  set(37, "00000000");
  set(38, "20260309070504000");
  set(39, "Ümit Größer-Sachbearbeiter");
  set(40, "120000000:FAHRERKARTE20270314");
  EXPECT_THAT(select("select * from BEARBEITUNG", 41), ElementsAre(ElementsAreArray(expected)));
  EXPECT_EQ(count("bearbeitung where spalte002 = ' ' and datum01 = ' ' and sonst5 = ' ' and spalte041 = ' '"), 1);
  EXPECT_THAT(logRow(),
              ElementsAre("", "ZKRI", "4711", "B0'72", "20260309", "07:05:04", "", "", "",
                          "Übernahme kompletter ZKR-Datensatz Nr. DF00000012345678", "00000000", "0",
                          "20260309070504000", "Ümit Größer-Sachbear", "20260309070504000:DATENAUSTAUSCH", ""));
}

TEST_P(Records, EmptyCardIsInsertedWithBlanks) {
  ASSERT_TRUE(Own::of<CFahrerkarte>(runtime).insert("4711"));
  EXPECT_EQ(
      count("bearbeitung where datum02 = ' ' and datum03 = ' ' and sonst1 = ' ' and sonst2 = 'Aussteller:  - '"), 1);
  EXPECT_EQ(count("bearbeitung where sonst4 = 'am 00.00.0000 von  - '"), 1);
  EXPECT_EQ(count("bearbeitung where spalte040 = '120000000:FAHRERKARTE00000000'"), 1);
}

TEST_P(Records, CardUpdateFindsItsRecordByTheOldNumber) {
  for (const std::string number : {"ALT'1", "FEST"}) {
    insertRow("bearbeitung", 41, {{1, "4711"}, {6, "19990101"}, {9, "19990102"}, {16, number}});
  }
  insertRow("bearbeitung", 41, {{1, "4712"}, {16, "ALT'1"}});
  auto card = Own::of<CFahrerkarte>(runtime);
  card.kartennr = "NEU'2";
  card.gueltigab = "20220314";
  card.gueltigbis = "20270314";
  card.ausdatum = "20220320";
  ASSERT_TRUE(card.update("ALT'1", "4711"));
  EXPECT_THAT(select("select sonst1,datum01,datum02,datum03,datum04,datum05 from bearbeitung where personennummer = "
                     "4711 order by sonst1",
                     6),
              ElementsAre(ElementsAre("FEST", "19990101", "", "", "19990102", ""),
                          ElementsAre("NEU'2", "19990101", "20220314", "20270314", "19990102", "20220320")));
  EXPECT_EQ(count("bearbeitung where sonst1 = 'ALT''1' and personennummer = 4712"), 1);
  const auto log = logRow();
  EXPECT_EQ(log[3], "");
  EXPECT_EQ(log[9], "Aktualisierung Fahrerkarte Nr. ALT'1 aus ZKR");
}

TEST_P(Records, AFailedWriteLeavesNoLogRowAndAFailedLogDoesNotMatter) {
  auto card = Own::of<CFahrerkarte>(runtime);
  card.kartennr = "DF1";
  auto person = Own::of<CPersonalien>(runtime);
  person.titel = "Dr.";
  execute("alter table datenaustausch rename to weg");
  EXPECT_TRUE(card.insert("4711"));
  EXPECT_TRUE(card.update("DF1", "4711"));
  EXPECT_TRUE(person.update("4711"));
  EXPECT_EQ(count("bearbeitung"), 1);
  execute("alter table weg rename to datenaustausch");
  execute("alter table bearbeitung rename to b");
  execute("alter table personalien rename to p");
  EXPECT_FALSE(card.insert("4711"));
  EXPECT_FALSE(card.update("DF1", "4711"));
  EXPECT_FALSE(person.update("4711"));
  EXPECT_EQ(count("datenaustausch"), 0);
  runtime.konfiguration.DBName = "missing";
  EXPECT_FALSE(card.insert("4711"));
  EXPECT_FALSE(person.update("4711"));
  EXPECT_EQ(machine.messages.take().size(), 2U);
}

TEST(Record, ThrowsNothingAtItsHost) {
  struct BrokenWindow : MessageWindow {
    std::int16_t showMessage(const Message&) override { throw std::runtime_error("no window"); }
    void showSystemMessage(std::string_view, std::string_view) override { throw 1; }
  } broken;
  TestMachine machine(adapters::makeSqliteDbe());
  machine.runtime.reporting.setMessageWindow(&broken);
  EXPECT_FALSE(Own::of<DBETXTDatabase>(machine.runtime).init("", "", "", "", "missing", "", ""));
  auto person = Own::of<CPersonalien>(machine.runtime);
  person.titel = "Dr.";
  EXPECT_FALSE(person.update("4711"));
  EXPECT_FALSE(Own::of<CFahrerkarte>(machine.runtime).insert("4711"));
}

}  // namespace
}  // namespace kartix::test
