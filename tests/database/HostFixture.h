#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "kartix/DBETXTDatabase.h"
#include "support/TestMachine.h"

namespace kartix::test {

enum class Engine { sqlite, postgres };

/// A component with an empty host database of its own on one of the engines. All that holds for the host database
/// holds on both.
class HostDatabase : public testing::TestWithParam<Engine> {
 protected:
  HostDatabase();
  ~HostDatabase() override;

  /// A connection as the configuration says.
  std::unique_ptr<DBETXTDatabase> open();
  /// Makes the host's tables on the server.
  void createTables();
  /// Executes a statement and commits it.
  void execute(const std::string& statement);
  /// Inserts a row of `columns` values: those of `values` by position (from 1), blanks elsewhere.
  void insertRow(const std::string& table, int columns, const std::map<int, std::string>& values);
  /// The number of rows of "table where condition".
  int count(const std::string& from);
  /// All rows that `sql` selects, `columns` fields of each.
  std::vector<std::vector<std::string>> select(const std::string& sql, int columns);

  TestMachine machine;
  Runtime& runtime = machine.runtime;
  Session session{runtime};
  ARGOInterface argo{runtime, session};

 private:
  void store(const std::string& section, const std::string& name, const std::string& value);

  std::string database_;
};

inline auto engines() { return testing::Values(Engine::sqlite, Engine::postgres); }
inline std::string engineName(const testing::TestParamInfo<Engine>& tested) {
  return tested.param == Engine::sqlite ? "Sqlite" : "Postgres";
}

}  // namespace kartix::test
