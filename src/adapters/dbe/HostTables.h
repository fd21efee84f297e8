#pragma once

#include <map>
#include <string>
#include <vector>

namespace kartix::platform {
class DbeLibrary;
}

namespace kartix::adapters::dbe {

/// A table of the host as far as the component knows it.
struct HostTable {
  std::string name;
  int columns = 0;
  std::map<int, std::string> names = {};  ///< of the columns that the component uses, by position, counted from 1
};

std::vector<HostTable> hostTables();

/// The statements that make the host's tables with their column order, in words that every engine understands. Person
/// numbers are numbers, everything else is text; a column whose name the component does not use is called `spalteNNN`
/// after its position.
std::vector<std::string> hostTableStatements();

/// A database on a server, with the two logins that lead to it.
struct ServerDatabase {
  std::string server;
  std::string port;
  std::string systemUser;
  std::string systemPassword;
  std::string name;
  std::string user;
  std::string password;
};

/// Makes the host's tables in a database that has none of them; they belong to its user. All appear or none. Throws
/// `std::runtime_error` with a text for the administrator.
void createHostTables(platform::DbeLibrary& dbe, const ServerDatabase& database);

}  // namespace kartix::adapters::dbe
