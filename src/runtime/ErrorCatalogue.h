#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kartix {

/// What an entry may show of the running operation.
struct OperationFacts {
  std::string personennummer;  ///< of the session's person
  std::string CurrentLfdnr;    ///< running number of the operation's card record
};

/// Message of one numbered error.
struct CatalogueEntry {
  std::string text;  ///< empty for a number that the catalogue does not know
  bool critical = false;
};

/// The catalogue: the numbered errors that the component reports to the clerk. Numbers never change their meaning.
CatalogueEntry catalogueEntry(std::int32_t number, std::string_view detail1, std::string_view detail2,
                              const OperationFacts& facts);

}  // namespace kartix
