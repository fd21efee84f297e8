#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "kartix/CFahrerkarte.h"

namespace kartix {

class Kartix;

/// A result property of `Kartix`: the field of the result record that it hands out.
struct ResultProperty {
  std::string_view name;
  std::string (*field)(const CFahrerkarte& card);
  bool date = false;  ///< in database form in the record, handed out in display form
};

template <auto member>
std::string fieldOf(const CFahrerkarte& card) {
  return std::invoke(member, card);
}

/// In the order of their slots.
inline constexpr std::array resultRows = {
    ResultProperty{"antragsdatum", fieldOf<&CFahrerkarte::antragsdatum>, true},
    ResultProperty{"familienname", fieldOf<&CFahrerkarte::familienname>},
    ResultProperty{"vorname", fieldOf<&CFahrerkarte::vornamen>},
    ResultProperty{"ausdatum", fieldOf<&CFahrerkarte::ausdatum>, true},
    ResultProperty{"ausgestelltvon", fieldOf<&CFahrerkarte::babtx>},
    ResultProperty{"bestelldatum", fieldOf<&CFahrerkarte::bestelldatum>, true},
    ResultProperty{"bestellstatus", fieldOf<&CFahrerkarte::bestellstatus>},
    ResultProperty{"bestellstatusam", fieldOf<&CFahrerkarte::bestellstatusam>, true},
    ResultProperty{"zkrdatum", fieldOf<&CFahrerkarte::zkrdatum>, true},
    ResultProperty{"zkrstatus", fieldOf<&CFahrerkarte::zkrstatus>},
    ResultProperty{"chipkennung", fieldOf<&CFahrerkarte::chipkennung>},
    ResultProperty{"gueltigab", fieldOf<&CFahrerkarte::gueltigab>, true},
    ResultProperty{"gueltigbis", fieldOf<&CFahrerkarte::gueltigbis>, true},
    ResultProperty{"fsnr", fieldOf<&CFahrerkarte::kfsnr>},
    ResultProperty{"fslkz", fieldOf<&CFahrerkarte::kfsstaat>},
    ResultProperty{"mittx", fieldOf<&CFahrerkarte::mittx>},
    ResultProperty{"kartennr", fieldOf<&CFahrerkarte::kartennr>},
    ResultProperty{"kartennralt", fieldOf<&CFahrerkarte::kartennralt>},
    ResultProperty{"produktionam", fieldOf<&CFahrerkarte::proddatum>, true},
    ResultProperty{"scode", fieldOf<&CFahrerkarte::scode>},
    ResultProperty{"scodetxt", fieldOf<&CFahrerkarte::scodetxt>},
    ResultProperty{"sdate", fieldOf<&CFahrerkarte::sdate>, true},
    ResultProperty{"stbab", fieldOf<&CFahrerkarte::stbab>},
    ResultProperty{"hinweis", fieldOf<&CFahrerkarte::stext>},
    ResultProperty{"stime", fieldOf<&CFahrerkarte::stime>},
    ResultProperty{"stmit", fieldOf<&CFahrerkarte::stmit>},
    ResultProperty{"vorgangschl", fieldOf<&CFahrerkarte::vorgangschl>},
    ResultProperty{"abgabedatum", fieldOf<&CFahrerkarte::abgabedatum>, true},
    ResultProperty{"abgabestatus", fieldOf<&CFahrerkarte::argoabgabestatus>},
};

/// Reads a result property by its row.
class ResultReader {
 public:
  static std::string read(const Kartix& kartix, const ResultProperty& property);
};

/// The row of a property, found while compiling: a name without a row does not build.
consteval const ResultProperty& resultRow(std::string_view name) {
  return *std::find_if(resultRows.begin(), resultRows.end(),
                       [&](const ResultProperty& row) { return row.name == name; });
}

}  // namespace kartix
