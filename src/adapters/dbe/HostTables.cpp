#include "adapters/dbe/HostTables.h"

#include <array>
#include <cstdio>
#include <stdexcept>

#include "platform/DbeLibrary.h"

namespace kartix::adapters::dbe {
namespace {

std::string columnName(const HostTable& table, int position) {
  if (const auto found = table.names.find(position); found != table.names.end()) return found->second;
  std::array<char, sizeof "spalte0000000000"> name{};
  std::snprintf(name.data(), name.size(), "spalte%03d", position);
  return name.data();
}

std::string createStatement(const HostTable& table) {
  std::string statement = "create table " + table.name + " (";
  for (int i = 1; i <= table.columns; ++i) {
    const std::string name = columnName(table, i);
    statement +=
        name + (name == "personennummer" ? " numeric(18) not null default 0, " : " text not null default '', ");
  }
  statement.resize(statement.size() - 2);
  return statement + ")";
}

/// An open database; what was not committed goes when it does.
class OpenDatabase {
 public:
  OpenDatabase(platform::DbeLibrary& dbe, const ServerDatabase& database)
      : dbe_(dbe), database_(database), client_(dbe.DBE_Initialize()) {
    connection_ =
        dbe.DBE_Connect(client_, 0, database.server, database.port, database.systemUser, database.systemPassword);
    const bool open = connection_ >= 0 && dbe.DBE_OpenDataBase(client_, connection_, database.name, database.user,
                                                               database.password, 0) == 0;
    if (open) return;
    const std::string reason = dbe.failureReason();
    close();
    fail("lässt sich nicht öffnen: " + reason);
  }
  ~OpenDatabase() { close(); }
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;

  bool has(const std::string& table) {
    std::string cursor;
    std::string count;
    std::string buffer = "select * from " + table + " where 1 = 0";
    return dbe_.DBE_Query(client_, connection_, cursor, count, buffer) >= 0;
  }
  void execute(const std::string& statement) {
    if (dbe_.DBE_Execute(client_, connection_, statement) != 0) fail(dbe_.failureReason());
  }
  [[noreturn]] void fail(const std::string& reason) const {
    throw std::runtime_error(database_.name + " auf " + database_.server + ": " + reason);
  }

 private:
  void close() {
    if (connection_ >= 0) dbe_.DBE_Disconnect(client_, connection_);
    dbe_.DBE_CLEANUP(client_);
  }

  platform::DbeLibrary& dbe_;
  const ServerDatabase& database_;
  std::int16_t client_;
  std::int16_t connection_ = -1;
};

}  // namespace

std::vector<HostTable> hostTables() {
  constexpr int firstDate = 6;
  constexpr int firstText = 16;
  HostTable bearbeitung{"bearbeitung", 41, {{1, "personennummer"}}};
  for (int i = 1; i <= 10; ++i)
    bearbeitung.names[firstDate + i - 1] = "datum" + std::string(i < 10 ? "0" : "") + std::to_string(i);
  for (int i = 1; i <= 15; ++i) bearbeitung.names[firstText + i - 1] = "sonst" + std::to_string(i);
  return {
      {"personalien",
       177,
       {{1, "personennummer"},
        {2, "geburtsname"},
        {3, "familienname"},
        {4, "vorname"},
        {5, "weiterevornamen"},
        {6, "geburtsdatum"},
        {7, "geburtsort"},
        {8, "plz"},
        {9, "wohnort"},
        {10, "strasse"},
        {38, "anrede"},
        {40, "titel"},
        {86, "zusatzg"},
        {87, "zusatzf"},
        {127, "vhkgebdat"},
        {129, "fernr"},
        {167, "vornamekomplett"},
        {177, "fsnr"}}},
      {"fahrerkarte", 37, {{1, "lfdnr"},         {2, "personennummer"}, {3, "vorgangschl"},   {5, "kartennr"},
                           {6, "kartennralt"},   {9, "antragsdatum"},   {10, "bestelldatum"}, {13, "kfsstaat"},
                           {14, "kfsnr"},        {15, "gueltigab"},     {16, "gueltigbis"},   {17, "karteam"},
                           {18, "kartestatus"},  {20, "ausdatum"},      {22, "abgabestatus"}, {26, "stext"},
                           {27, "familienname"}, {29, "sprache"},       {32, "changedate"},   {36, "fsverwaltung"},
                           {37, "vornamen"}}},
      bearbeitung,
      {"datenaustausch", 16, {}},
  };
}

std::vector<std::string> hostTableStatements() {
  std::vector<std::string> statements;
  for (const HostTable& table : hostTables()) {
    statements.push_back(createStatement(table));
    // No index is unique: that a number occurs once is for the host to see to, and reported when it does not hold.
    if (table.names.empty()) continue;
    statements.push_back("create index " + table.name + "_person on " + table.name + " (personennummer)");
  }
  return statements;
}

void createHostTables(platform::DbeLibrary& dbe, const ServerDatabase& database) {
  OpenDatabase open(dbe, database);
  for (const HostTable& table : hostTables()) {
    if (open.has(table.name)) open.fail("Es gibt die Tabelle " + table.name + " schon; angelegt wurde nichts");
  }
  for (const std::string& statement : hostTableStatements()) open.execute(statement);
  open.execute("commit");
}

}  // namespace kartix::adapters::dbe
