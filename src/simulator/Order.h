#pragma once

#include <string>

namespace kartix::simulator {

/// An order that the personaliser has accepted.
struct Order {
  std::string externalAdministrationMark;  ///< person number, "/", running number of the card record
  std::string cardNumber;                  ///< given at acceptance
  std::string date;                        ///< "yyyymmdd"
  bool cancelled = false;

  friend bool operator==(const Order&, const Order&) = default;
};

}  // namespace kartix::simulator
