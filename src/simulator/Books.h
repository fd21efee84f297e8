#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Order.h"

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

/// The books, kept in memory or in a file as well.
class Ledger {
 public:
  /// `file` is the JSON file to keep the books in; it is made when there is none. Empty: in memory only, beginning
  /// with the samples. Throws `BadFile`.
  explicit Ledger(std::filesystem::path file);

  const Books& books() const { return books_; }

  /// Takes `next` over, into the file first, which is readable by its owner only. False, with everything as it was,
  /// when the file cannot be written.
  bool commit(Books next);

 private:
  std::filesystem::path file_;
  Books books_;
};

}  // namespace kartix::simulator
