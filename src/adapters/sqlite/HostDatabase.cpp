#include "adapters/sqlite/HostDatabase.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "adapters/sqlite/FreshFile.h"

namespace kartix::adapters {
namespace {

struct Table {
  std::string name;
  int columns;
  std::map<int, std::string> names;  ///< by position, counted from 1
};

std::vector<Table> hostTables() {
  constexpr int firstDate = 6;
  constexpr int firstText = 16;
  Table bearbeitung{"bearbeitung", 41, {{1, "personennummer"}}};
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

std::string columnName(const Table& table, int position) {
  if (const auto found = table.names.find(position); found != table.names.end()) return found->second;
  std::array<char, sizeof "spalte0000000000"> name{};
  std::snprintf(name.data(), name.size(), "spalte%03d", position);
  return name.data();
}

std::string createStatement(const Table& table) {
  std::string statement = "create table " + table.name + " (";
  for (int i = 1; i <= table.columns; ++i) {
    const std::string name = columnName(table, i);
    statement +=
        name + (name == "personennummer" ? " numeric(18) not null default 0, " : " text not null default '', ");
  }
  statement.resize(statement.size() - 2);
  return statement + ")";
}

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};

std::runtime_error failure(const std::filesystem::path& path, const std::string& reason) {
  return std::runtime_error(path.string() + ": " + reason);
}

void makeTables(const std::filesystem::path& file, const std::filesystem::path& target) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open_v2(file.string().c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
  const std::unique_ptr<sqlite3, CloseDatabase> database(raw);
  if (opened != SQLITE_OK) throw failure(target, sqlite3_errstr(opened));
  std::string script = "begin;";
  for (const std::string& statement : hostTableStatements()) script += statement + ";";
  if (sqlite3_exec(raw, (script + "commit").c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw failure(target, sqlite3_errmsg(raw));
  }
}

}  // namespace

std::vector<std::string> hostTableStatements() {
  std::vector<std::string> statements;
  for (const Table& table : hostTables()) {
    statements.push_back(createStatement(table));
    // No index is unique: that a number occurs once is for the host to see to, and reported when it does not hold.
    if (table.names.empty()) continue;
    statements.push_back("create index " + table.name + "_person on " + table.name + " (personennummer)");
  }
  return statements;
}

void createHostDatabase(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::exists(std::filesystem::symlink_status(path, error))) throw failure(path, "exists already");
  try {
    const FreshFile fresh(path);
    makeTables(fresh.path(), path);
    fresh.become(path);
  } catch (const std::system_error& refused) {
    throw failure(path, refused.code() == std::errc::file_exists ? "exists already" : refused.code().message());
  }
}

}  // namespace kartix::adapters
