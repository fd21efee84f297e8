#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/dbe/RowSet.h"
#include "platform/DbeLibrary.h"

namespace kartix::adapters::dbe {

/// Where and as whom a client connects.
struct Login {
  std::string server;
  std::string port;
  std::string user;
  std::string password;  ///< may end in ";" and an application key
};

/// One connection to a database engine. A transaction is open from `open` on; whatever ends it opens the next one. An
/// open transaction that has written nothing keeps nobody from writing. What was not committed is rolled back when
/// the connection goes.
class Connection {
 public:
  virtual ~Connection() = default;

  /// Opens database `name`. Nothing on success, else why not, without the password.
  virtual std::optional<std::string> open(const std::string& name, const std::string& user,
                                          const std::string& password) = 0;

  /// Runs exactly one statement ("commit" included) and puts its rows, if any, into `rows`. A statement that fails
  /// leaves the work of those before it as it was. Nothing on success, else the error text.
  virtual std::optional<std::string> run(const std::string& statement, RowSet& rows) = 0;
};

/// A connection, or none and why, without the password.
struct Attempt {
  std::unique_ptr<Connection> connection;
  std::string failure = {};
};

/// Connects to an engine; none when it cannot be reached or refuses the login.
using Connect = std::function<Attempt(const Login& login)>;

/// The client library over an engine: handles, cursors, rows as text. To be used by one thread at a time.
std::unique_ptr<platform::DbeLibrary> makeClient(Connect connect);

}  // namespace kartix::adapters::dbe
