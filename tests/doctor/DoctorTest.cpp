#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "doctor/Place.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

using host::Finding;
using testing::HasSubstr;
using testing::Not;

struct Seed {
  const char* fault;
  const char* setting;
  const char* mend;  ///< a piece of the advice
  std::function<void(Place&)> sow;
  const char* reason = "";  ///< in the words of the database
};

/// A value that is not what it should be.
std::function<void(Place&)> value(const char* setting, std::string text) {
  return [setting, text](Place& place) { place.set(setting, text); };
}
std::function<void(Place&)> gatewayThatIs(const char* kind) {
  return [kind](Place& place) { place.set("ZEVIS.ZEVISPort", place.around.ports.at(kind)); };
}
std::function<void(Place&)> clientWith(PemFiles Neighbourhood::*files, std::string phrase = {}) {
  return [files, phrase](Place& place) {
    place.set("ZEVIS.GATEWAYCert", (place.around.*files).certificate);
    place.set("ZEVIS.GATEWAYPkey", (place.around.*files).key);
    place.set("ZEVIS.GATEWAYCertPass", phrase);
  };
}
std::function<void(Place&)> onFile(const char* statements) {
  return [statements](Place& place) { place.onFile(statements); };
}
std::function<void(Place&)> onServer(std::function<void(Place&)> then) {
  return [then](Place& place) {
    place.moveToServer();
    then(place);
  };
}
const std::vector<Seed> seeds = {
    {"service path empty", "ZKR.AnfrageURI", "settings set ZKR.AnfrageURI /", value("ZKR.AnfrageURI", "")},
    {"service path without its slash", "ZKR.BestellURI", "set ZKR.BestellURI /",
     value("ZKR.BestellURI", "bestellung")},
    {"service path with a blank", "ZKR.MitteilungsURI", "set ZKR.MitteilungsURI",
     value("ZKR.MitteilungsURI", "/mit teilung")},
    {"login path empty", "ZEVIS.ZEVISAuthURI", "set ZEVIS.ZEVISAuthURI", value("ZEVIS.ZEVISAuthURI", "")},
    {"text of the front empty", "ZKR.BehoerdeVorderseite", "set ZKR.BehoerdeVorderseite",
     value("ZKR.BehoerdeVorderseite", "")},
    {"text of the back blank", "ZKR.BehoerdeRueckseite", "set ZKR.BehoerdeRueckseite",
     value("ZKR.BehoerdeRueckseite", "  ")},
    {"authority without its number", "ZKR.KENZA", "set ZKR.KENZA", value("ZKR.KENZA", "")},
    {"account without its password", "ZKR.ZEVISPass", "set ZKR.ZEVISPass (fragt", value("ZKR.ZEVISPass", "")},
    {"section in small letters", "ZKR.SektionKennung", "set ZKR.SektionKennung ZKR",
     value("ZKR.SektionKennung", "zkr")},
    {"switch in words", "ZKR.AllowPassChange", "set ZKR.AllowPassChange 0, oder 1",
     value("ZKR.AllowPassChange", "ja")},
    {"switch in words in the ini file", "KBA.AllowPassChange", "set KBA.AllowPassChange 0",
     [](Place& place) { place.setIni("[KBA]\r\nAllowPassChange=yes\r\n"); }},
    {"test system", "ZKR.Testsystem", "set ZKR.Testsystem 0", value("ZKR.Testsystem", "1")},
    {"port in letters", "ZEVIS.ZEVISPort", "set ZEVIS.ZEVISPort", value("ZEVIS.ZEVISPort", "https")},
    {"gateway of no known kind", "ZEVIS.GATEWAY", "set ZEVIS.GATEWAY", value("ZEVIS.GATEWAY", "ja")},
    {"trace level in words", "ZFER.DebugLevel", "set ZFER.DebugLevel", value("ZFER.DebugLevel", "viel")},
    {"no database", "FS.DBName", "set FS.DBName", value("FS.DBName", "")},
    {"no certificate", "ZEVIS.GATEWAYCert", "set ZEVIS.GATEWAYCert DATEI", value("ZEVIS.GATEWAYCert", "")},
    {"no secure proxy", "ZEVIS.SecureProxy", "set ZEVIS.SecureProxy", value("ZEVIS.GATEWAY", "2")},
    {"ini file of another machine", "InfoDatei", "set InfoDatei", value("InfoDatei", R"(C:\kba\kartix.ini)")},
    {"database of another machine", "FS.DBName", "set FS.DBName", value("FS.DBName", R"(\\server\argo\host.db)")},
    {"trace of another machine", "ZFER.DebugFile", "set ZFER.DebugFile",
     value("ZFER.DebugFile", R"(C:\kba\trace.txt)")},
    {"ini file that cannot be written", "InfoDatei", "Schreiben", [](Place& place) { place.block("kartix.ini"); }},
    {"ini file in UTF-16", "InfoDatei", "Windows-1252",
     [](Place& place) { place.setIni(std::string("\xFF\xFE[\0Z\0", 6)); }},
    {"trace in a missing folder", "ZFER.DebugFile", "mkdir -p",
     [](Place& place) { place.set("ZFER.DebugFile", place.file("gone/trace.txt")); }},
    {"trace without a file", "ZFER.DebugFile", "set ZFER.DebugFile",
     [](Place& place) {
       place.set("ZFER.DebugFile", "");
       place.set("ZFER.DebugLevel", "1");
     }},
    {"images gone", "KODSImageDir", "set KODSImageDir",
     [](Place& place) { place.set("KODSImageDir", place.file("gone")); }},
    {"images that cannot be written", "KODSImageDir", "Schreiben", value("KODSImageDir", "/proc")},
    {"order book in a missing folder", "ZKR.Bestellbuch", "set ZKR.Bestellbuch",
     [](Place& place) { place.set("ZKR.Bestellbuch", place.file("gone/orders")); }},
    {"open order", "ZKR.Bestellbuch", "kartix orders --open",
     [](Place& place) {
       writeBytes(place.file("orders"),
                  "begin\t0123456789abcdef\t2026-03-09T07:05:04\tStorno\thttp\t4711\t1\t4711/1\tMeier\n");
     }},
    {"database gone", "FS.DBName", "kartix db create",
     [](Place& place) { place.set("FS.DBName", place.file("gone.db")); }},
    {"database that is none", "FS.DBName", "set FS.DBName",
     [](Place& place) { writeBytes(place.file("host.db"), std::string(1000, 'x')); }},
    {"table missing", "FS.DBName", "kartix db create", onFile("drop table datenaustausch"), "no such table"},
    {"table with too few columns", "FS.DBName", "Stand der Fachanwendung",
     onFile("alter table fahrerkarte drop column vornamen")},
    {"log with too few columns", "FS.DBName", "Stand der Fachanwendung",
     onFile("alter table datenaustausch drop column spalte016")},
    {"database that can only be read", "FS.DBName", "chmod u+w",
     [](Place& place) {
       std::string bytes = readBytes(place.file("host.db"));
       constexpr std::size_t writeVersion = 18;
       bytes[writeVersion] = 3;  // of a format that this engine may only read
       writeBytes(place.file("host.db"), bytes);
     },
     "readonly"},
    {"database in a folder that takes no files", "FS.DBName", "im Verzeichnis",
     [](Place& place) { place.block("host.db"); }},
    {"database server not reached", "FS.ServerIP", "FS.ServerPort", onServer(value("FS.ServerPort", "1")),
     "Connection refused"},
    {"database server's certificate not trusted", "FS.ServerTLS", "set FS.ServerCA",
     onServer(value("FS.ServerTLS", "verify-full"))},
    {"TLS of no known kind", "FS.ServerTLS", "set FS.ServerTLS", onServer(value("FS.ServerTLS", "verify_full"))},
    {"wrong system user", "FS.SysUser", "set FS.SysPass", onServer(value("FS.SysPass", "geheim99"))},
    {"wrong database", "FS.DBName", "set FS.DBName", onServer(value("FS.DBName", "keine")),
     "database \"keine\" does not exist"},
    {"wrong database user", "FS.DBUser", "set FS.DBPass", onServer(value("FS.DBPass", "geheim99")), "user \"argo\""},
    {"database server that only reads", "FS.ServerIP", "set FS.ServerIP", onServer([](Place& place) {
       place.onDatabase("alter database " + place.database() + " set default_transaction_read_only = on");
     })},
    {"no right to add", "FS.DBUser", "grant insert, update on bearbeitung to \"argo\"",
     onServer([](Place& place) { place.onDatabase("revoke insert on bearbeitung from argo"); })},
    {"no right to read", "FS.DBUser", "grant select on fahrerkarte to \"argo\"",
     onServer([](Place& place) { place.onDatabase("revoke select on fahrerkarte from argo"); })},
    {"too few columns on the server", "FS.DBName", "Stand der Fachanwendung",
     onServer([](Place& place) { place.onDatabase("alter table personalien drop column fsnr"); })},
    {"certificate file gone", "ZEVIS.GATEWAYCert", "set ZEVIS.GATEWAYCert", value("ZEVIS.GATEWAYCert", "/gone.pem")},
    {"key file without a key", "ZEVIS.GATEWAYPkey", "set ZEVIS.GATEWAYPkey",
     [](Place& place) { place.set("ZEVIS.GATEWAYPkey", place.around.client.certificate); }},
    {"key of another certificate", "ZEVIS.GATEWAYPkey", "set ZEVIS.GATEWAYPkey",
     [](Place& place) { place.set("ZEVIS.GATEWAYPkey", place.around.stranger.key); }},
    {"wrong pass phrase", "ZEVIS.GATEWAYCertPass", "set ZEVIS.GATEWAYCertPass (fragt",
     clientWith(&Neighbourhood::locked, "geheim99")},
    {"certificate expired", "ZEVIS.GATEWAYCert", "ausstellenden Stelle", clientWith(&Neighbourhood::expired)},
    {"certificate expires soon", "ZEVIS.GATEWAYCert", "ausstellenden Stelle", clientWith(&Neighbourhood::shortLived)},
    {"certificate of a stranger", "ZEVIS.GATEWAYCert", "set ZEVIS.GATEWAYCert", clientWith(&Neighbourhood::stranger)},
    {"gateway as an address", "ZEVIS.ZEVISServer", "ohne https://", value("ZEVIS.ZEVISServer", "https://localhost/")},
    {"gateway of no name", "ZEVIS.ZEVISServer", "set ZEVIS.ZEVISServer", value("ZEVIS.ZEVISServer", "kba.invalid")},
    {"gateway not there", "ZEVIS.ZEVISPort", "set ZEVIS.ZEVISPort", value("ZEVIS.ZEVISPort", "1")},
    {"secure proxy not there", "ZEVIS.SecureProxy", "sichere Leitung",
     [](Place& place) {
       place.set("ZEVIS.GATEWAY", "2");
       place.set("ZEVIS.SecureProxy", "127.0.0.1:1");
     }},
    {"gateway untrusted", "ZEVIS.ZEVISServer", "update-ca-certificates", gatewayThatIs("untrusted")},
    {"gateway of another name", "ZEVIS.ZEVISServer", "subjectAltName", gatewayThatIs("wrong name")},
    {"gateway expired", "ZEVIS.ZEVISServer", "Betreiber", gatewayThatIs("expired")},
    {"gateway without TLS", "ZEVIS.GATEWAY", "Port für TLS", gatewayThatIs("plain")},
    {"gateway closes", "ZEVIS.ZEVISPort", "ob es läuft", gatewayThatIs("closing")},
    {"login at the wrong path", "ZEVIS.ZEVISAuthURI", "set ZEVIS.ZEVISAuthURI",
     value("ZEVIS.ZEVISAuthURI", "/anfrage")},
    {"wrong account", "ZKR.ZEVISPass", "set ZKR.ZEVISUserName", value("ZKR.ZEVISPass", "geheim99")},
    {"password must change", "ZKR.ZEVISPass", "set ZKR.AllowPassChange 1", value("ZKR.ZEVISPass", "geheim05")},
    {"class of the host missing", "ZKR.ZKRNeu", "useGatewayObjects",
     [](Place& place) { place.classes.missing = {"TSW.Schnittstellen.KBA.ZKR.ARGO2006Mitteilung"}; }},
    {"class of the host broken", "ZKR.ZKRNeu", "reparieren",
     [](Place& place) { place.classes.broken = {"TSW.Schnittstellen.KBA.ZKR.ARGO2006Anfrage"}; }},
};

host::Findings notGood(host::Findings findings) {
  std::erase_if(findings, [](const Finding& each) { return each.level == Finding::Level::good; });
  return findings;
}

Neighbourhood& neighbourhood() {
  static Neighbourhood shared;
  return shared;
}

TEST(Doctor, FindsNothingInASoundInstallation) {
  for (const bool server : {false, true}) {
    Place place(neighbourhood());
    if (server) place.moveToServer();
    for (const Finding& finding : notGood(place.examine())) ADD_FAILURE() << finding.text;
  }
}

TEST(Doctor, NamesEachFaultWithItsSettingAndAMend) {
  std::map<std::string, std::string> sentences;
  for (const Seed& seed : seeds) {
    SCOPED_TRACE(seed.fault);
    Place place(neighbourhood());
    seed.sow(place);
    const host::Findings found = notGood(place.examine());
    std::string all;
    for (const Finding& each : found) all += each.setting + ": " + each.text + " -> " + each.mend + "\n";
    ASSERT_EQ(found.size(), 1U) << all;
    EXPECT_EQ(found[0].level, Finding::Level::fault);
    EXPECT_EQ(found[0].setting, seed.setting) << all;
    EXPECT_THAT(found[0].mend, HasSubstr(seed.mend));
    EXPECT_THAT(found[0].text, HasSubstr(seed.reason));
    EXPECT_THAT(all, Not(HasSubstr("geheim")));
    // Ports differ between gateways of different states; the sentences have to differ in more.
    std::string text = found[0].text;
    for (const auto& [name, port] : neighbourhood().ports) {
      if (const auto at = text.find(port); at != std::string::npos) text.erase(at, port.size());
    }
    EXPECT_TRUE(sentences.emplace(text, seed.fault).second) << "as for " << sentences[text] << ": " << text;
  }
}

}  // namespace
}  // namespace kartix::test
