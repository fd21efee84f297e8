#pragma once

#include <cstdint>
#include <string>

#include "kartix/Export.h"

namespace kartix {

class Component;

/// The one class that a host application creates and calls: driver card operations for one person.
///
/// ```cpp
/// kartix::Kartix kartix;
/// if (kartix.init("Meier", "4711") && kartix.ZKRAnfrage("1") == 1) show(kartix.kartennr(), kartix.gueltigbis());
/// ```
///
/// Each operation opens a modal window on the calling thread, which is the host's user-interface thread, and returns
/// when the clerk is done. Its outcome stays readable through the result properties until the next operation. All
/// objects of a process share one session; one operation runs at a time. Nothing is thrown; failures have been shown
/// to the clerk when a call returns. Texts are UTF-8.
class KARTIX_EXPORT Kartix {
 public:
  /// An object of the component that this process shares. Opens the trace file when the settings ask for one.
  Kartix();
  /// An object of a component of its own, which outlives it.
  explicit Kartix(Component& component);
  /// Releases the records and closes the trace file.
  ~Kartix();
  Kartix(const Kartix&) = delete;
  Kartix& operator=(const Kartix&) = delete;

  /// Reads the settings and begins a session of clerk `changeuser` with person `personennummer` (decimal). False when
  /// the number is not greater than 0 or something that every operation needs is missing.
  bool init(const std::string& changeuser, const std::string& personennummer);

  /// Orders a driver card for the card record with running number `lfdnr`. 1 when it has been ordered, else -1.
  std::int32_t FahrerKartenBestellung(const std::string& lfdnr);
  /// Reports the change of a card's status to the register. 1 when it was accepted, else -1.
  std::int32_t KartenMitteilung(const std::string& lfdnr);
  /// Cancels an order. 1 when that was accepted, else -1.
  std::int32_t KartenStorno(const std::string& lfdnr);
  /// Inquires in the register. 1 when the clerk took over a record, else -1.
  std::int32_t ZKRAnfrage(const std::string& lfdnr);

  // Outcome of the last operation. Dates are in display form "dd.mm.yyyy", "00.00.0000" for none.
  std::string antragsdatum() const;
  std::string familienname() const;
  std::string vorname() const;  ///< all first names
  std::string ausdatum() const;
  std::string ausgestelltvon() const;  ///< issuing office (text)
  std::string bestelldatum() const;
  std::string bestellstatus() const;
  std::string bestellstatusam() const;
  std::string zkrdatum() const;
  std::string zkrstatus() const;  ///< `scode` + " - " + `scodetxt`
  std::string chipkennung() const;
  std::string gueltigab() const;
  std::string gueltigbis() const;
  std::string fsnr() const;
  std::string fslkz() const;  ///< state that issued the driving licence
  std::string mittx() const;  ///< notifying office (text)
  std::string kartennr() const;
  std::string kartennralt() const;
  std::string produktionam() const;
  std::string scode() const;
  std::string scodetxt() const;
  std::string sdate() const;
  std::string stbab() const;    ///< issuing office (code)
  std::string hinweis() const;  ///< register remark
  std::string stime() const;
  std::string stmit() const;  ///< notifying office (code)
  std::string vorgangschl() const;
  std::string abgabedatum() const;
  std::string abgabestatus() const;

 private:
  bool start(const std::string& changeuser, const std::string& personennummer);
  bool CheckHttpLibrary();

  Component& component_;
  bool Initialised_ = false;
};

}  // namespace kartix
