#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Order.h"
#include "simulator/StateStore.h"

namespace kartix::simulator {

/// A card in the register: the values of `bestandsdaten` by element name, `kgknr` among them. A value that is missing
/// is empty.
using CardRecord = std::map<std::string, std::string, std::less<>>;

/// The elements of `bestandsdaten` in their order.
inline constexpr std::array recordElements = {"kgknr", "daukk", "stmit", "mittx", "stbab", "babtx", "ckenn", "fsnfk",
                                              "natas", "scode", "sdate", "stime", "stext", "dhwkk", "dgubg", "dguab",
                                              "anr",   "drgrd", "vname", "gnamb", "gname", "fnamb", "name",  "dgebu",
                                              "gort",  "stba",  "stras", "hsnr",  "hnz15", "plz08", "wohno"};

/// Value of one element; empty when the record does not have it.
std::string valueOf(const CardRecord& record, std::string_view element);

/// Register status of a card, by number.
namespace card_status {
inline constexpr int ordered = 1;
inline constexpr int sent = 3;
inline constexpr int lost = 10;
inline constexpr int cancelled = 101;
}  // namespace card_status

struct Account {
  std::string password;
  int code = 0;  ///< what a login with the right password is answered with
};

/// All that the gateway remembers.
struct Books {
  std::map<std::string, CardRecord, std::less<>> cards;  ///< by card number
  std::vector<Order> orders;                             ///< in the order of their acceptance
  std::map<std::string, Account, std::less<>> accounts;  ///< by user
  unsigned nextSerial = 1;                               ///< part of the next card number to give out
};

/// The books, kept in memory and, if wanted, in a store as well.
class Ledger {
 public:
  /// Begins with what `store` holds, with the samples when that is nothing or there is no store. Throws `BadFile`
  /// when the store holds something else, or cannot be written.
  explicit Ledger(StateStore* store);

  const Books& books() const { return books_; }

  /// Takes `next` over, into the store first. False, with everything as it was, when that cannot be written.
  bool commit(Books next);

 private:
  StateStore* store_;
  Books books_;
};

}  // namespace kartix::simulator
