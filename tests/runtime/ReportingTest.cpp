#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/sqlite/Sqlite.h"
#include "support/TestMachine.h"

namespace kartix {
namespace {

using testing::ElementsAre;

class Messages : public testing::Test {
 protected:
  test::TestMachine machine{adapters::makeSqliteDbe()};
  Runtime& runtime = machine.runtime;
};

TEST_F(Messages, ErrorsOfTheCatalogue) {
  runtime.reporting.setOperationFacts([] { return OperationFacts{"4711", "%1"}; });
  struct Case {
    std::int32_t number;
    std::string detail1, detail2, text;
    int icon;
  };
  constexpr int warning = 1;
  constexpr int error = 2;
  for (const Case& c : {
           Case{101, "204010", "205002",
                "TESSELHTTP.dll hat die falsche Version\r\n(vorhanden: 2.4.10, benötigt: 2.5.2)", error},
           {104, "", "", "XML-Schnittstelle kann nicht initialisiert werden.", error},
           {203, "%2", "b", "Fehlermeldung des KBA: %2: b", warning},
           {1002, "x", "y", "Datenbank-Konsistenzfehler: Mehr als eine Person zur Personennummer 4711 gefunden.",
            error},
           {1005, "x", "y", "Datenbank-Konsistenzfehler: Zur Person wurden mehrere Karten mit Lfd.Nr. %1 gefunden.",
            error},
           {2013, "", "", "Eine Stornierung ist nur mit dem Vorgangschlüssel \"ST - Stornierung\" möglich.", warning},
           {2017, "a\r\nb", "", "Fehler bei der Bestellung: \r\na\r\nb", warning},
           {2019, "x", "y", "", warning},
           {-5, "x", "y", "", warning},
       }) {
    runtime.reporting.ReportError(c.number, c.detail1, c.detail2);
    EXPECT_EQ(machine.messages.last.text, "(" + std::to_string(c.number) + ")\r\n" + c.text);
    EXPECT_EQ(machine.messages.last.caption, "ARGO Kartix: Fehler");
    EXPECT_EQ(machine.messages.last.icon, c.icon) << c.number;
  }
}

TEST_F(Messages, CriticalWarningIsAnError) {
  runtime.reporting.ErrorMsg("m", "ARGO Kartix - Warnung", false);
  runtime.reporting.ErrorMsg("m", "ARGO Kartix - Warnung", true);
  EXPECT_THAT(machine.messages.take(), ElementsAre("ARGO Kartix - Warnung|m", "ARGO Kartix - Fehler|m"));
  EXPECT_EQ(runtime.reporting.YesNoMsg("?", "ARGO Kartix - Frage"), 1);
  EXPECT_EQ(machine.messages.last.caption1 + "/" + machine.messages.last.caption2, "Ja/Nein");
}

TEST_F(Messages, ValuesAreTakenFromRowsAndDates) {
  Global& global = runtime.global;
  EXPECT_EQ(global.datum("20141231", false), "31.12.2014");
  for (const char* none : {"", "2014123", "00000000"}) EXPECT_EQ(global.datum(none, false), "00.00.0000") << none;
  EXPECT_EQ(global.datum("31.12.2014", true), "20141231");
  EXPECT_EQ(global.NullTrim(std::string("  abc\0xyz", 9)), "abc");
  EXPECT_EQ(global.NullTrim(std::string("\0abc", 4)), "");
  EXPECT_EQ(FlattenText("\r\na{{b\r\n\r\nc\rd\n "), "a b  c d");
  EXPECT_EQ(BlankIfEmpty(""), " ");
  EXPECT_EQ(BlankIfEmpty("x"), "x");
}

}  // namespace
}  // namespace kartix
