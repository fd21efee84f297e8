#include <sqlite3.h>

#include <algorithm>

#include "Installation.h"
#include "adapters/sqlite/Sqlite.h"
#include "common/Text.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"
#include "kartix/CFahrerkarte.h"
#include "kartix/CPersonalien.h"
#include "kartix/DBETXTDatabase.h"
#include "support/TestMachine.h"

/// Fields of the host's records, and of rows that the host adds, written to the database. The first line chooses the
/// way, the second is the number of the person, the third that of the card; each part that follows is a field.
namespace kartix::fuzz {
namespace {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

/// What the database holds, read without the component.
class Database {
 public:
  Database() { sqlite3_open_v2(databaseFile().c_str(), &handle_, SQLITE_OPEN_READONLY, nullptr); }
  ~Database() { sqlite3_close(handle_); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  Rows select(const std::string& statement) const {
    Rows rows;
    const auto take = [](void* to, int count, char** values, char**) {
      auto& row = static_cast<Rows*>(to)->emplace_back();
      for (int i = 0; i < count; ++i) row.emplace_back(values[i] ? values[i] : "");
      return 0;
    };
    expect(sqlite3_exec(handle_, statement.c_str(), take, &rows, nullptr) == SQLITE_OK, "it can be read", statement);
    return rows;
  }

  /// Everything but the rows of two tables that may change, and the host's log.
  Rows others(const std::string& mayChange) const {
    Rows all;
    const std::string rest = " where not (" + mayChange + ") order by rowid";
    for (const char* const from : {"sqlite_master", "fahrerkarte", "personalien", "bearbeitung"})
      for (const Row& row : select("select * from " + (*from == 'p' || *from == 'b' ? from + rest : from)))
        all.push_back(row);
    return all;
  }

 private:
  sqlite3* handle_ = nullptr;
};

/// The row in which `written` stands where it is not empty, and `former` elsewhere.
Row merged(const Row& written, Row former) {
  for (std::size_t i = 0; i < written.size(); ++i)
    if (!written[i].empty()) former[i] = written[i];
  return former;
}

/// True when every one of `values` can be written.
bool fit(const Row& values) {
  return std::all_of(values.begin(), values.end(), [](const std::string& value) {
    return text::isValidUtf8(value) && value.find('\0') == std::string::npos && value.size() < 4000;
  });
}

/// Fills `fields` and calls `write`, which changes rows of person `number` alone; their `columns` hold the fields
/// afterwards, or stay as they were.
template <class Write>
void change(const Database& database, Input& input, const std::vector<std::string*>& fields,
            const std::string& number, const std::string& columns, bool meant, Write write) {
  Row values;
  for (std::string* const field : fields) values.push_back(*field = input.part());
  const std::string mine = isPersonNumber(number) ? "personennummer = " + number : "false";
  const Rows before = database.others(mine);
  const Rows row = database.select(columns);
  const bool done = write();
  expect(database.others(mine) == before, "no other row changes", number);
  const Rows now = database.select(columns);
  expect(done || now == row, "what fails writes nothing", number);
  const bool something = std::any_of(values.begin(), values.end(), [](const auto& value) { return !value.empty(); });
  expect(done || !meant || !something || !fit(values), "what can be written is written", values[0]);
  if (done && meant) expect(now == Rows{merged(values, row.at(0))}, "what was written stands there", values[0]);
}

void newRow(const Database& database, Input& input, Runtime& runtime) {
  auto host = Own::of<DBETXTDatabase>(runtime);
  expect(openConfigured(runtime, host), "the database can be opened");
  Row values;
  while (values.size() < 16) host.addDatafield(values.emplace_back(input.part()));
  const Rows before = database.others("false");
  const bool done = host.addDataset("DATENAUSTAUSCH", true) == 0;
  expect(database.others("false") == before, "no other row changes");
  const Rows rows = database.select("select * from datenaustausch");
  expect(rows.size() == (done ? 1 : 0), "one row is added, or none");
  if (!done) return expect(!fit(values), "what can be written is written", values[0]);
  expect(rows[0] == merged(values, Row(values.size(), " ")), "what was written stands there", values[0]);
  std::string row = "select * from datenaustausch";
  std::string cursor;
  expect(host.query(row, cursor) == 1, "it can be read");
  for (std::size_t i = 0; i < values.size() && text::length(row) < 60000; ++i) {
    const std::string shown = text::trim(text::left(text::replaceAll(values[i], "\x1F", " "), 4096));
    expect(host.Datafield(static_cast<std::int16_t>(i + 1)) == shown, "as the host reads it", shown);
  }
}

}  // namespace

void rows(Input input) {
  static test::TestMachine machine(adapters::makeSqliteDbe());
  static const bool configured =
      machine.registry->RegSetValueEx(std::string(productKey) + "FS", "DBName", databaseFile());
  expect(configured && !installed().empty(), "there is a database");
  const Database database;
  const std::string way = input.line();
  const std::string number = input.line();
  const std::string former = input.line();
  const bool meant = text::trim(number) == "4711";
  auto person = Own::of<CPersonalien>(machine.runtime);
  auto card = Own::of<CFahrerkarte>(machine.runtime);
  if (way == "person") {
    change(database, input,
           {&person.familienname, &person.geburtsname, &person.geburtsdatum, &person.geburtsort, &person.titel},
           number,
           "select familienname, geburtsname, geburtsdatum, geburtsort, titel from personalien where "
           "personennummer = 4711",
           meant, [&] { return person.update(number); });
  } else if (way == "card") {
    change(database, input, {&card.kartennr, &card.antragsdatum, &card.gueltigab, &card.gueltigbis}, number,
           "select sonst1, datum01, datum02, datum03 from bearbeitung where rowid = 1", meant && former == "DF01",
           [&] { return card.update(former, number); });
  } else if (way == "new") {
    bool done = false;
    change(database, input, {&card.kartennr, &card.gueltigab, &card.babtx, &card.scode, &card.sdate, &card.mittx},
           number, "select * from bearbeitung where rowid <= 3", false, [&] { return done = card.insert(number); });
    const Rows rows = database.select(
        "select sonst1, datum02, length(sonst2) <= 66 and length(sonst3) <= 66 and length(sonst4) <= 66 from "
        "bearbeitung where rowid > 3");
    expect(rows.size() == (done ? 1 : 0), "one row is added, or none");
    if (done) expect(rows[0] == merged({card.kartennr, card.gueltigab}, {" ", " ", "1"}), "it holds the card");
  } else {
    newRow(database, input, machine.runtime);
  }
}

}  // namespace kartix::fuzz
