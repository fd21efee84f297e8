#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kartix::platform {
class ProfileFiles;
class Registry;
}  // namespace kartix::platform

namespace kartix {

class Global;
class Reporting;
class Trace;

/// Registry key of the product; its sub-keys are the sections. Ends in "\".
inline constexpr std::string_view productKey = R"(Software\Tessel\ARGO KBA ONLINE\)";
/// Registry key of the host's value `KODSImageDir`.
inline constexpr std::string_view imageRootKey = R"(Software\Tessel\ARGO Anwendungen\Version 9\KXFS\FOTOFS\)";

/// Longest value that is read of a setting, in characters.
inline constexpr std::size_t longestSetting = 1024;

/// The settings of the installation: first from the registry, and where that is empty from the
/// ini file that `InfoDatei` names. A setting that is found nowhere is empty. They are read by `init`, or by
/// `readOnce` when that comes first, and stay until the next `init`.
class Konfiguration {
 public:
  Konfiguration(platform::Registry& registry, platform::ProfileFiles& files, Trace& trace, Global& global,
                Reporting& reporting);

  /// Reads every setting. Never fails; a missing client certificate or key is reported and reading goes on. A path in
  /// the notation of another system is traced.
  void init();
  /// Reads every setting unless that has been done. The clerk is told nothing: nobody has begun to work.
  void readOnce();

  /// Value of one setting, trimmed. `FromIni` tells whether it came from the ini file (also when it is empty);
  /// `secret` values are unscrambled and masked in the trace.
  std::string parameter(std::string_view Sektion, std::string_view Schluessel, bool& FromIni, bool secret);

  /// Value of an ini file, or with an empty `Datei` of registry key `Sektion`; empty when missing.
  std::string GetIni(std::string_view Datei, std::string_view Sektion, std::string_view Schluessel);

  /// Text of a registry value below the current user's root: strings as they are, numbers in decimal, anything else
  /// and what is longer than 1024 bytes empty.
  std::string RegReadString(std::string_view key, std::string_view name);
  /// True when the value was written.
  bool RegWriteString(std::string_view key, std::string_view name, std::string_view value);

  /// True when a value of the ini file comes back just as it is written.
  bool iniKeeps(std::string_view value) const;

  /// Writes a value of the ini file `InfoDatei`, section `SektionKennung`. True when it was written.
  bool writeIni(std::string_view Schluessel, std::string_view value);

  /// True when a new gateway password comes back just as it is stored. The ini file's rules hold wherever the
  /// password is kept: settings move from one place to the other.
  bool keepsZEVISPass(std::string_view newPass) const;

  /// Stores a new gateway password, scrambled, where the old one came from; one that would not come back as it is
  /// leaves the old one there. A failure is traced only; false then.
  bool SaveZEVISPass(std::string_view newPass);

  /// Works out the image path (without extension) of a person and sets `ImageDir`; False when the installation names
  /// no image directory.
  bool GetImageDir(std::string_view personennummer);

  std::string InfoDatei;

  std::string ServerIP;
  std::string ServerPort;
  std::string ServerTLS;  ///< how the connection to the server is secured. Reading it leaves nothing in the trace
  std::string ServerCA;   ///< path of the certificates trusted there; untraced too
  std::string SysUser;
  std::string SysPass;
  std::string DBName;
  std::string DBUser;
  std::string DBPass;

  bool ZKRNeu = false;
  bool Testsystem = false;
  std::string SektionKennung;
  std::string ZEVISUserName;
  std::string ZEVISPass;
  bool ZEVISPassFromIni = false;
  bool AllowPassChange = false;

  std::string ZEVISAuthURI;
  std::string ZEVISServer;
  std::string ZEVISPort;
  std::int16_t GATEWAY = 0;
  std::string GATEWAYCert;
  std::string GATEWAYPkey;
  std::string GATEWAYCertPass;

  std::string KENZA;
  std::string BestellURI;
  std::string AnfrageURI;
  std::string MitteilungsURI;
  std::string ZPPER;
  std::string BehoerdeVorderseite;
  std::string BehoerdeRueckseite;

  std::string DTDHost1;     ///< host of the document types of the test gateway
  std::string DTDHost2;     ///< host of the document types otherwise
  std::string SecureProxy;  ///< "host:port"

  std::string Bestellbuch;  ///< path of the order book; empty for none. Reading it leaves nothing in the trace

  std::int16_t CookieSlot = 0;  ///< 0 to 4
  std::string ImageDir;

 private:
  void readAll();
  void tracePaths();
  std::string read(std::string_view section, std::string_view name);
  /// The value, or what counts in place of none.
  std::string readOr(std::string_view section, std::string_view name);
  std::string readSecret(std::string_view section, std::string_view name);
  std::string readUntraced(std::string_view section, std::string_view name);
  void readDatabase();
  void readSwitches();
  void readGateway();
  void readRegister();

  platform::Registry& registry_;
  platform::ProfileFiles& files_;
  Trace& trace_;
  Global& global_;
  Reporting& reporting_;
  bool read_ = false;
  bool silent_ = false;
};

}  // namespace kartix
