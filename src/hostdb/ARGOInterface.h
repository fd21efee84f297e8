#pragma once

#include <string>

namespace kartix {

class DBETXTDatabase;
class Runtime;
class Session;

/// Loads the person and the card records of an operation from the host database into the session. Every load opens a
/// connection of its own; every failure has been reported to the clerk when False comes back.
class ARGOInterface {
 public:
  ARGOInterface(Runtime& runtime, Session& session) : runtime_(runtime), session_(session) {}

  /// Traces its call; there is nothing to prepare.
  void init();

  /// Person, card number of the operation's record and all current cards of the person.
  bool Load();
  /// Person and the record of the operation.
  bool LoadForOrder();
  /// The record of the operation alone.
  bool LoadMitteilung();

 private:
  bool LoadPerson(DBETXTDatabase& db);
  bool loadAktKartennr(DBETXTDatabase& db);
  bool LoadFahrerkarte(DBETXTDatabase& db);
  bool LoadOperationCard(DBETXTDatabase& db);

  using Step = bool (ARGOInterface::*)(DBETXTDatabase&);
  bool load(std::string_view traceName, std::initializer_list<Step> steps);
  bool checkPersonNumber();
  bool queryOperationRecord(DBETXTDatabase& db, std::string& row);
  std::string value(const std::string& row, int column);

  Runtime& runtime_;
  Session& session_;
};

}  // namespace kartix
