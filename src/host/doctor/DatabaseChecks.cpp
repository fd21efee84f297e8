#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/dbe/HostTables.h"
#include "adapters/settings/Settings.h"
#include "adapters/system/System.h"
#include "common/Paths.h"
#include "host/Installation.h"
#include "host/doctor/Doctor.h"
#include "platform/DbeLibrary.h"
#include "runtime/Runtime.h"

namespace kartix::host {
namespace {

const Area area("Datenbank");

/// A table of the host, and what the component does with it beside reading.
struct Table {
  std::string name;
  int columns;
  bool extended;  ///< rows are added, of exactly so many columns
  bool changed;   ///< rows of a person are changed
};

std::vector<Table> usedTables() {
  std::vector<Table> tables;
  for (const adapters::dbe::HostTable& each : adapters::dbe::hostTables()) {
    const bool log = each.name == "datenaustausch";
    const bool work = each.name == "bearbeitung";
    tables.push_back({each.name, each.columns, log || work, work || each.name == "personalien"});
  }
  return tables;
}

/// A connection to the host database, ended on every way out. What was done in it is rolled back.
class Connection {
 public:
  explicit Connection(platform::DbeLibrary& dbe) : dbe_(dbe), client_(dbe.DBE_Initialize()) {}
  ~Connection() {
    if (connection_ >= 0) dbe_.DBE_Disconnect(client_, connection_);
    if (client_ >= 0) dbe_.DBE_CLEANUP(client_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool connect(const Konfiguration& settings) {
    if (client_ < 0) return false;
    dbe_.secure({settings.ServerTLS, settings.ServerCA});
    connection_ =
        dbe_.DBE_Connect(client_, 0, settings.ServerIP, settings.ServerPort, settings.SysUser, settings.SysPass);
    return connection_ >= 0;
  }
  bool open(const Konfiguration& settings) {
    return dbe_.DBE_OpenDataBase(client_, connection_, settings.DBName, settings.DBUser, settings.DBPass, 0) == 0;
  }
  /// First field of the first row, empty when there is none; nothing when the statement fails.
  std::optional<std::string> ask(const std::string& statement) {
    std::string cursor;
    std::string count;
    std::string row = statement;
    if (dbe_.DBE_Query(client_, connection_, cursor, count, row) < 0) return std::nullopt;
    dbe_.DBE_CloseCursor(client_, connection_, cursor);
    constexpr std::size_t longest = 100;
    return dbe_.DBE_COPYBUF(row, 1, longest);
  }
  bool run(const std::string& statement) { return dbe_.DBE_Execute(client_, connection_, statement) == 0; }
  std::string reason() const { return dbe_.failureReason(); }

 private:
  platform::DbeLibrary& dbe_;
  std::int16_t client_;
  std::int16_t connection_ = -1;
};

/// The database, and how it is called.
struct Place {
  const Konfiguration& settings;
  bool embedded = settings.ServerIP.empty();
  std::string name = embedded ? settings.DBName : settings.DBName + " auf " + settings.ServerIP;
};

std::string because(const std::string& reason) { return reason.empty() ? "" : ": " + reason; }

/// A server that says anything at all says it with this word, in English as in German.
bool serverSpoke(const std::string& reason) { return reason.find("FATAL") != std::string::npos; }

bool holds(const std::string& reason, std::string_view word) { return reason.find(word) != std::string::npos; }

/// Servers that only read are passed over, so the reason is one for no connection.
bool onlyReads(const std::string& reason) { return holds(reason, "read-only"); }

Finding readOnly(const Place& place, const std::string& reason) {
  return area.fault("FS.ServerIP", "Der Datenbankserver nimmt nur Lesezugriffe an: " + place.name + because(reason),
                    "kartix settings set FS.ServerIP mit dem Server, auf den geschrieben wird, oder allen eines "
                    "Clusters; ist es der richtige: default_transaction_read_only der Datenbank und des Benutzers "
                    "prüfen");
}

Finding notConnected(const Place& place, const std::string& reason) {
  if (onlyReads(reason)) return readOnly(place, reason);
  const std::string text = "Keine Verbindung zum Datenbankserver " + place.settings.ServerIP + because(reason);
  if (serverSpoke(reason)) {
    return area.fault(
        "FS.SysUser", text + "; Systembenutzer: FS.SysUser, FS.SysPass",
        "kartix settings set FS.SysUser BENUTZER; kartix settings set FS.SysPass (fragt nach dem Passwort)");
  }
  if (holds(reason, "certificate") || holds(reason, "SSL")) {
    return area.fault(
        "FS.ServerTLS", text + "; Verschlüsselung: FS.ServerTLS, FS.ServerCA",
        "kartix settings set FS.ServerCA mit dem Zertifikat der ausstellenden Stelle; der Server muss auf "
        "den Namen aus FS.ServerIP ausgestellt sein");
  }
  return area.fault("FS.ServerIP", text + "; Adresse: FS.ServerIP, FS.ServerPort",
                    "prüfen, ob der Server läuft und der Weg zu ihm offen ist; sonst kartix settings set FS.ServerIP "
                    "RECHNER und kartix settings set FS.ServerPort PORT");
}

bool isLocked(const std::string& reason) { return reason.find("locked") != std::string::npos; }

Finding heldElsewhere(const std::string& text, const Place& place) {
  return area.fault("FS.DBName", text,
                    "beenden, was die Datei festhält: fuser -v " + asArgument(place.settings.DBName));
}

/// There, but not to be read by this user.
bool isClosed(const std::string& file) {
  std::error_code error;
  return std::filesystem::exists(pathOf(file), error) && !adapters::system::canRead(pathOf(file));
}

Finding notOpened(const Place& place, const std::string& reason) {
  const std::string text = "Lässt sich nicht öffnen: " + place.name + because(reason);
  if (place.embedded && isClosed(place.settings.DBName)) {
    return area.fault("FS.DBName", text, "als Eigentümer der Datei chmod u+rw " + asArgument(place.settings.DBName));
  }
  if (place.embedded && isLocked(reason)) return heldElsewhere(text, place);
  if (place.embedded) {
    return area.fault(
        "FS.DBName", text,
        "kartix settings set FS.DBName DATEI (die Datenbank der Fachanwendung; eine leere legt kartix db "
        "create DATEI an)");
  }
  if (onlyReads(reason)) return readOnly(place, reason);
  const bool ofUser = holds(reason, "\"" + place.settings.DBUser + "\"");
  if (ofUser || !serverSpoke(reason)) {
    return area.fault(
        "FS.DBUser", text + "; Benutzer der Datenbank: FS.DBUser, FS.DBPass",
        "kartix settings set FS.DBUser BENUTZER; kartix settings set FS.DBPass (fragt nach dem Passwort)");
  }
  return area.fault(
      "FS.DBName", text,
      "kartix settings set FS.DBName DATENBANK; gibt es sie und ist sie die richtige, als ihr Eigentümer: "
      "grant connect on database " +
          place.settings.DBName + " to \"" + place.settings.DBUser + "\"");
}

std::string selectAll(const Table& table) { return "select * from " + table.name + " where 1 = 0"; }

/// A table has the column that its rows can be sorted by.
bool hasColumn(Connection& connection, const Table& table, int position) {
  return connection.ask(selectAll(table) + " order by " + std::to_string(position)).has_value();
}

int countColumns(Connection& connection, const Table& table) {
  int count = table.columns - 1;
  while (count > 0 && !hasColumn(connection, table, count)) --count;
  return count;
}

/// Statements that need all that a real one needs, and change nothing.
std::string emptyInsert(const Table& table) {
  std::string nulls = "null";
  for (int i = 1; i < table.columns; ++i) nulls += ", null";
  return "insert into " + table.name + " select " + nulls + " where 1 = 0";
}
std::string emptyUpdate(const Table& table) {
  return "update " + table.name + " set personennummer = personennummer where 1 = 0";
}

Finding unreadable(Connection& connection, const Place& place, const Table& table) {
  const std::string reason = connection.reason();
  const std::string& name = table.name;
  const bool there =
      !place.embedded && connection.ask("select 1 where to_regclass('" + name + "') is not null") == "1";
  if (there) {
    return area.fault("FS.DBUser", "Die Tabelle " + name + " ist nicht lesbar" + because(reason),
                      "als ihr Eigentümer: grant select on " + name + " to \"" + place.settings.DBUser + "\"");
  }
  return area.fault(
      "FS.DBName", "Es fehlt die Tabelle " + name + " in " + place.name + because(reason),
      "kartix settings set FS.DBName mit der Datenbank der Fachanwendung; eine mit leeren Tabellen legt "
      "kartix db create an");
}

Finding unwritable(const Place& place, const Table& table, const std::string& reason) {
  const std::string text = "Die Tabelle " + table.name + " nimmt nichts an: " + place.name + because(reason);
  if (place.embedded && isLocked(reason)) return heldElsewhere(text, place);
  if (place.embedded) {
    return area.fault("FS.DBName", text,
                      "als Eigentümer der Datei chmod u+w " + asArgument(place.settings.DBName) +
                          "; das Dateisystem darf nicht nur zum Lesen eingehängt sein");
  }
  const std::string rights = std::string(table.extended ? "insert" : "") +
                             (table.extended && table.changed ? ", " : "") + (table.changed ? "update" : "");
  return area.fault(
      "FS.DBUser", text,
      "als ihr Eigentümer: grant " + rights + " on " + table.name + " to \"" + place.settings.DBUser + "\"");
}

/// Too few columns, or more than the rows that are added have values for: a server fills those up by itself.
Findings checkColumns(Connection& connection, const Place& place, const Table& table) {
  const bool tooFew = !hasColumn(connection, table, table.columns);
  const bool tooMany = place.embedded && table.extended && hasColumn(connection, table, table.columns + 1);
  if (!tooFew && !tooMany) return {};
  const std::string has = tooFew ? std::to_string(countColumns(connection, table)) : "mehr";
  return {area.fault("FS.DBName",
                     "Die Tabelle " + table.name + " hat " + has + " Spalten, gebraucht werden " +
                         std::to_string(table.columns) + ": " + place.name,
                     "den Stand der Fachanwendung herstellen lassen, oder kartix settings set FS.DBName mit ihrer "
                     "Datenbank")};
}

Findings checkTable(Connection& connection, const Place& place, const Table& table) {
  if (!connection.ask(selectAll(table))) return {unreadable(connection, place, table)};
  if (Findings columns = checkColumns(connection, place, table); !columns.empty()) return columns;
  const bool takes = (!table.extended || connection.run(emptyInsert(table))) &&
                     (!table.changed || connection.run(emptyUpdate(table)));
  if (takes) return {};
  return {unwritable(place, table, connection.reason())};
}

/// A file that can only be read; nothing when it can be written.
Findings checkWritable(const Place& place) {
  if (!place.embedded || adapters::canBeReplaced(pathOf(place.settings.DBName))) return {};
  return {area.fault(
      "FS.DBName",
      "Im Verzeichnis der Datenbank kann nichts angelegt werden, was jedes Schreiben braucht: " + place.name,
      "diesem Benutzer das Schreiben im Verzeichnis der Datei erlauben")};
}

}  // namespace

Findings checkDatabase(Installation& installation, const Findings& known) {
  const Place place{installation.settings()};
  if (place.settings.DBName.empty() || hasFault(known, "FS.")) return {};
  Connection connection(installation.runtime().machine.dbe);
  if (!connection.connect(place.settings)) return {notConnected(place, connection.reason())};
  if (!connection.open(place.settings)) return {notOpened(place, connection.reason())};
  Findings findings = checkWritable(place);
  for (const Table& table : usedTables()) {
    if (!hasFault(findings)) append(findings, checkTable(connection, place, table));
  }
  if (findings.empty())
    findings.push_back(area.good("lässt sich öffnen, hat ihre Tabellen und nimmt Änderungen an: " + place.name));
  return findings;
}

}  // namespace kartix::host
