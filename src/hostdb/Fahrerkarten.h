#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kartix {

class CFahrerkarte;
class Runtime;
class Session;

/// The session's card list.
class Fahrerkarten {
 public:
  Fahrerkarten(Runtime& runtime, Session& session) : runtime_(runtime), session_(session) {}

  /// Makes room for as many more cards at once.
  void expect(std::size_t count);

  /// Appends a card record.
  void addARGO(const std::string& antragsdatum, const std::string& ausdatum, const std::string& bestelldatum,
               const std::string& gueltigab, const std::string& gueltigbis, const std::string& kartennr,
               const std::string& kartennralt);

  /// Index of the first loaded card record without a card number; 0 when there is none.
  std::int16_t FindCardIndex() const;
  /// That record, or the empty one at index 0.
  CFahrerkarte& FindCard() const;
  std::int16_t GetCardCount() const;

  /// True when `kartennr` is not the number of the operation's own record but that of another record of the person.
  bool belongsToOtherRecord(std::string_view kartennr) const;

 private:
  Runtime& runtime_;
  Session& session_;
};

}  // namespace kartix
