#pragma once

#include <span>
#include <string_view>

namespace kartix {

/// A value of a register record: its element in `bestandsdaten` and the member by which an inquiry object tells it.
struct RecordValue {
  std::string_view element;
  std::string_view getter;
  bool ofHit = false;  ///< the getter takes the number of the hit, from 1
};

/// The values that an inquiry object can tell, in the order in which they are asked for.
std::span<const RecordValue> recordValues();

}  // namespace kartix
