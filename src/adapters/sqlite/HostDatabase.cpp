#include "adapters/sqlite/HostDatabase.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <system_error>

#include "adapters/dbe/HostTables.h"
#include "adapters/sqlite/FreshFile.h"
#include "common/Paths.h"

namespace kartix::adapters {
namespace {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};

std::runtime_error failure(const std::filesystem::path& path, const std::string& reason) {
  return std::runtime_error(utf8Of(path) + ": " + reason);
}

void makeTables(const std::filesystem::path& file, const std::filesystem::path& target) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open_v2(utf8Of(file).c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
  const std::unique_ptr<sqlite3, CloseDatabase> database(raw);
  if (opened != SQLITE_OK) throw failure(target, sqlite3_errstr(opened));
  std::string script = "begin;";
  for (const std::string& statement : dbe::hostTableStatements()) script += statement + ";";
  if (sqlite3_exec(raw, (script + "commit").c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw failure(target, sqlite3_errmsg(raw));
  }
}

}  // namespace

void createHostDatabase(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::exists(std::filesystem::symlink_status(path, error))) throw failure(path, "gibt es schon");
  try {
    const FreshFile fresh(path);
    makeTables(fresh.path(), path);
    fresh.become(path);
  } catch (const std::system_error& refused) {
    throw failure(path, refused.code() == std::errc::file_exists ? "gibt es schon" : refused.code().message());
  }
}

}  // namespace kartix::adapters
