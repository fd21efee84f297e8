#include "host/Operation.h"

#include "kartix/Kartix.h"

namespace kartix::host {

std::int32_t callOperation(Kartix& kartix, const std::string& operation, const std::string& lfdnr) {
  if (operation == "ZKRAnfrage") return kartix.ZKRAnfrage(lfdnr);
  if (operation == "FahrerKartenBestellung") return kartix.FahrerKartenBestellung(lfdnr);
  if (operation == "KartenMitteilung") return kartix.KartenMitteilung(lfdnr);
  if (operation == "KartenStorno") return kartix.KartenStorno(lfdnr);
  return -1;
}

}  // namespace kartix::host
