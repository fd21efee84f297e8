#pragma once

#include <cstdint>
#include <string>

#include "kartix/Export.h"

namespace kartix {

class Component;
struct Own;
class ResultReader;
struct ResultProperty;

/// The one class that a host application creates and calls: driver card operations for one person.
///
/// ```cpp
/// kartix::Kartix kartix;
/// if (kartix.init("Meier", "4711") && kartix.ZKRAnfrage("1") == 1) show(kartix.kartennr(), kartix.gueltigbis());
/// ```
///
/// Each operation opens a modal window on the calling thread, which is the host's user-interface thread, and returns
/// when the clerk is done. Its outcome stays readable through the result properties until the next operation. Nothing
/// is thrown; failures have been shown to the clerk when a call returns. Texts are UTF-8.
///
/// All objects of a process share one session. While a call runs that shows windows (creation, `init`, an operation,
/// destruction), the host's own timers and events go on. The result properties may be read then; they show what has
/// come in so far. Every other `init` and operation, of whatever object, is refused with False or -1, and an object
/// whose `init` is refused can do nothing until its next. An object created then leaves the trace as it is. Another
/// object that is destroyed then leaves session and trace to the running call, for good; the object of the running
/// call may be destroyed too, and is then released when the call returns.
///
/// All calls belong to the thread that makes the first one. On another thread each is refused with its failure value;
/// a destruction there leaves the session as it is. Refusals are traced; one for the thread is told on standard error
/// too, the first time.
///
/// The host's application object, if it has one, is a QApplication of that thread. Objects may live in static
/// storage: what is destroyed after `main` shows no windows.
class KARTIX_EXPORT Kartix {
 public:
  /// An object of the component that this process shares. Opens the trace file when the settings ask for one.
  Kartix();
  /// Releases the records and closes the trace file, unless a call is running.
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
  friend struct Own;
  explicit Kartix(Component& component);

  friend class ResultReader;

  std::string read(const ResultProperty& property) const;

  Component& component_;
  bool Initialised_ = false;
};

}  // namespace kartix
