#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/TempDir.h"

namespace kartix::test {

/// A PostgreSQL server as a process of its own, on a port of the loopback address.
class Server {
 public:
  /// `settings` as the server's option -c takes them.
  Server(const std::filesystem::path& data, const std::vector<std::string>& settings);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  const std::string& port() const { return port_; }
  /// First field of the first row, asked for as the administrator in database `name`; empty for none.
  std::string ask(const std::string& sql, const std::string& name = "host") const;
  /// Waits until `sql` gives "t".
  void until(const std::string& sql) const;
  /// Ends it as a loss of power would.
  void kill();

 private:
  std::string port_;
  pid_t process_ = -1;
};

/// A primary server and one that follows it and can take its place.
class Cluster {
 public:
  Cluster();

  /// Does `work` while its session at the primary is in the state that `condition` says ("wait_event = 'SyncRep'");
  /// then the primary is killed and, with `successor`, the other server takes over.
  void during(const std::string& condition, bool successor, const std::function<void()>& work);
  void promote() const { standby.ask("select pg_promote(true, 30)"); }
  /// The log of the primary goes no further from now on.
  void holdLog();

 private:
  TempDir directory_;
  pid_t held_ = -1;

 public:
  Server primary;
  Server standby;
};

}  // namespace kartix::test
