#include <sqlite3.h>

#include "adapters/sqlite/HostDatabase.h"
#include "scenarios/HostData.h"

namespace kartix::test {
namespace {

class HostFile : public HostData {
 public:
  explicit HostFile(std::filesystem::path file) : file_(std::move(file)) {}

  /// As expectations spell it on every system: "$DIR/host.db".
  Json settings() const override {
    return {{"FS.DBName", file_.parent_path().string() + "/" + file_.filename().string()}};
  }

  void make(const std::vector<std::string>& statements) override {
    adapters::createHostDatabase(file_);
    sqlite3* raw = nullptr;
    sqlite3_open(file_.string().c_str(), &raw);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(raw, sqlite3_close);
    const auto execute = [&](const std::string& statement) {
      if (sqlite3_exec(raw, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw BadScenario(statement + ": " + sqlite3_errmsg(raw));
      }
    };
    execute("begin");
    for (const std::string& statement : statements) execute(statement);
    execute("commit");
  }

 private:
  std::filesystem::path file_;
};

}  // namespace

std::unique_ptr<HostData> hostFile(const std::filesystem::path& directory) {
  return std::make_unique<HostFile>(directory / "host.db");
}

}  // namespace kartix::test
