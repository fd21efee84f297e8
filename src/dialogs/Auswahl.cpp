#include "dialogs/Auswahl.h"

#include <algorithm>

#include "common/Text.h"
#include "dialogs/Workplace.h"
#include "hostdb/Fahrerkarten.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::size_t lineFields = 7;

forms::ListView::Row cells(std::string_view line) {
  forms::ListView::Row fields;
  while (fields.size() < lineFields) {
    const std::size_t end = std::min(line.find('|'), line.size());
    fields.emplace_back(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  const std::string place = std::move(fields.back());
  fields.pop_back();
  fields.back() = text::trim(fields.back() + " " + place);
  return fields;
}

}  // namespace

Auswahl::Auswahl(Workplace& workplace) : Form("Auswahl", "ARGO Kartix [Auswahl]"), workplace_(workplace) {
  Liste.setColumns({"Kartennummer", "gültig bis", "FSNR", "Name", "Vorname", "Wohnort"});
  Liste.onDoubleClick = [this] { choose(); };
  Liste.onEnter = [this] { choose(); };
}

void Auswahl::FillList(const std::vector<std::string>& rows) {
  std::vector<forms::ListView::Row> table;
  table.reserve(rows.size());
  for (const std::string& row : rows) table.push_back(cells(row));
  Liste.setRows(std::move(table));
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
