#include "adapters/qt/Designs.h"

#include <algorithm>
#include <array>

#include "ui_Auswahl.h"
#include "ui_BestellFehler.h"
#include "ui_Bestellung.h"
#include "ui_MessageBox.h"
#include "ui_Mitteilung.h"
#include "ui_StartForm.h"
#include "ui_SystemMessageBox.h"
#include "ui_ZEVISPassChange.h"
#include "ui_ZKR.h"
#include "ui_fStorno.h"

namespace kartix::adapters::qt {
namespace {

struct Design {
  std::string_view form;
  void (*fill)(QDialog&);
};

template <class Ui>
void fill(QDialog& dialog) {
  Ui ui;
  ui.setupUi(&dialog);
}

constexpr std::array designs{
    Design{"Auswahl", fill<Ui::Auswahl>},
    Design{"BestellFehler", fill<Ui::BestellFehler>},
    Design{"Bestellung", fill<Ui::Bestellung>},
    Design{"MessageBox", fill<Ui::MessageBox>},
    Design{"Mitteilung", fill<Ui::Mitteilung>},
    Design{"StartForm", fill<Ui::StartForm>},
    Design{"SystemMessageBox", fill<Ui::SystemMessageBox>},
    Design{"ZEVISPassChange", fill<Ui::ZEVISPassChange>},
    Design{"ZKR", fill<Ui::ZKR>},
    Design{"fStorno", fill<Ui::fStorno>},
};

}  // namespace

bool fillFromDesign(std::string_view name, QDialog& dialog) {
  const auto* const design =
      std::find_if(designs.begin(), designs.end(), [&](const Design& d) { return d.form == name; });
  if (design == designs.end()) return false;
  design->fill(dialog);
  return true;
}

}  // namespace kartix::adapters::qt
