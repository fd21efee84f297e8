#include "hostdb/Session.h"

#include "hostdb/Own.h"
#include "runtime/Runtime.h"

namespace kartix {

Session::Session(Runtime& runtime)
    : CurrentPerson(Own::of<CPersonalien>(runtime)),
      ScratchCard(Own::of<CFahrerkarte>(runtime)),
      ResultCard(ScratchCard),
      OperationCard(ScratchCard),
      runtime_(runtime) {
  runtime.reporting.setOperationFacts([this] { return OperationFacts{CurrentPerson.personennummer, CurrentLfdnr}; });
}

void Session::reset() {
  CurrentPerson = Own::of<CPersonalien>(runtime_);
  ScratchCard = ResultCard = OperationCard = Own::of<CFahrerkarte>(runtime_);
  CardList.assign(1, Own::of<CFahrerkarte>(runtime_));
  CardCount = 0;
}

void Session::begin(const std::string& personennummer) {
  reset();
  CurrentPerson.personennummer = personennummer;
  ready_ = true;
}

void Session::beginOperation(const std::string& lfdnr) {
  // Not every field of a record that is loaded replaces what the one before had there.
  if (OperationCard.lfdnr != lfdnr) OperationCard = Own::of<CFahrerkarte>(runtime_);
  CurrentLfdnr = lfdnr;
}

void Session::release() {
  reset();
  ready_ = false;
}

}  // namespace kartix
