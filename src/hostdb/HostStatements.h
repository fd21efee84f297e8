#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix {

class DBETXTDatabase;
class Runtime;

/// True when `number`, blanks at its ends aside, is all digits. Nothing else may stand unquoted in a statement.
bool isPersonNumber(std::string_view number);

/// Opens `database` with the configured values. A failure has been shown to the clerk.
bool openConfigured(Runtime& runtime, DBETXTDatabase& database);

/// The columns that an update writes.
class Assignments {
 public:
  /// Nothing for an empty value. `column` ends in the "= " or "=" of its assignment.
  void add(std::string_view column, std::string_view value);
  bool empty() const { return all_.empty(); }
  /// "a='1',b='2'", with the quotes in values doubled.
  std::string list() const { return joined(","); }
  /// "a='1' and b='2'": what holds of a row that has been written.
  std::string condition() const { return joined(" and "); }

 private:
  std::string joined(std::string_view separator) const;

  std::vector<std::string> all_;
};

/// True when `result` is that of a write that has taken place. Where it is not known, `stands` looks, on the same
/// connection, whether what was to be written is there; the clerk is told when that shows nothing. `what` names it.
bool wasWritten(Runtime& runtime, std::int16_t result, std::string_view what, const std::function<bool()>& stands);
/// True when there is a row in "table where condition".
bool thereIs(DBETXTDatabase& database, const std::string& from);

/// Adds a row to the host's data exchange log; its outcome is of no consequence. `reference` is the fourth value,
/// `text` the tenth.
void writeExchangeLog(Runtime& runtime, DBETXTDatabase& database, const std::string& personennummer,
                      const std::string& reference, const std::string& text);

}  // namespace kartix
