#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kartix::adapters::postgres {

/// A server, or those of a cluster, as the settings name them.
class Servers {
 public:
  /// Names "db1, db2" with ports "5432, 5433", or one port for all; without a port the usual one.
  Servers(std::string_view names, std::string_view ports);

  /// Why they cannot be tried, for an administrator; empty when they can.
  const std::string& trouble() const { return trouble_; }
  std::size_t size() const { return all_.size(); }

  /// Names and ports as the client library takes them, in the order in which it shall try them.
  std::string names() const;
  std::string ports() const;

  /// Tries this one first, when it is one of them.
  void prefer(const std::pair<std::string, std::string>& server);

 private:
  std::vector<std::pair<std::string, std::string>> all_;  ///< name and port
  std::string trouble_;
};

}  // namespace kartix::adapters::postgres
