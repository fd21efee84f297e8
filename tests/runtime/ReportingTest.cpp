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

TEST_F(Messages, WhatStandsInAMessageIsNoPlaceForMore) {
  runtime.reporting.setOperationFacts([] { return OperationFacts{"4711", "%1"}; });
  for (const auto& [number, text] : std::vector<std::pair<std::int32_t, std::string>>{
           {203, "Fehlermeldung des KBA: %2: b"},
           {1005, "Datenbank-Konsistenzfehler: Zur Person wurden mehrere Karten mit Lfd.Nr. %1 gefunden."},
           {2019, ""},
           {-5, ""}}) {
    runtime.reporting.ReportError(number, "%2", "b");
    EXPECT_EQ(machine.messages.last.text, "(" + std::to_string(number) + ")\r\n" + text);
  }
}

TEST_F(Messages, CriticalWarningIsAnError) {
  runtime.reporting.ErrorMsg("m", "ARGO Kartix - Warnung", false);
  runtime.reporting.ErrorMsg("m", "ARGO Kartix - Warnung", true);
  EXPECT_THAT(machine.messages.take(), ElementsAre("ARGO Kartix - Warnung|m", "ARGO Kartix - Fehler|m"));
  EXPECT_EQ(runtime.reporting.YesNoMsg("?", "ARGO Kartix - Frage"), 1);
  EXPECT_EQ(machine.messages.last.caption1 + "/" + machine.messages.last.caption2, "Ja/Nein");
}

}  // namespace
}  // namespace kartix
