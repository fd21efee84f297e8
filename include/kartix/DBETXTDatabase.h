#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kartix/Export.h"

namespace kartix {

class Runtime;
struct Own;

/// One connection to the host database: queries with named cursors, inserts from a list of values, statements.
///
/// Call `init` once; then any number of `query` / `Datafield` / `queryNext` / `closeCursor` sequences,
/// `resetDataset` / `addDatafield` ... / `addDataset` sequences and `executeSQL` calls. Destroying the object
/// disconnects; what was not committed is rolled back. Until `init` has succeeded every other operation does
/// nothing and returns -1 or an empty text.
///
/// Calls belong to the component's thread, as those of `Kartix` do; on another one each is refused in the same way. A
/// connection whose object is destroyed there is closed in the next call on the right thread, one that is still open
/// after `main` by the system.
///
/// Texts are UTF-8. Results are 16-bit or 32-bit numbers of the database client library: 0 or more on success,
/// negative on error. -30001 stands for a commit during which the connection was lost and of which nobody can say
/// whether it took place: look before you write again.
class KARTIX_EXPORT DBETXTDatabase {
 public:
  /// A connection of the component that this process shares.
  DBETXTDatabase();
  ~DBETXTDatabase();
  DBETXTDatabase(const DBETXTDatabase&) = delete;
  DBETXTDatabase& operator=(const DBETXTDatabase&) = delete;

  /// `val` made safe for a quoted SQL value: single quotes doubled, an empty text turned into one blank.
  static std::string db_prepare(const std::string& val);

  /// Connects and opens the database. A failure is shown to the clerk in a plain box and gives False.
  bool init(const std::string& sDBEip, const std::string& sDBEPort, const std::string& sSysUser,
            const std::string& sSysPass, const std::string& sDBName, const std::string& sDBUser,
            const std::string& sdbPass, const std::string& sAppkey = {});

  /// Empties the list of values for the next insert.
  void resetDataset();

  /// Runs the statement `sSql`: number of rows, or a negative error. Afterwards `sSql` holds the first row, or the
  /// error text, and `sCursor` the name of the cursor to go on with.
  std::int32_t query(std::string& sSql, std::string& sCursor);

  /// Next row of `sCursor` into `sBuf`: a number of at least 1, or a negative value at the end or on error.
  std::int32_t queryNext(std::string& sBuf, const std::string& sCursor);

  void closeCursor(const std::string& sCursor);

  /// Field `i` (1 to 400) of the current row, at most 4096 characters, trimmed; empty beyond the row.
  std::string Datafield(std::int16_t i) const;

  /// Adds a value to the next insert; the 401st is dropped.
  void addDatafield(const std::string& sVal);

  /// Inserts the collected values into `sTable`, by position, and commits if wished. -1 without values.
  std::int16_t addDataset(const std::string& sTable, bool commit = false);

  /// Executes one statement and commits if wished; no commit follows a failed statement.
  std::int16_t executeSQL(const std::string& sSql, bool commit = false);

 private:
  friend struct Own;
  explicit DBETXTDatabase(Runtime& runtime);

  std::int16_t openDatabase();
  void closeDatabase();
  std::int16_t execute(const std::string& statement, bool commit);

  Runtime& runtime_;
  std::string sDBEip_;
  std::string sDBEPort_;
  std::string sSysUser_;
  std::string sSysPass_;
  std::string sDBName_;
  std::string sDBUser_;
  std::string sdbPass_;
  std::string sAppkey_;
  std::int16_t client_ = 0;
  std::int16_t connection_ = 0;
  bool Open_ = false;
  bool Ready_ = false;
  std::string row_;
  std::vector<std::string> dataset_;
};

}  // namespace kartix
