#include "host/demo/Acts.h"

namespace kartix::host {
namespace {

using simulator::Scenario;

/// A day on which the exchanges still went over the component's own transport.
constexpr platform::LocalTime ownTransport{2014, 11, 14, 9, 30, 0};

const char* const takeOver = R"([{"window": "StartForm", "click": "Button[0]"},
  {"window": "ZKR", "click": "Button[0]"}])";

const char* const order = R"([{"window": "Bestellung", "select": {"Combo[0]": "norm. Bestellung"}},
  {"window": "Bestellung", "click": "Button[0]"},
  {"window": "MessageBox", "click": "Button[0]"},
  {"window": "MessageBox", "click": "Button[1]"}])";

/// The host application writes what an order gave it to its own record.
void recordOrder(const DemoInstallation& installation, const LastCard& card, const std::string& lfdnr) {
  installation.execute("update fahrerkarte set kartennr = '" + card.kartennr +
                       "' where personennummer = 4713 and lfdnr = '" + lfdnr + "'");
}

std::vector<Act> bothRoads() {
  return {
      {.title = "Inquiry on today's road, over the host's automation objects: a list of hits",
       .operation = "ZKRAnfrage",
       .person = "4711",
       .lfdnr = "1",
       .script = R"([{"window": "StartForm", "click": "Button[0]"},
         {"window": "Auswahl", "pick": 1},
         {"window": "MessageBox", "click": "Button[1]"},
         {"window": "Auswahl", "pick": 0},
         {"window": "ZKR", "click": "Button[0]"}])"},
      {.title = "Inquiry over the component's own transport, with the clock before 17 November 2014",
       .operation = "ZKRAnfrage",
       .person = "4716",
       .lfdnr = "1",
       .script = R"([{"window": "StartForm", "choose": "XPOption[1]"},
         {"window": "StartForm", "type": {"Text[8]": "n0a9sk11842"}},
         {"window": "StartForm", "click": "Button[0]"},
         {"window": "ZKR", "click": "Button[0]"}])",
       .now = ownTransport},
  };
}

std::vector<Act> lifeOfOnePerson() {
  return {
      {.title = "A first card: the register does not know the applicant",
       .operation = "ZKRAnfrage",
       .person = "4713",
       .lfdnr = "1",
       .script = R"([{"window": "StartForm", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[1]"},
         {"window": "StartForm", "click": "Button[2]"}])",
       .result = -1},
      {.title = "The card is ordered",
       .operation = "FahrerKartenBestellung",
       .person = "4713",
       .lfdnr = "1",
       .script = order,
       .scode = "01"},
      {.title = "Now the register knows the order",
       .operation = "ZKRAnfrage",
       .person = "4713",
       .lfdnr = "1",
       .script = takeOver,
       .scode = "01",
       .before = [](const DemoInstallation& i, const LastCard& card) { recordOrder(i, card, "1"); }},
      {.title = "The card is lost, and the loss reported",
       .operation = "KartenMitteilung",
       .person = "4713",
       .lfdnr = "1",
       .script = R"([{"window": "Mitteilung", "type": {"Textbox[0]": "Auf dem Rastplatz verloren"}},
         {"window": "Mitteilung", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[1]"}])",
       .scode = "10",
       .before =
           [](const DemoInstallation& i, const LastCard&) {
             i.execute(
                 "update fahrerkarte set abgabestatus = 'verloren', changedate = '20261120154500000', "
                 "stext = 'Verlust angezeigt' where personennummer = 4713 and lfdnr = '1'");
           }},
      {.title = "The register has the loss",
       .operation = "ZKRAnfrage",
       .person = "4713",
       .lfdnr = "1",
       .script = takeOver,
       .scode = "10"},
      {.title = "A replacement is ordered over the own transport",
       .operation = "FahrerKartenBestellung",
       .person = "4713",
       .lfdnr = "2",
       .script = order,
       .scode = "01",
       .now = ownTransport,
       .before =
           [](const DemoInstallation& i, const LastCard& card) {
             i.execute(
                 "insert into fahrerkarte (personennummer, lfdnr, vorgangschl, kartennralt, antragsdatum, "
                 "familienname, vornamen, kfsnr, kfsstaat, fsverwaltung, sprache) select personennummer, '2', "
                 "'EV', '" +
                 card.kartennr +
                 "', antragsdatum, familienname, vornamen, kfsnr, kfsstaat, fsverwaltung, sprache "
                 "from fahrerkarte where personennummer = 4713 and lfdnr = '1'");
           }},
      {.title = "The card has turned up: the order is cancelled",
       .operation = "KartenStorno",
       .person = "4713",
       .lfdnr = "2",
       .script = R"([{"window": "fStorno", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[1]"}])",
       .scode = "101",
       .before =
           [](const DemoInstallation& i, const LastCard& card) {
             recordOrder(i, card, "2");
             i.execute("update fahrerkarte set vorgangschl = 'ST' where personennummer = 4713 and lfdnr = '2'");
           }},
      {.title = "The register has the cancellation",
       .operation = "ZKRAnfrage",
       .person = "4713",
       .lfdnr = "2",
       .script = takeOver,
       .scode = "101"},
  };
}

std::vector<Act> whatCanGoWrong() {
  return {
      {.title = "The personaliser refuses an order, with a list of errors",
       .operation = "FahrerKartenBestellung",
       .person = "4715",
       .lfdnr = "2",
       .script = R"([{"window": "Bestellung", "select": {"Combo[0]": "Reklamation"}},
         {"window": "Bestellung", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[0]"},
         {"window": "BestellFehler", "click": "Button"},
         {"window": "MessageBox", "click": "Button[1]"},
         {"window": "Bestellung", "click": "Button[1]"}])",
       .result = -1,
       .now = ownTransport,
       .scenario = Scenario::refusedWithList},
      {.title = "The clerk changes the gateway password",
       .operation = "ZKRAnfrage",
       .person = "4716",
       .lfdnr = "1",
       .script = R"([{"window": "StartForm", "click": "ZEVISPass"},
         {"window": "ZEVISPassChange", "type": {"Text[1]": "geheim02", "Text[2]": "geheim02"}},
         {"window": "ZEVISPassChange", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[1]"},
         {"window": "StartForm", "click": "Button[2]"}])",
       .result = -1,
       .now = ownTransport},
      {.title = "The host database cannot be opened",
       .operation = "ZKRAnfrage",
       .person = "4716",
       .lfdnr = "1",
       .script = R"([{"window": "SystemMessageBox", "click": "Button[0]"},
         {"window": "MessageBox", "click": "Button[1]"}])",
       .result = -1,
       .before = [](const DemoInstallation& i, const LastCard&) { i.loseDatabase(); }},
  };
}

}  // namespace

std::vector<Act> demoActs() {
  std::vector<Act> acts;
  for (const auto& part : {bothRoads(), lifeOfOnePerson(), whatCanGoWrong()}) {
    acts.insert(acts.end(), part.begin(), part.end());
  }
  return acts;
}

}  // namespace kartix::host
