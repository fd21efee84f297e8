#include "adapters/curl/Request.h"

#include <openssl/ssl.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <utility>

#include "adapters/curl/Errors.h"
#include "adapters/curl/Options.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

namespace http_error = platform::http_error;

constexpr std::int32_t accepted = 0;
constexpr std::int32_t methodAccepted = 12;
constexpr std::int32_t refused = -1;

/// Between names, which may hold any other character.
constexpr char separator = '\0';

constexpr std::int32_t largestPort = 65535;

bool hasControlCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

bool isPort(std::string_view text) {
  const std::int32_t number = leadingInt32(text);
  return text::allDigits(text) && number > 0 && number <= largestPort;
}

/// Puts host and port into `url`; false when one of them is not usable.
bool setHost(CURLU* url, std::string_view host, std::string_view port) {
  if (host.empty() || hasControlCharacter(host) || !isPort(port)) return false;
  const bool bareIpv6 = !host.starts_with('[') && host.find(':') != std::string_view::npos;
  const std::string name = bareIpv6 ? "[" + std::string(host) + "]" : std::string(host);
  return curl_url_set(url, CURLUPART_HOST, name.c_str(), 0) == CURLUE_OK &&
         curl_url_set(url, CURLUPART_PORT, std::string(port).c_str(), 0) == CURLUE_OK;
}

void add(HeaderList& list, const std::string& line) {
  curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
  if (!longer) throw std::bad_alloc();
  static_cast<void>(list.release());
  list.reset(longer);
}

/// Index of the handle among the data that a TLS context carries.
int handleIndex() {
  static std::atomic<int> index = -1;
  // Tried again after a failure. Of two that are made at once one stays unused.
  if (index < 0) index = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
  return index;
}

Handle* handleOf(const SSL* tls) {
  return static_cast<Handle*>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(tls), handleIndex()));
}

void onTlsEvent(const SSL* tls, int where, int value) {
  constexpr int alertMask = 0xFF;
  if ((where & SSL_CB_READ_ALERT) != SSL_CB_READ_ALERT || (value >> 8) != SSL3_AL_FATAL) return;
  handleOf(tls)->tlsEvents.alert = value & alertMask;
}

/// Asked only when no certificate was given.
int onCertificateWanted(SSL* tls, X509**, EVP_PKEY**) {
  handleOf(tls)->tlsEvents.certificateMissed = true;
  return 0;
}

/// What a new TLS context is given besides the library's own settings.
struct TlsExtras {
  Handle* handle;
  std::string caFile;
};

CURLcode onTlsContext(CURL*, void* context, void* extras) {
  auto* const tls = static_cast<SSL_CTX*>(context);
  const auto& [handle, caFile] = *static_cast<TlsExtras*>(extras);
  if (SSL_CTX_set_ex_data(tls, handleIndex(), handle) != 1) return CURLE_OUT_OF_MEMORY;
  SSL_CTX_set_info_callback(tls, onTlsEvent);
  SSL_CTX_set_client_cert_cb(tls, onCertificateWanted);
  if (!caFile.empty() && SSL_CTX_load_verify_file(tls, caFile.c_str()) != 1) return CURLE_SSL_CACERT_BADFILE;
  return CURLE_OK;
}

}  // namespace

std::int32_t Request::TESSELHTTPsetServer(std::string_view server, std::string_view port) {
  if (!setHost(url_.get(), text::trim(server), text::trim(port))) return refused;
  server_ = text::trim(server) + separator + text::trim(port);
  return accepted;
}

std::int32_t Request::TESSELHTTPsetMethod(std::string_view method) {
  if (method != "POST" && method != "GET") return refused;
  post_ = method == "POST";
  return methodAccepted;
}

void Request::TESSELHTTPsetContentType(std::string_view type) {
  if (!hasControlCharacter(type)) contentType_ = type;
}

std::int32_t Request::TESSELHTTPsetPath(std::string_view path) {
  if (hasControlCharacter(path)) return refused;
  path_ = path.empty() ? "/" : path;
  return accepted;
}

std::int32_t Request::TESSELHTTPsetBody(std::string bytes) {
  body_ = std::move(bytes);
  return accepted;
}

void Request::TESSELHTTPaddCookie(std::string_view name, std::string_view value) {
  // A value that would end the cookie or the line cannot have come from a gateway's answer.
  if (hasControlCharacter(name) || hasControlCharacter(value) || value.find(';') != std::string_view::npos) return;
  if (!cookies_.empty()) cookies_ += "; ";
  cookies_.append(name).append("=").append(value);
}

void Request::TESSELHTTPsetPEM(std::string_view certificate, std::string_view key, std::string_view phrase) {
  certificate_ = certificate;
  key_ = key;
  phrase_ = phrase;
}

Route Request::route() const {
  return {server_ + separator + (tls_ ? "https" : "http") + separator + proxy_.value_or(""),
          certificate_ + separator + key_ + separator + phrase_};
}

HeaderList Request::requestHeaders() const {
  HeaderList headers(nullptr, curl_slist_free_all);
  add(headers, "Accept:");  // a name without a value keeps the library from sending its own
  add(headers, "Expect:");
  add(headers, contentType_.empty() ? "Content-Type:" : "Content-Type: " + contentType_);
  return headers;
}

void Request::prepareHttp(CURL* easy, curl_slist* headers) {
  if (curl_url_set(url_.get(), CURLUPART_SCHEME, tls_ ? "https" : "http", 0) != CURLUE_OK) throw std::bad_alloc();
  setOption(easy, CURLOPT_CURLU, url_.get());
  setOption(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  setOption(easy, CURLOPT_REQUEST_TARGET, path_.c_str());
  setOption(easy, CURLOPT_HTTPHEADER, headers);
  setOption(easy, CURLOPT_HTTP_CONTENT_DECODING, 0L);
  if (post_) {
    setOption(easy, CURLOPT_POST, 1L);
    setOption(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body_.size()));
    setOption(easy, CURLOPT_POSTFIELDS, body_.data());
  }
  if (!cookies_.empty()) setOption(easy, CURLOPT_COOKIE, cookies_.c_str());
  setOption(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(Answer::bodyLimit));
  setOption(easy, CURLOPT_CONNECTTIMEOUT, static_cast<long>(options_.connectSeconds));
  setOption(easy, CURLOPT_MAXAGE_CONN, static_cast<long>(KeepPromise::longestIdle.count()));
  setOption(easy, CURLOPT_MAXCONNECTS, 1L);
  setOption(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  setOption(easy, CURLOPT_NOSIGNAL, 1L);
}

void Request::prepareTls(Handle& handle) {
  CURL* const easy = handle.easy();
  setOption(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  setOption(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  setOption(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  // The authorities that the system trusts, where it keeps them in a store of its own instead of files.
  setOption(easy, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
  if (certificate_.empty()) return;
  setOption(easy, CURLOPT_SSLCERT, certificate_.c_str());
  if (!key_.empty()) setOption(easy, CURLOPT_SSLKEY, key_.c_str());
  // Also when it is empty: without a phrase OpenSSL would ask for one on the terminal.
  setOption(easy, CURLOPT_KEYPASSWD, phrase_.c_str());
}

bool Request::prepareProxy(CURL* easy, curl_slist* headers) {
  setOption(easy, CURLOPT_PROXY, "");  // empty: none, not the environment's
  if (!proxy_) return true;
  const std::string address = text::trim(*proxy_);
  const auto colon = address.rfind(':');
  if (colon == std::string::npos) return false;
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), curl_url_cleanup);
  if (!setHost(url.get(), std::string_view(address).substr(0, colon), std::string_view(address).substr(colon + 1))) {
    return false;
  }
  setOption(easy, CURLOPT_PROXY, address.c_str());
  setOption(easy, CURLOPT_PROXYTYPE, static_cast<long>(CURLPROXY_HTTP));
  setOption(easy, CURLOPT_NOPROXY, "");  // no exceptions from the environment either
  setOption(easy, CURLOPT_HTTPPROXYTUNNEL, 1L);
  setOption(easy, CURLOPT_HEADEROPT, static_cast<long>(CURLHEADER_SEPARATE));
  setOption(easy, CURLOPT_PROXYHEADER, headers);
  setOption(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  return true;
}

std::int32_t Request::TESSELHTTPsend() {
  try {
    return send();
  } catch (const std::exception&) {
    return http_error::unknown;
  }
}

std::int32_t Request::send() {
  exchange_.emplace(body_.size(), std::chrono::seconds(options_.stallSeconds));
  tlsFault_ = platform::TlsFault::none;
  std::unique_ptr<Handle> handle = pool_->take(route(), fresh_);
  const std::int32_t outcome = perform(*handle);
  if (outcome > 0) {
    pool_->giveBack(std::move(handle), exchange_->answer.promise());
  } else if (outcome == http_error::answerBrokenOff && handle->permission.reuse) {
    pool_->noteUnannouncedEnd(*handle);
  }
  return outcome;
}

std::int32_t Request::perform(Handle& handle) {
  CURL* const easy = handle.easy();
  const HeaderList headers = requestHeaders();
  HeaderList proxyHeaders(nullptr, curl_slist_free_all);
  add(proxyHeaders, "Proxy-Connection:");
  TlsExtras extras{&handle, utf8Of(options_.caFile)};

  exchange_->attach(easy);
  setOption(easy, CURLOPT_FRESH_CONNECT, handle.permission.reuse ? 0L : 1L);
  setOption(easy, CURLOPT_FORBID_REUSE, handle.permission.keep ? 0L : 1L);
  prepareHttp(easy, headers.get());
  prepareTls(handle);
  setOption(easy, CURLOPT_SSL_CTX_FUNCTION, onTlsContext);
  setOption(easy, CURLOPT_SSL_CTX_DATA, &extras);
  if (!prepareProxy(easy, proxyHeaders.get())) return http_error::secureProxyNotReachable;

  const CURLcode result = curl_easy_perform(easy);
  if (result == CURLE_OK) return exchange_->answered() ? exchange_->answer.status() : http_error::answerBrokenOff;
  long connectStatus = 0;
  curl_easy_getinfo(easy, CURLINFO_HTTP_CONNECTCODE, &connectStatus);
  long verification = 0;
  curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &verification);
  const Failure failure{result, proxy_.has_value(), connectStatus / 100 == 2, handle.tlsEvents, verification};
  const std::int32_t code = errorOf(failure, *exchange_);
  if (tls_) tlsFault_ = tlsFaultOf(failure, *exchange_, code);
  return code;
}

std::string Request::TESSELHTTPgetResponseDesc(std::size_t size) const {
  if (!exchange_) return {};
  const std::string& reason = exchange_->answer.reason();
  if (reason.size() <= size) return reason;
  std::size_t end = size;
  while (end > 0 && (static_cast<unsigned char>(reason[end]) & 0xC0) == 0x80) --end;  // not within a character
  return reason.substr(0, end);
}

const std::string& Request::TESSELHTTPgetResponseBody() const {
  static const std::string nothing;
  return exchange_ ? exchange_->answer.body() : nothing;
}

std::string Request::TESSELHTTPgetSetCookie(std::string_view name) const {
  return exchange_ ? exchange_->answer.cookie(std::string(name)) : std::string();
}

}  // namespace kartix::adapters
