#include "dialogs/Auswahl.h"

#include <utility>
#include <vector>

#include "common/Text.h"
#include "dialogs/Workplace.h"
#include "hostdb/Fahrerkarten.h"
#include "runtime/Runtime.h"

namespace kartix {
Auswahl::Auswahl(Workplace& workplace) : Form("Auswahl", "ARGO Kartix [Auswahl]"), workplace_(workplace) {
  Liste.setColumns({"Kartennummer", "gültig bis", "FSNR", "Name", "Vorname", "Wohnort"});
  Liste.onDoubleClick = [this] { choose(); };
  Liste.onEnter = [this] { choose(); };
}

void Auswahl::FillList(const Hits& hits) {
  std::vector<forms::ListView::Row> rows;
  rows.reserve(hits.size());
  for (const Hit& hit : hits) {
    rows.push_back(
        {hit.card, hit.expiry, hit.licence, hit.name, hit.firstNames, text::trim(hit.postcode + " " + hit.place)});
  }
  Liste.setRows(std::move(rows));
}

void Auswahl::onLoad() { workplace_.runtime.global.CenterForm(*this); }

void Auswahl::onCloseBox() {
  result = -1;
  hide();
}

void Auswahl::choose() {
  const auto row = Liste.currentRow();
  if (!row) return;
  const std::string& card = Liste.rows().at(*row).front();
  if (Fahrerkarten(workplace_.runtime, workplace_.session).belongsToOtherRecord(card)) {
    workplace_.runtime.reporting.ReportError(2016);
    return;
  }
  SelectedCard = card;
  result = 0;
  hide();
}

}  // namespace kartix
