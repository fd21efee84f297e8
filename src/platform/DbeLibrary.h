#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kartix::platform {

/// How connections to a database server are secured.
struct ServerSecurity {
  std::string mode;  ///< "disable", "allow", "prefer", "require", "verify-ca" or "verify-full"; empty: "prefer"
  std::string rootCertificate;  ///< path of the certificates that are trusted (PEM); empty for the client's own
};

/// Client library of the host database. Handles and results are 16-bit; texts are UTF-8. A row is one text whose
/// fields only `DBE_COPYBUF` can tell apart.
class DbeLibrary {
 public:
  virtual ~DbeLibrary() = default;

  /// Secures the connections that are made from now on. Means nothing where there is no server.
  virtual void secure(const ServerSecurity& /*security*/) {}

  /// Client handle, or a negative value when the client cannot start.
  virtual std::int16_t DBE_Initialize() = 0;

  /// Connection handle, or a negative value when server, port, system user or password is wrong. `password` may
  /// end in ";" and an application key. `server` and `port` may name several, separated by commas.
  virtual std::int16_t DBE_Connect(std::int16_t client, std::int16_t mode, std::string_view server,
                                   std::string_view port, std::string_view user, std::string_view password) = 0;

  /// 0 on success, any other value when database name, user or password is wrong. Opens a transaction.
  virtual std::int16_t DBE_OpenDataBase(std::int16_t client, std::int16_t connection, std::string_view name,
                                        std::string_view user, std::string_view password, std::int16_t mode) = 0;

  /// Runs the one statement in `buffer`. Negative on error, with the error text in `buffer`; otherwise `buffer`
  /// holds the first row (empty when there is none), `cursor` the cursor's name (at most 10 characters) and
  /// `count` the number of rows in decimal.
  virtual std::int16_t DBE_Query(std::int16_t client, std::int16_t connection, std::string& cursor,
                                 std::string& count, std::string& buffer) = 0;

  /// Next row of `cursor` into `buffer` and a number of at least 1 into `count`. Negative at the end or on error.
  virtual std::int16_t DBE_GetNextEntry(std::int16_t client, std::int16_t connection, std::int16_t mode,
                                        std::string_view cursor, std::string& count, std::string& buffer) = 0;

  virtual std::int16_t DBE_CloseCursor(std::int16_t client, std::int16_t connection, std::string_view cursor) = 0;

  /// What "commit" gives when the connection was lost meanwhile and nobody can say whether the work was written. The
  /// connection may have been made anew by then: what follows tells.
  static constexpr std::int16_t outcomeUnknown = -30001;

  /// Executes one statement ("commit" included). 0 on success, `outcomeUnknown`, or any other value on error.
  virtual std::int16_t DBE_Execute(std::int16_t client, std::int16_t connection, std::string_view statement) = 0;

  /// Ends the connection; what was not committed is rolled back.
  virtual std::int16_t DBE_Disconnect(std::int16_t client, std::int16_t connection) = 0;

  virtual std::int16_t DBE_CLEANUP(std::int16_t client) = 0;

  /// Why the last call that failed did so, in the words of the engine or its server, on one line and without any
  /// password. Empty when that is not known. It holds neither the statement nor rows.
  virtual std::string failureReason() const { return {}; }

  /// Field `field` (from 1) of `row`, cut to `capacity` characters; empty when the row has no such field.
  virtual std::string DBE_COPYBUF(std::string_view row, std::int16_t field, std::size_t capacity) = 0;

  /// Size in characters of the statement and row buffers.
  virtual std::size_t TXT_BUFFERSIZE() = 0;

  /// `date` ("yyyymmdd") in the order that `format` names; "DMY" gives "dd.mm.yyyy". It only rearranges:
  /// "00000000" becomes "00.00.0000". Empty for any other length.
  virtual std::string TXT_DBTOWIN(std::string_view date, std::string_view format) = 0;
};

}  // namespace kartix::platform
