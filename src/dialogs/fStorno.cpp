#include "dialogs/fStorno.h"

#include "dialogs/Operations.h"
#include "dialogs/Workplace.h"
#include "gateway/Cancellation.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {

fStorno::fStorno(Workplace& workplace)
    : OperationFrame(workplace, {.name = "fStorno",
                                 .caption = "ARGO Kartix [Stornierung einer Bestellung]",
                                 .action = "Stornieren",
                                 .traced = true}) {
  Label1[0].setText("Kartennummer:");
}

bool fStorno::startup() {
  Reporting& reporting = workplace().runtime.reporting;
  ShowProgress(50, "Daten werden geladen", true);
  if (!workplace().argo.LoadMitteilung()) return false;
  ShowProgress(100, "", true);
  const CFahrerkarte& card = workplace().session.OperationCard;
  if (card.kartennr.empty()) {
    reporting.ReportError(2009);
    return false;
  }
  if (card.vorgangschl != "ST") {
    reporting.ReportError(2013);
    return false;
  }
  Password.fill();
  Label1[1].setText(card.kartennr);
  ShowProgress(0, "Bereit", false);
  return true;
}

void fStorno::ready() {
  // Nobody is asked again before a cancellation goes out: it takes more than Enter.
  Button[1].setFocus();
}

bool fStorno::send() {
  OrderCancellation cancellation(exchange());
  return workplace().runtime.konfiguration.ZKRNeu ? cancellation.SendCancellationAutomation()
                                                  : cancellation.SendCancellationHttp();
}

std::int16_t runCancellation(Workplace& workplace) {
  fStorno window(workplace);
  workplace.runtime.showModal(window);
  return window.result;
}

}  // namespace kartix
