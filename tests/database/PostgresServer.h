#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/TempDir.h"

namespace kartix::test {

/// A PostgreSQL server of this program's own: private data, a port of the loopback address, passwords required. It
/// ends with this object, and with the program at the latest.
class PostgresServer {
 public:
  /// Throws `std::runtime_error` when the server's programs are missing or it does not come up.
  PostgresServer();
  ~PostgresServer();
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;

  std::string address() const { return "127.0.0.1"; }
  const std::string& port() const { return port_; }

  /// Runs statements, each in a transaction of its own, as the administrator. Throws when one fails.
  void execute(const std::string& database, const std::vector<std::string>& statements) const;

 private:
  bool start(const std::filesystem::path& programs);
  void stop();

  TempDir directory_;
  std::string port_;
  pid_t process_ = -1;
};

}  // namespace kartix::test
