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
  platform::ServerSecurity security = {};
};

/// Why something has failed.
struct Failure {
  std::string text;             ///< the engine's whole text, which may quote the statement
  std::string reason = {};      ///< what of it may be written down; empty: `text`
  bool outcomeUnknown = false;  ///< the work may have been written all the same
};

/// One connection to a database engine. A transaction is open from the first statement on, and again from the first
/// after its end. An open transaction that has written nothing keeps nobody from writing. What was not committed is
/// rolled back when the connection goes.
class Connection {
 public:
  virtual ~Connection() = default;

  /// Opens database `name`. Nothing on success.
  virtual std::optional<Failure> open(const std::string& name, const std::string& user,
                                      const std::string& password) = 0;

  /// Runs exactly one statement ("commit" included) and puts its rows, if any, into `rows`. A statement that fails
  /// leaves the work of those before it as it was. Nothing on success. When the connection is lost during a "commit",
  /// the engine finds out what became of it as well as it can.
  virtual std::optional<Failure> run(const std::string& statement, RowSet& rows) = 0;
};

/// A connection, or none and why.
struct Attempt {
  std::unique_ptr<Connection> connection;
  Failure failure = {};
};

/// Connects to an engine; none when it cannot be reached or refuses the login.
using Connect = std::function<Attempt(const Login& login)>;

/// The client library over an engine: handles, cursors, rows as text. To be used by one thread at a time.
std::unique_ptr<platform::DbeLibrary> makeClient(Connect connect);

}  // namespace kartix::adapters::dbe
