#include <string>

#include "common/CodePage.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "host/Installation.h"
#include "host/doctor/Certificates.h"
#include "host/doctor/Doctor.h"
#include "platform/HttpLibrary.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix::host {
namespace {

namespace http_error = platform::http_error;
using platform::TlsFault;

const Area area("Gateway");

constexpr std::int16_t throughProxy = 2;

/// The configured gateway and what is asked of it.
class Line {
 public:
  Line(platform::HttpLibrary& library, const Konfiguration& settings)
      : library_(library), settings_(settings), request_(library.TESSELHTTPCreate()) {}

  std::string address() const { return settings_.ZEVISServer + ":" + settings_.ZEVISPort; }
  /// False when no request can be made.
  bool prepare(const char* method, std::string_view path, bool encrypted) {
    constexpr int methodAccepted = 12;
    if (!request_ || request_->TESSELHTTPsetServer(settings_.ZEVISServer, settings_.ZEVISPort) != 0) return false;
    if (request_->TESSELHTTPsetMethod(method) != methodAccepted || request_->TESSELHTTPsetPath(path) != 0)
      return false;
    if (encrypted) {
      request_->TESSELHTTPsetHttpS();
      request_->TESSELHTTPsetPEM(settings_.GATEWAYCert, settings_.GATEWAYPkey, settings_.GATEWAYCertPass);
    }
    if (settings_.GATEWAY == throughProxy) request_->TESSELHTTPsetSecureProxy(settings_.SecureProxy);
    return true;
  }
  platform::HttpRequest& request() { return *request_; }
  std::string textOf(std::int32_t code) const { return text::trim(library_.TESSELHTTPgetErrorDesc(code)); }

 private:
  platform::HttpLibrary& library_;
  const Konfiguration& settings_;
  std::unique_ptr<platform::HttpRequest> request_;
};

bool answersInPlain(platform::HttpLibrary& library, const Konfiguration& settings) {
  Line line(library, settings);
  return line.prepare("GET", "/", false) && line.request().TESSELHTTPsend() > 0;
}

Finding withoutTls(const std::string& address) {
  return area.fault(
      "ZEVIS.GATEWAY", address + " antwortet ohne TLS, ZEVIS.GATEWAY verlangt es",
      "kartix settings set ZEVIS.ZEVISPort mit dem Port für TLS; soll wirklich unverschlüsselt gesendet "
      "werden, kartix settings set ZEVIS.GATEWAY 0");
}

Finding tlsFinding(TlsFault fault, const std::string& address) {
  const std::string server = "ZEVIS.ZEVISServer";
  switch (fault) {
    case TlsFault::untrusted:
      return area.fault(
          server, "Dem Zertifikat von " + address + " vertraut dieser Rechner nicht",
          "das Zertifikat der ausstellenden Stelle in den Zertifikatspeicher des Systems aufnehmen (Debian: "
          "als .crt nach /usr/local/share/ca-certificates, dann update-ca-certificates)");
    case TlsFault::wrongName:
      return area.fault(
          server, "Das Zertifikat von " + address + " ist für einen anderen Namen ausgestellt",
          "kartix settings set ZEVIS.ZEVISServer mit dem Namen im Zertifikat; ihn zeigt: openssl s_client "
          "-connect " +
              address + " </dev/null | openssl x509 -noout -subject -ext subjectAltName");
    case TlsFault::expired:
      return area.fault(server, "Das Zertifikat von " + address + " ist abgelaufen",
                        "vom Betreiber des Gateways erneuern lassen; vorher die Uhr dieses Rechners prüfen (date)");
    case TlsFault::notYetValid:
      return area.fault(server, "Das Zertifikat von " + address + " gilt noch nicht",
                        "Uhr dieses Rechners prüfen (date)");
    case TlsFault::noTls:
      return withoutTls(address);
    default:
      return area.fault(
          "ZEVIS.ZEVISPort",
          address + " kommt mit diesem Rechner zu keiner verschlüsselten Verbindung (TLS 1.2 oder neuer)",
          "kartix settings set ZEVIS.ZEVISPort mit dem Port für TLS, sonst den Betreiber des Gateways fragen");
  }
}

Finding closedFinding(const Konfiguration& settings, const std::string& address) {
  const std::string plain =
      settings.GATEWAY > 0 ? "" : "; verlangt es TLS: kartix settings set ZEVIS.GATEWAY 1, dazu ein Clientzertifikat";
  return area.fault(
      "ZEVIS.ZEVISPort", address + " schließt die Verbindung, ohne zu antworten",
      "den Betreiber des Gateways fragen, ob es läuft und diesen Rechner zulässt; ZEVIS.ZEVISPort prüfen" + plain);
}

Finding notReached(std::int32_t code, const Konfiguration& settings, const std::string& address,
                   const std::string& words) {
  const std::string text = address + ": " + words + " (" + std::to_string(code) + ")";
  switch (code) {
    case http_error::nameNotFound:
      return area.fault("ZEVIS.ZEVISServer", text,
                        "kartix settings set ZEVIS.ZEVISServer NAME, oder den Namensdienst richten");
    case http_error::connectionRefused:
      return area.fault("ZEVIS.ZEVISPort", text,
                        "kartix settings set ZEVIS.ZEVISPort PORT; stimmt er, läuft dort nichts");
    case http_error::secureProxyNotReachable:
      return area.fault("ZEVIS.SecureProxy", settings.SecureProxy + ": " + words + " (" + std::to_string(code) + ")",
                        "die sichere Leitung starten, oder kartix settings set ZEVIS.SecureProxy RECHNER:PORT");
    case http_error::clientCertificateUnusable:
      return area.fault(
          "ZEVIS.GATEWAYCert", address + " lehnt das Clientzertifikat ab (" + std::to_string(code) + ")",
          "kartix settings set ZEVIS.GATEWAYCert und ZEVIS.GATEWAYPkey mit dem Paar, das die Stelle des Gateways "
          "ausgestellt hat");
    case http_error::timedOut:
      return area.fault("ZEVIS.ZEVISServer", text,
                        "ZEVIS.ZEVISServer und ZEVIS.ZEVISPort prüfen, sonst den Weg dorthin (Firewall)");
    default:
      return area.fault("ZEVIS.ZEVISPort", text, "ZEVIS.ZEVISPort prüfen: dort antwortet kein Gateway");
  }
}

Finding failureOf(std::int32_t code, TlsFault fault, platform::HttpLibrary& library, const Konfiguration& settings,
                  const Line& line) {
  const bool silent = fault == TlsFault::closed || code == http_error::timedOut;
  if (settings.GATEWAY > 0 && silent && answersInPlain(library, settings)) return withoutTls(line.address());
  if (fault == TlsFault::closed || (fault == TlsFault::none && code == http_error::answerBrokenOff)) {
    return closedFinding(settings, line.address());
  }
  if (fault != TlsFault::none) return tlsFinding(fault, line.address());
  return notReached(code, settings, line.address(), line.textOf(code));
}

/// What the gateway says to a login.
struct LoginAnswer {
  std::int32_t status = 0;
  std::string words;  ///< of what came in place of an answer
  std::string kind;
  std::int32_t code = 0;
  std::string text;
};

/// Logs in as the component does, but keeps no session.
LoginAnswer logIn(Runtime& runtime) {
  const Konfiguration& settings = runtime.konfiguration;
  KBAInterface kba(runtime);
  Line line(runtime.machine.http, settings);
  if (!kba.InitXML() || !line.prepare("POST", settings.ZEVISAuthURI, settings.GATEWAY > 0)) return {};
  const auto message = kba.createDocument();
  KBAInterface::NewXmlDocument(*message, "ZEVIS-LOGIN", "");
  message->appendElement(message->documentElement(), "KENN", settings.ZEVISUserName);
  message->appendElement(message->documentElement(), "PASS", settings.ZEVISPass);
  line.request().TESSELHTTPsetContentType("text/xml");
  line.request().TESSELHTTPsetBody(codepage::toIsoXml(KBAInterface::SetIsoDeclaration(message->xml())));
  LoginAnswer answer;
  answer.status = line.request().TESSELHTTPsend();
  answer.words = answer.status > 0 ? "HTTP " + std::to_string(answer.status) : line.textOf(answer.status);
  const auto document = kba.createDocument();
  document->loadXML(runtime.machine.xml.decode(line.request().TESSELHTTPgetResponseBody()).value_or(""));
  answer.kind = rootName(*document);
  answer.code = leadingInt32(firstText(*document, "//RETC"));
  answer.text = firstText(*document, "//RETT");
  return answer;
}

Finding checkLogin(Runtime& runtime) {
  constexpr std::int32_t httpOk = 200;
  constexpr std::int32_t expiresSoon = 500;
  const Konfiguration& settings = runtime.konfiguration;
  const LoginAnswer answer = logIn(runtime);
  if (answer.status != httpOk || answer.kind != "ZEVIS-HINWEIS") {
    const std::string why = answer.status == httpOk ? "andere Antwort" : answer.words;
    return area.fault(
        "ZEVIS.ZEVISAuthURI",
        "Unter ZEVIS.ZEVISAuthURI antwortet keine Anmeldung: " + settings.ZEVISAuthURI + " (" + why + ")",
        "kartix settings set ZEVIS.ZEVISAuthURI /PFAD; stimmt er, den Betreiber des Gateways fragen");
  }
  const std::string section = settings.SektionKennung;
  const std::string said = " (" + std::to_string(answer.code) + ": " + answer.text + ")";
  if (login_result::changeDemanded(answer.code)) {
    return area.fault(
        section + ".ZEVISPass", "Das Passwort des Kontos " + settings.ZEVISUserName + " muss geändert werden" + said,
        "beim nächsten Vorgang ändern; erlaubt wird das mit: kartix settings set " + section + ".AllowPassChange 1");
  }
  if (answer.code > login_result::lastSuccess) {
    return area.fault(section + ".ZEVISPass", "Das Gateway lehnt das Konto " + settings.ZEVISUserName + " ab" + said,
                      "kartix settings set " + section + ".ZEVISUserName BENUTZER; kartix settings set " + section +
                          ".ZEVISPass (fragt nach dem Passwort)");
  }
  if (answer.code == expiresSoon) {
    return area.note(
        section + ".ZEVISPass", "Das Passwort des Kontos " + settings.ZEVISUserName + " läuft bald ab" + said,
        "rechtzeitig ändern; erlaubt wird das mit: kartix settings set " + section + ".AllowPassChange 1");
  }
  return area.good("nimmt das Konto " + settings.ZEVISUserName + " an" + said);
}

}  // namespace

Findings checkClientCertificate(Installation& installation, const Findings& known) {
  const Konfiguration& settings = installation.settings();
  if (settings.GATEWAY <= 0 || hasFault(known, "ZEVIS.GATEWAY")) return {};
  return checkCertificate(settings.GATEWAYCert, settings.GATEWAYPkey, settings.GATEWAYCertPass);
}

Findings checkGateway(Installation& installation, const Findings& known, bool login) {
  const Konfiguration& settings = installation.settings();
  for (const char* needed : {"ZEVIS.ZEVISServer", "ZEVIS.ZEVISPort", "ZEVIS.SecureProxy", "ZEVIS.GATEWAY"}) {
    if (isFaulty(known, needed)) return {};
  }
  platform::HttpLibrary& library = installation.runtime().machine.http;
  Line line(library, settings);
  if (!line.prepare("GET", "/", settings.GATEWAY > 0)) {
    return {area.fault("ZEVIS.ZEVISServer", "Kein Name und keine Adresse eines Rechners: " + settings.ZEVISServer,
                       "kartix settings set ZEVIS.ZEVISServer NAME (ohne https:// und ohne Pfad)")};
  }
  const std::int32_t status = line.request().TESSELHTTPsend();
  if (status <= 0) {
    const TlsFault fault = line.request().tlsFault();
    const bool byCertificate =
        status == http_error::clientCertificateUnusable || fault == TlsFault::closed || fault == TlsFault::other;
    if (byCertificate && hasFault(known, "ZEVIS.GATEWAY")) return {};
    return {failureOf(status, fault, library, settings, line)};
  }
  Findings findings = {area.good(line.address() + " antwortet (HTTP " + std::to_string(status) + ")")};
  const bool account = !hasFault(known, settings.SektionKennung + ".ZEVIS") && !isFaulty(known, "ZEVIS.ZEVISAuthURI");
  if (login && account) findings.push_back(checkLogin(installation.runtime()));
  return findings;
}

}  // namespace kartix::host
