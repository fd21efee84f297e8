#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kartix::platform {
class Clock;
class DbeLibrary;
class UserInterface;
}  // namespace kartix::platform

namespace kartix::forms {
class Form;
}

namespace kartix {

class Trace;

/// The small routines that move values between database, windows and messages. Those with a trace name write
/// their entry, parameters and exit.
class Global {
 public:
  Global(Trace& trace, platform::DbeLibrary& dbe, platform::UserInterface& userInterface, platform::Clock& clock);

  /// Converts a date. To the database: "dd.mm.yyyy" gives "yyyymmdd", anything else "00000000". To the display:
  /// "yyyymmdd" gives "dd.mm.yyyy"; what is not of that form counts as "00000000", shown as "00.00.0000".
  std::string datum(std::string_view DBDatum, bool toDB);

  /// Field `iIndex` (from 1) of a row, at most 256 characters, trimmed.
  std::string GetSqlValue(std::string_view record, std::int16_t iIndex);

  /// The part before the first NUL, trimmed of blanks.
  std::string NullTrim(std::string_view text);

  std::string TodayDB() const;  ///< "yyyymmdd"

  /// Never throws: a pointer that cannot change keeps nothing from its way.
  void WaitCursor(bool onoff) noexcept;
  void CenterForm(forms::Form& form);

  /// Scrambling of stored passwords, traced without their values.
  std::string CryptLong(std::string_view plain);
  std::string DecryptLong(std::string_view stored);

 private:
  Trace& trace_;
  platform::DbeLibrary& dbe_;
  platform::UserInterface& userInterface_;
  platform::Clock& clock_;
};

/// A single blank for an empty text, so that no column is written empty.
std::string BlankIfEmpty(std::string_view value);

/// `text` with "{{", CRLF, CR and LF as one blank each, without blanks at both ends.
std::string FlattenText(std::string_view text);

}  // namespace kartix
