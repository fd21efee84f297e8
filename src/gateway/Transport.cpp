#include <algorithm>
#include <filesystem>
#include <fstream>

#include "common/CodePage.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "gateway/KBAInterface.h"
#include "platform/FileSystem.h"
#include "platform/HttpLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// Sizes of what is taken of an answer, in characters.
constexpr std::size_t textSize = 1000;
constexpr std::size_t bodySize = 100000;

constexpr std::uintmax_t fileSize = std::uintmax_t{64} * 1024 * 1024;

constexpr std::int32_t methodSet = 12;
constexpr std::int16_t gatewayWithSecureProxy = 2;

/// The hourglass as long as the object lives.
class Hourglass {
 public:
  explicit Hourglass(Global& global) : global_(global) { global_.WaitCursor(true); }
  ~Hourglass() { global_.WaitCursor(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  Global& global_;
};

void addTls(platform::HttpRequest& http, const Konfiguration& settings) {
  if (settings.GATEWAY > 0) {
    http.TESSELHTTPsetHttpS();
    http.TESSELHTTPsetPEM(settings.GATEWAYCert, settings.GATEWAYPkey, settings.GATEWAYCertPass);
  }
  if (settings.GATEWAY == gatewayWithSecureProxy) {
    http.TESSELHTTPsetSecureProxy(settings.SecureProxy);
  } else {
    http.TESSELHTTPclearSecureProxy();
  }
}

std::string cut(std::string_view text, std::size_t size) {
  return text::trim(text::left(text::untilNul(text), size));
}

/// The session goes with a request only when both of its cookies are known.
void addCookies(platform::HttpRequest& http, SessionCookies& cookies) {
  http.TESSELHTTPclearCookies();
  const auto [first, second] = cookies.toSend();
  if (first.empty()) return;
  http.TESSELHTTPaddCookie(SessionCookies::name(1), first);
  http.TESSELHTTPaddCookie(SessionCookies::name(2), second);
}

void keepCookies(const platform::HttpRequest& http, SessionCookies& cookies) {
  const auto set = [&](int number) {
    return cut(http.TESSELHTTPgetSetCookie(SessionCookies::name(number)), textSize);
  };
  cookies.keep({set(1), set(2)});
}

/// A message may hold large images: its text is made once, and changed where it stands.
std::string bytesOnTheWire(const platform::XmlDocument& request) {
  return codepage::toIsoXml(KBAInterface::SetIsoDeclaration(request.xml()));
}

/// A status with which a server says that it has not done what it was asked for.
bool refuses(std::int32_t status) {
  constexpr std::int32_t firstRefusal = 300;
  constexpr std::int32_t firstServerError = 500;
  return status >= firstRefusal && status < firstServerError;
}

}  // namespace

std::int32_t KBAInterface::PostXml(std::string_view path, const platform::XmlDocument& request,
                                   platform::XmlDocument& response, std::string& errorText, Effect effect) {
  const Konfiguration& settings = runtime_.konfiguration;
  platform::HttpLibrary& library = runtime_.machine.http;
  const Hourglass hourglass(runtime_.global);

  // The clerk is told nothing of this; whoever looks after the installation finds it.
  const auto unprepared = [&](std::string_view what) {
    runtime_.trace.TraceLine({"HTTP-Anfrage nicht vorbereitet: ", what}, trace_level::calls);
    return 0;
  };
  const auto http = library.TESSELHTTPCreate();
  if (!http) return unprepared("TESSELHTTPCreate");
  if (http->TESSELHTTPsetServer(settings.ZEVISServer, settings.ZEVISPort) != 0) return unprepared("Server und Port");
  if (http->TESSELHTTPsetMethod("POST") != methodSet) return unprepared("POST");
  http->TESSELHTTPsetContentType("text/xml");
  if (http->TESSELHTTPsetPath(path) != 0) return unprepared("Pfad");
  if (http->TESSELHTTPsetBody(bytesOnTheWire(request)) != 0) return unprepared("Inhalt");
  addCookies(*http, cookies_);
  addTls(*http, settings);
  if (effect == Effect::changes) http->useFreshConnection();

  const std::int32_t outcome = sendNoted(*http, effect);
  if (outcome <= 0) {
    errorText = runtime_.global.NullTrim(text::left(library.TESSELHTTPgetErrorDesc(outcome), textSize));
    return outcome;
  }
  errorText = cut(http->TESSELHTTPgetResponseDesc(textSize), textSize);
  if (errorText.empty()) errorText = "(Fehlerbeschreibung nicht verfügbar)";
  response.loadXML(cut(runtime_.machine.xml.decode(http->TESSELHTTPgetResponseBody()).value_or(""), bodySize));
  keepCookies(*http, cookies_);
  return outcome;
}

std::int32_t KBAInterface::sendNoted(platform::HttpRequest& http, Effect effect) {
  if (effect == Effect::reads) return http.TESSELHTTPsend();
  change_ = Change::incomplete;
  changeStatus_ = 0;
  // The transfer may end with an exception as well: out of memory, with the request on its way.
  struct Note {
    KBAInterface& kba;
    const platform::HttpRequest& request;
    ~Note() {
      if (request.requestSentCompletely())
        kba.change_ = refuses(kba.changeStatus_) ? Change::answered : Change::unanswered;
    }
  } const note{*this, http};
  changeStatus_ = http.TESSELHTTPsend();
  return changeStatus_;
}

bool KBAInterface::CheckHttpStatus(std::int32_t status, std::string_view errorText) {
  constexpr std::int32_t ok = 200;
  constexpr std::int32_t firstStatus = 100;
  constexpr std::int32_t lastStatus = 999;
  if (status == ok) return true;
  if (status < 0) {
    runtime_.reporting.ShowCommError("COM", status, errorText);
  } else if (status >= firstStatus && status <= lastStatus) {
    runtime_.reporting.ShowCommError("HTTP", status, errorText);
  }
  return false;
}

std::string KBAInterface::FileToBase64(const std::string& path) {
  const auto found = runtime_.machine.files.findFile(path);
  if (!found) return {};
  const std::filesystem::path name = pathOf(*found);
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(name, failure);
  if (failure || size > fileSize) return {};
  std::ifstream file(name, std::ios::binary);
  std::string text;
  text.reserve(static_cast<std::size_t>((size + 2) / 3 * 4));
  // Piece by piece, in whole groups of three bytes: the file as a whole need not be in memory beside its text.
  constexpr std::uintmax_t piece = std::uintmax_t{48} * 1024;
  std::string bytes;
  for (std::uintmax_t left = size; left > 0; left -= bytes.size()) {
    bytes.resize(static_cast<std::size_t>(std::min(left, piece)));
    if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) return {};
    text += runtime_.machine.http.TESSELHTTPbase64encode(bytes);
  }
  return text;
}

}  // namespace kartix
