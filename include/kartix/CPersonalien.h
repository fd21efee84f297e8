#pragma once

#include <string>
#include <string_view>

#include "kartix/Export.h"

namespace kartix {

class Runtime;
struct Own;

/// Personal data of one person of the host database. All fields are UTF-8 text; dates are in database form
/// "yyyymmdd".
///
/// Needs no `Kartix`: without one, the first write reads the settings, silently, and the log rows name no clerk.
/// Writing belongs to the component's thread, as the calls of `Kartix` do; on another one it gives False.
///
/// ```cpp
/// kartix::CPersonalien person;
/// person.familienname = "Meier";
/// person.vornamen = "Anna Maria";
/// bool written = person.update("4711");
/// ```
class KARTIX_EXPORT CPersonalien {
 public:
  /// A record of the component that this process shares.
  CPersonalien();

  std::string personennummer = "0";  ///< key of the person in the host database
  std::string familienname;
  std::string geburtsname;
  std::string vornamen;  ///< all first names, separated by blanks
  std::string geburtsdatum;
  std::string geburtsort;
  std::string titel;
  std::string zusatzf;  ///< name parts before the family name
  std::string zusatzg;  ///< name parts before the birth name
  std::string fernr;    ///< carried, never written
  std::string fsnr;     ///< driving licence number; never written
  std::string strasse;
  std::string plz;
  std::string wohnort;
  std::string vhkgebdat;  ///< carried, never written

  /// Takes "Herr" or "1", "Frau" or "2"; anything else empties the salutation.
  void setAnrede(std::string_view value);
  const std::string& anrede() const { return anrede_; }      ///< "Herr", "Frau" or empty
  const std::string& argoanrede() const { return anrede_; }  ///< the host's word: "Herr", "Frau" or empty
  std::string kbaanrede() const;                             ///< the register's code: "1", "2" or "0"

  /// Writes the fields that are not empty to the record of person `spersonennummer` and adds a row to the host's
  /// log. False when there is nothing to write, the number is not all digits, or the database refuses.
  bool update(const std::string& spersonennummer);

 private:
  friend struct Own;
  explicit CPersonalien(Runtime& runtime);

  bool writeChanges(const std::string& spersonennummer) const;

  Runtime* runtime_;
  std::string anrede_;
};

}  // namespace kartix
