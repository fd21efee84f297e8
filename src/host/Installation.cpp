#include "host/Installation.h"

#include <algorithm>
#include <array>
#include <utility>

#include "adapters/clock/SystemClock.h"
#include "adapters/curl/Curl.h"
#include "adapters/files/Files.h"
#include "adapters/machine/Machine.h"
#include "adapters/settings/Settings.h"
#include "adapters/system/System.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "host/Certificates.h"
#include "host/RegistryFile.h"
#include "host/Settings.h"
#include "platform/Clock.h"
#include "platform/DbeLibrary.h"
#include "platform/HttpLibrary.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/UserInterface.h"
#include "runtime/Global.h"
#include "runtime/Konfiguration.h"
#include "runtime/Reporting.h"
#include "runtime/Trace.h"

namespace kartix::host {
namespace {

constexpr int connectSeconds = 5;
constexpr int stallSeconds = 10;

Finding good(std::string area, std::string text) {
  return {Finding::Level::good, std::move(area), std::move(text), {}};
}
Finding note(std::string area, std::string text, std::string mend) {
  return {Finding::Level::note, std::move(area), std::move(text), std::move(mend)};
}
Finding fault(std::string area, std::string text, std::string mend) {
  return {Finding::Level::fault, std::move(area), std::move(text), std::move(mend)};
}

class NoWindows final : public platform::UserInterface {
 public:
  ShowResult showModal(forms::Form&) override { return ShowResult::noDisplay; }
  void repaint() override {}
  void setHourglass(bool) override {}
  void centerForm(forms::Form&) override {}
  void progressReported(const forms::Form&, int, std::string_view) override {}
};

adapters::CurlOptions impatient() {
  adapters::CurlOptions options;
  options.connectSeconds = connectSeconds;
  options.stallSeconds = stallSeconds;
  return options;
}

/// The ini file holds settings, and the cookies of the session at the gateway.
void checkIniFile(const std::string& file, Findings& findings) {
  if (file.empty()) return;
  if (!adapters::system::canRead(file)) {
    findings.push_back(note("settings", "the ini file cannot be read: " + file, "make it, or mend InfoDatei"));
  } else if (!adapters::canBeReplaced(file)) {
    findings.push_back(fault(
        "settings",
        "the ini file cannot be written: " + file + "; every start needs a new login, and a changed password is lost",
        "let this user write to its directory"));
  }
}

/// A connection to the host database, ended on every way out.
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
    connection_ =
        dbe_.DBE_Connect(client_, 0, settings.ServerIP, settings.ServerPort, settings.SysUser, settings.SysPass);
    return connection_ >= 0;
  }
  bool open(const Konfiguration& settings) {
    return dbe_.DBE_OpenDataBase(client_, connection_, settings.DBName, settings.DBUser, settings.DBPass, 0) == 0;
  }
  bool hasTable(const std::string& table) {
    std::string cursor;
    std::string count;
    std::string buffer = "select * from " + table + " where 1 = 0";
    if (dbe_.DBE_Query(client_, connection_, cursor, count, buffer) < 0) return false;
    dbe_.DBE_CloseCursor(client_, connection_, cursor);
    return true;
  }

 private:
  platform::DbeLibrary& dbe_;
  std::int16_t client_;
  std::int16_t connection_ = -1;
};

}  // namespace

struct Installation::Parts {
  explicit Parts(const std::filesystem::path& file)
      : registry(adapters::machine::makeRegistry(file)),
        dbe(adapters::machine::makeDbe()),
        http(adapters::makeCurlHttp(impatient())) {
    settings.init();
  }

  std::unique_ptr<platform::Registry> registry;
  std::unique_ptr<platform::ProfileFiles> files = adapters::machine::makeProfileFiles();
  std::unique_ptr<platform::DbeLibrary> dbe;
  std::unique_ptr<platform::HttpLibrary> http;
  std::unique_ptr<platform::FileSystem> fileSystem = adapters::makeFiles();
  NoWindows windows;
  std::unique_ptr<platform::Clock> clock = adapters::makeSystemClock();
  Trace trace{*clock};
  Global global{trace, *dbe, windows, *clock};
  Reporting reporting{trace, global};
  Konfiguration settings{*registry, *files, trace, global, reporting};
};

Installation::Installation(std::filesystem::path registryFile)
    : registryFile_(std::move(registryFile)), parts_(std::make_unique<Parts>(registryFile_)) {}
Installation::~Installation() = default;

bool Installation::storeHoldsSettings() {
  return std::any_of(settingsTable().begin(), settingsTable().end(),
                     [&](const Setting& setting) { return storedValue(*parts_->registry, setting).has_value(); });
}

/// Paths that lead nowhere here, or elsewhere with another working directory.
Findings Installation::checkPaths() {
  Konfiguration& settings = parts_->settings;
  const std::string traceFile = settings.GetIni({}, std::string(productKey) + "ZFER\\", "DebugFile");
  const std::string images = settings.GetIni({}, imageRootKey, "KODSImageDir");
  constexpr std::string_view imageRoot = "KODSImageDir";
  const std::array<std::pair<std::string_view, std::string>, 6> paths = {
      {{"InfoDatei", settings.InfoDatei},
       {"FS.DBName", settings.ServerIP.empty() ? settings.DBName : std::string()},
       {"ZEVIS.GATEWAYCert", settings.GATEWAYCert},
       {"ZEVIS.GATEWAYPkey", settings.GATEWAYPkey},
       {"ZFER.DebugFile", text::trim(traceFile)},
       {imageRoot, text::trim(images)}}};
  const auto files = adapters::makeFiles();
  Findings findings;
  for (const auto& [name, path] : paths) {
    // In the image directory alone either slash will do.
    const std::string native = name == imageRoot ? files->nativePath(path) : path;
    if (isForeignPath(native)) {
      findings.push_back(fault("settings", std::string(name).append(" is no path of this machine: ").append(path),
                               std::string("kartix settings set ").append(name).append(" PATH")));
    } else if (!native.empty() && std::filesystem::path(native).is_relative()) {
      findings.push_back(note("settings",
                              std::string(name).append(" depends on the working directory: ").append(path),
                              "name it with its whole path"));
    }
  }
  return findings;
}

Findings Installation::checkSettings() {
  constexpr const char* area = "settings";
  const bool inFile = !registryFile_.empty();
  const std::string file = storeName(registryFile_);
  const Konfiguration& settings = parts_->settings;
  if (inFile && !adapters::system::canRead(registryFile_)) {
    return {fault(area, "cannot be read: " + file, "kartix settings import FILE, or kartix settings set NAME VALUE")};
  }
  if (!storeHoldsSettings()) {
    return {fault(area, file + " is damaged or holds no settings of this component", "kartix settings import FILE")};
  }
  Findings findings = {good(area, "read from " + file)};
  using std::filesystem::perms;
  const perms others = perms::group_all | perms::others_all;
  std::error_code error;
  if (inFile && (std::filesystem::status(registryFile_, error).permissions() & others) != perms::none) {
    findings.push_back(note(area, file + " holds passwords and is open to others", "chmod 600 " + file));
  }
  if (inFile && !adapters::canBeReplaced(registryFile_)) {
    findings.push_back(note(area, file + " cannot be written: a changed gateway password is lost",
                            "let this user write to its directory"));
  }
  checkIniFile(settings.InfoDatei, findings);
  const Findings paths = checkPaths();
  findings.insert(findings.end(), paths.begin(), paths.end());
  if (storedValue(*parts_->registry, findSetting("ZKR.TestClerk")) == "1") {
    findings.push_back(note(area, "scripts may play the clerk (ZKR.TestClerk): for test installations only",
                            "kartix settings set ZKR.TestClerk 0"));
  }
  const std::string account = settings.SektionKennung;
  const std::array<std::pair<std::string, const std::string*>, 9> needed = {
      {{"FS.DBName", &settings.DBName},
       {"ZKR.KENZA", &settings.KENZA},
       {"ZKR.ZPPER", &settings.ZPPER},
       {"ZKR.AnfrageURI", &settings.AnfrageURI},
       {"ZEVIS.ZEVISServer", &settings.ZEVISServer},
       {"ZEVIS.ZEVISPort", &settings.ZEVISPort},
       {"ZEVIS.ZEVISAuthURI", &settings.ZEVISAuthURI},
       {account + ".ZEVISUserName", &settings.ZEVISUserName},
       {account + ".ZEVISPass", &settings.ZEVISPass}}};
  for (const auto& [path, value] : needed) {
    if (value->empty()) findings.push_back(fault(area, path + " is not set", "kartix settings set " + path));
  }
  return findings;
}

Findings Installation::checkDatabase() {
  constexpr const char* area = "database";
  const Konfiguration& settings = parts_->settings;
  if (settings.DBName.empty()) return {};
  const bool embedded = settings.ServerIP.empty();
  const std::string name = embedded ? settings.DBName : settings.DBName + " at " + settings.ServerIP;
  Connection connection(*parts_->dbe);
  if (!connection.connect(settings)) {
    return {fault(area, "no connection to " + settings.ServerIP,
                  "check FS.ServerIP, FS.ServerPort, FS.SysUser and FS.SysPass, and whether the server runs")};
  }
  if (!connection.open(settings)) {
    return {fault(area, "does not open: " + name,
                  embedded ? "check FS.DBName, or kartix db create " + settings.DBName
                           : "check FS.DBName, FS.DBUser and FS.DBPass")};
  }
  Findings findings;
  for (const char* table : {"personalien", "fahrerkarte", "BEARBEITUNG", "DATENAUSTAUSCH"}) {
    if (connection.hasTable(table)) continue;
    findings.push_back(fault(area, std::string("has no table ") + table + ": " + name,
                             embedded ? "kartix db create a new file, or name the right one in FS.DBName"
                                      : "name the host's database in FS.DBName"));
  }
  if (findings.empty()) findings.push_back(good(area, "opens and has its tables: " + name));
  return findings;
}

Findings Installation::checkClientCertificate() {
  const Konfiguration& settings = parts_->settings;
  if (settings.GATEWAY <= 0) return {};
  Findings findings;
  if (settings.GATEWAYCert.empty()) {
    findings.push_back(fault("certificate", "is not named", "kartix settings set ZEVIS.GATEWAYCert FILE"));
  }
  if (settings.GATEWAYPkey.empty()) {
    findings.push_back(fault("certificate", "key is not named", "kartix settings set ZEVIS.GATEWAYPkey FILE"));
  }
  if (!findings.empty()) return findings;
  return checkCertificate(settings.GATEWAYCert, settings.GATEWAYPkey, settings.GATEWAYCertPass);
}

Findings Installation::checkGateway() {
  constexpr const char* area = "gateway";
  constexpr int methodAccepted = 12;
  const Konfiguration& settings = parts_->settings;
  if (settings.ZEVISServer.empty()) return {};
  const std::string address = settings.ZEVISServer + ":" + settings.ZEVISPort;
  const auto request = parts_->http->TESSELHTTPCreate();
  if (!request || request->TESSELHTTPsetServer(settings.ZEVISServer, settings.ZEVISPort) != 0 ||
      request->TESSELHTTPsetMethod("GET") != methodAccepted || request->TESSELHTTPsetPath("/") != 0) {
    return {fault(area, "no request can be made for " + address, "check ZEVIS.ZEVISServer and ZEVIS.ZEVISPort")};
  }
  if (settings.GATEWAY > 0) {
    request->TESSELHTTPsetHttpS();
    request->TESSELHTTPsetPEM(settings.GATEWAYCert, settings.GATEWAYPkey, settings.GATEWAYCertPass);
  }
  if (settings.GATEWAY == 2) request->TESSELHTTPsetSecureProxy(settings.SecureProxy);
  const std::int32_t status = request->TESSELHTTPsend();
  if (status > 0) return {good(area, address + " answers (HTTP " + std::to_string(status) + ")")};
  const std::string reason = text::trim(parts_->http->TESSELHTTPgetErrorDesc(status));
  const bool proxy = status == platform::http_error::secureProxyNotReachable;
  return {fault(area, address + ": " + reason + " (" + std::to_string(status) + ")",
                proxy ? "check ZEVIS.SecureProxy, and whether the secure line is up"
                      : "check ZEVIS.ZEVISServer, ZEVIS.ZEVISPort and ZEVIS.GATEWAY, and the line to the gateway")};
}

Findings Installation::checkImages() {
  constexpr const char* area = "images";
  const std::string root = text::trim(parts_->settings.GetIni({}, imageRootKey, "KODSImageDir"));
  if (root.empty()) {
    return {note(area, "no directory is set; cards cannot be ordered", "kartix settings set KODSImageDir DIRECTORY")};
  }
  const std::string directory = adapters::makeFiles()->nativePath(root);
  std::error_code error;
  if (!std::filesystem::is_directory(directory, error)) {
    return {fault(area, "there is no directory " + directory, "make it available, or mend KODSImageDir")};
  }
  return {good(area, "directory " + directory)};
}

OrderBook Installation::orderBook() { return {*parts_->fileSystem, *parts_->clock, parts_->settings.Bestellbuch}; }

Findings Installation::checkOrderBook() {
  constexpr const char* area = "order book";
  OrderBook book = orderBook();
  if (!book.kept()) return {};
  std::vector<BookEntry> entries;
  if (const auto failure = book.read(entries)) {
    return {fault(area, "cannot be read: " + book.path() + ": " + failure.message(), "mend ZKR.Bestellbuch")};
  }
  std::error_code error;
  const bool exists = std::filesystem::exists(book.path(), error);
  const std::string place = exists ? book.path() : std::filesystem::path(book.path()).parent_path().string();
  if (!adapters::system::canWrite(place)) {
    return {fault(area, "cannot be written: " + book.path(), "mend the rights of " + place + ", or ZKR.Bestellbuch")};
  }
  const auto unclear =
      std::count_if(entries.begin(), entries.end(), [](const BookEntry& entry) { return isUnclear(entry.outcome); });
  if (unclear == 0) return {good(area, std::to_string(entries.size()) + " messages, none unclear: " + book.path())};
  return {fault(area, std::to_string(unclear) + " of " + std::to_string(entries.size()) + " messages are unclear",
                "kartix orders --open; inquire in the register, then kartix orders --settle")};
}

}  // namespace kartix::host
