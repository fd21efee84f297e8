#pragma once

#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace kartix {

/// Database form of "no date".
inline constexpr std::string_view noDate = "00000000";

/// Display form "dd.mm.yyyy" to database form "yyyymmdd"; "00000000" for any other shape. Digits are not checked.
std::string displayToDatabase(std::string_view display);

/// `date` when it is eight characters between "00000000" and "99999999", else "00000000".
std::string checkedDatabaseDate(std::string_view date);

/// Formats of a moment, all of fixed width.
namespace moment {
std::string yyyymmdd(const platform::LocalTime& time);
std::string hhnnss(const platform::LocalTime& time);  ///< "hh:nn:ss"
std::string stamp(const platform::LocalTime& time);   ///< "yyyymmddhhnnss000"
}  // namespace moment

}  // namespace kartix
