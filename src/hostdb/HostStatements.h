#pragma once

#include <string>
#include <string_view>

namespace kartix {

class DBETXTDatabase;
class Runtime;

/// True when `number`, blanks at its ends aside, is all digits. Nothing else may stand unquoted in a statement.
bool isPersonNumber(std::string_view number);

/// Opens `database` with the configured values. A failure has been shown to the clerk.
bool openConfigured(Runtime& runtime, DBETXTDatabase& database);

/// "column'value'," with the quotes in `value` doubled, or nothing for an empty value. `column` ends in the opening
/// "= " or "=" of its assignment.
std::string assignment(std::string_view column, std::string_view value);

/// Adds a row to the host's data exchange log; its outcome is of no consequence. `reference` is the fourth value,
/// `text` the tenth.
void writeExchangeLog(Runtime& runtime, DBETXTDatabase& database, const std::string& personennummer,
                      const std::string& reference, const std::string& text);

}  // namespace kartix
