#pragma once

#include <string>
#include <string_view>

#include "kartix/Export.h"

namespace kartix {

class Runtime;
struct Own;

/// One driver card record: the host's data of a card and what the register says of it. All fields are UTF-8 text;
/// dates are in database form "yyyymmdd".
///
/// Needs no `Kartix`: without one, the first write reads the settings, silently, and the rows name no clerk. Writing
/// belongs to the component's thread, as the calls of `Kartix` do; on another one it gives False.
class KARTIX_EXPORT CFahrerkarte {
 public:
  /// A record of the component that this process shares.
  CFahrerkarte();

  std::string lfdnr;     ///< running number within the person
  std::string kartennr;  ///< card number
  std::string antragsdatum;
  std::string gueltigab;
  std::string gueltigbis;
  std::string bestelldatum;
  std::string bestellstatus;
  std::string bestellstatusam;
  std::string ausdatum;     ///< date of issue
  std::string kartennralt;  ///< number of the previous card
  std::string chipkennung;
  std::string zkrdatum;  ///< date of the register data
  std::string karteam;
  std::string kartestatus;
  std::string kfsnr;         ///< driving licence number on the card
  std::string kfsstaat;      ///< country code of the state that issued the driving licence
  std::string fsverwaltung;  ///< driving licence authority
  std::string proddatum;     ///< production date
  std::string sprache;
  std::string abgabedatum;  ///< hand-in date
  std::string stmit;        ///< notifying office of the last register message (code)
  std::string scode;        ///< register status code
  std::string stime;
  std::string sdate;
  std::string stext;  ///< register remark
  std::string mittx;  ///< notifying office (text)
  std::string stbab;  ///< issuing office (code)
  std::string babtx;  ///< issuing office (text)
  std::string changedate;
  std::string vorgangschl;  ///< process key of the host, for example "ST" for a cancellation
  std::string familienname;
  std::string vornamen;

  /// Takes any hand-in state but "1" to "5", which are ignored.
  void setAbgabestatus(std::string_view value);
  const std::string& argoabgabestatus() const { return abgabestatus_; }
  const std::string& kbaabgabestatus() const { return abgabestatus_; }

  /// German text of `scode`.
  std::string scodetxt() const;
  /// `scode` + " - " + `scodetxt`.
  std::string zkrstatus() const;

  /// Adds the record to the host's processing records of person `spersonennummer`, with a row in the host's log.
  /// False when the number is not all digits or the database refuses.
  bool insert(const std::string& spersonennummer);

  /// Writes card number and dates, those that are not empty, to the processing record of person `spersonennummer`
  /// that holds card number `skartennr`, with a row in the host's log. False when there is nothing to write, the
  /// number is not all digits, or the database refuses.
  bool update(const std::string& skartennr, const std::string& spersonennummer);

 private:
  friend struct Own;
  explicit CFahrerkarte(Runtime& runtime);

  std::string CardKeyText() const;
  bool writeNew(const std::string& spersonennummer) const;
  bool writeChanges(const std::string& skartennr, const std::string& spersonennummer) const;

  Runtime* runtime_;
  std::string abgabestatus_;
};

}  // namespace kartix
