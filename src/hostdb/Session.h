#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kartix/CFahrerkarte.h"
#include "kartix/CPersonalien.h"

namespace kartix {

class Runtime;

/// The records of the running operation. All `Kartix` objects of a component share them; one operation runs at a
/// time.
class Session {
 public:
  explicit Session(Runtime& runtime);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// New empty records for person `personennummer`.
  void begin(const std::string& personennummer);
  /// Empties the records; nothing can be done with them until the next `begin`.
  void release();
  bool ready() const { return ready_; }
  /// An operation begins for the card record `lfdnr`. Of another record nothing stays.
  void beginOperation(const std::string& lfdnr);

  std::string CurrentLfdnr;  ///< running number of the running operation's card record
  std::string AktKartennr;   ///< card number of that record, or empty
  CPersonalien CurrentPerson;
  std::vector<CFahrerkarte> CardList;  ///< element 0 is an empty record, the loaded cards follow
  std::int16_t CardCount = 0;          ///< highest index of `CardList` in use
  CFahrerkarte ScratchCard;            ///< never filled: what the search for a card without number compares with
  CFahrerkarte ResultCard;             ///< what the result properties return
  CFahrerkarte OperationCard;          ///< the card record of the running operation

 private:
  void reset();

  Runtime& runtime_;
  bool ready_ = false;
};

}  // namespace kartix
