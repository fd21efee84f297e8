#include "dialogs/Mitteilung.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "common/Dates.h"
#include "common/Text.h"
#include "dialogs/Operations.h"
#include "dialogs/Workplace.h"
#include "gateway/Notification.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// A hand-in state of the host and the register's code for it.
struct Report {
  std::string_view state;
  const char* code;
};

constexpr std::array<Report, 10> reports = {{
    {"vorübergehend eingezogen", "09"},
    {"entzogen", "06"},
    {"freiwillig zurückgegeben", "08"},
    {"verloren", "10"},
    {"gestohlen", "11"},
    {"beschlagnahmt", "14"},
    {"unbrauchbar", "15"},
    {"Sachfahndung", "16"},
    {"wieder aufgefunden", "03"},
    {"wieder ausgegeben", "03"},
}};

bool handedOut(const CFahrerkarte& card) { return card.kartestatus == "Postversand" || card.ausdatum > noDate; }

}  // namespace

Mitteilung::Mitteilung(Workplace& workplace)
    : OperationFrame(
          workplace,
          {.name = "Mitteilung", .caption = "ARGO Kartix [Mitteilung]", .action = "Senden", .traced = true}) {
  Label1[0].setText("Kartennummer:");
  Label1[2].setText("Mitgeteilt wird:");
  Textbox[0].multiLine = true;
  Textbox[1].setReadOnly(true);
}

bool Mitteilung::startup() {
  ShowProgress(50, "Daten werden geladen", true);
  if (!workplace().argo.LoadMitteilung()) return false;
  ShowProgress(100, "", true);
  const CFahrerkarte& card = workplace().session.OperationCard;
  if (card.kartennr.empty()) {
    workplace().runtime.reporting.ReportError(2010);
    return false;
  }
  Password.fill();
  Label1[1].setText(card.kartennr);
  ShowProgress(0, "Bereit", false);
  if (!takeCode()) return false;
  Textbox[1].setText(card.zkrstatus());
  Textbox[0].setText(FlattenText(card.stext));
  return true;
}

bool Mitteilung::takeCode() {
  Reporting& reporting = workplace().runtime.reporting;
  CFahrerkarte& card = workplace().session.OperationCard;
  const std::string& state = card.argoabgabestatus();
  const auto* const report =
      std::find_if(reports.begin(), reports.end(), [&](const Report& known) { return known.state == state; });
  if (report != reports.end()) {
    card.scode = report->code;
    return true;
  }
  if (!state.empty()) {
    reporting.ReportError(2015, text::trim(state));
  } else {
    reporting.ReportError(handedOut(card) ? 2014 : 2012);
  }
  return false;
}

bool Mitteilung::send() {
  workplace().session.OperationCard.stext = FlattenText(Textbox[0].text());
  StatusNotification notification(exchange());
  return workplace().runtime.konfiguration.ZKRNeu ? notification.SendNotificationAutomation()
                                                  : notification.SendNotificationHttp();
}

std::int16_t runNotification(Workplace& workplace) {
  Mitteilung window(workplace);
  workplace.runtime.showModal(window);
  return window.result;
}

}  // namespace kartix
