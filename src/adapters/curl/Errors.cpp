#include "adapters/curl/Errors.h"

#include <openssl/ssl.h>
#include <openssl/tls1.h>
#include <openssl/x509_vfy.h>

namespace kartix::adapters {
namespace {

namespace http_error = platform::http_error;

/// Under TLS 1.3 a server refuses the client's certificate only after the handshake; the alert then is the one sign.
bool refusesClientCertificate(int alert) {
  switch (alert) {
    case SSL3_AD_BAD_CERTIFICATE:
    case SSL3_AD_UNSUPPORTED_CERTIFICATE:
    case SSL3_AD_CERTIFICATE_REVOKED:
    case SSL3_AD_CERTIFICATE_EXPIRED:
    case SSL3_AD_CERTIFICATE_UNKNOWN:
    case TLS1_AD_UNKNOWN_CA:
    case TLS1_AD_ACCESS_DENIED:
    case TLS13_AD_CERTIFICATE_REQUIRED:
      return true;
    default:
      return false;
  }
}

std::int32_t codeOf(CURLcode result) {
  switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return http_error::nameNotFound;
    case CURLE_COULDNT_CONNECT:
      return http_error::connectionRefused;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY:
      return http_error::secureProxyNotReachable;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_USE_SSL_FAILED:
      return http_error::tlsFailed;
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CLIENTCERT:
      return http_error::clientCertificateUnusable;
    case CURLE_OPERATION_TIMEDOUT:
      return http_error::timedOut;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_FAIL_REWIND:
      return http_error::answerBrokenOff;
    case CURLE_FILESIZE_EXCEEDED:
      return http_error::answerTooLarge;
    default:
      return http_error::unknown;
  }
}

/// True for what goes wrong on the way to a server, before TLS and HTTP.
bool isReachingFailure(std::int32_t code) {
  return code == http_error::nameNotFound || code == http_error::connectionRefused ||
         code == http_error::answerBrokenOff || code == http_error::timedOut;
}

}  // namespace

std::int32_t errorOf(const Failure& failure, const Exchange& exchange) {
  if (exchange.answer.broken()) return http_error::answerBrokenOff;
  if (exchange.answer.tooLarge()) return http_error::answerTooLarge;
  if (exchange.stalled()) return http_error::timedOut;
  if (refusesClientCertificate(failure.tls.alert)) return http_error::clientCertificateUnusable;
  const std::int32_t code = codeOf(failure.result);
  // The alert of a server that hangs up at once may get lost.
  const bool hungUp = code == http_error::tlsFailed || code == http_error::answerBrokenOff;
  if (failure.tls.certificateMissed && hungUp && exchange.answer.empty())
    return http_error::clientCertificateUnusable;
  if (!exchange.begun()) {
    const bool atProxy = failure.throughProxy && !failure.tunnelOpen;
    return atProxy && isReachingFailure(code) ? http_error::secureProxyNotReachable : code;
  }
  if (exchange.secondSendingRefused()) return http_error::answerBrokenOff;
  // Whatever else went wrong, the answer is what is missing: a new connection that fails after the kept one broke
  // says nothing about the request that had gone out, and what the library cannot read is no answer.
  const bool final = code == http_error::timedOut || code == http_error::answerTooLarge;
  return exchange.anythingSent() && !final ? http_error::answerBrokenOff : code;
}

platform::TlsFault tlsFaultOf(const Failure& failure, const Exchange& exchange, std::int32_t code) {
  using platform::TlsFault;
  if (failure.result == CURLE_PEER_FAILED_VERIFICATION) {
    switch (failure.verification) {
      case X509_V_OK:
      case X509_V_ERR_UNSPECIFIED:  // the library compares the name by itself
      case X509_V_ERR_HOSTNAME_MISMATCH:
      case X509_V_ERR_IP_ADDRESS_MISMATCH:
        return TlsFault::wrongName;
      case X509_V_ERR_CERT_HAS_EXPIRED:
        return TlsFault::expired;
      case X509_V_ERR_CERT_NOT_YET_VALID:
        return TlsFault::notYetValid;
      default:
        return TlsFault::untrusted;
    }
  }
  const bool inHandshake = code == http_error::tlsFailed || code == http_error::answerBrokenOff;
  if (!inHandshake || exchange.begun()) return TlsFault::none;
  if (exchange.greeting() == Exchange::Greeting::foreign) return TlsFault::noTls;
  return exchange.greeting() == Exchange::Greeting::none ? TlsFault::closed : TlsFault::other;
}

std::string errorText(std::int32_t code) {
  switch (code) {
    case http_error::nameNotFound:
      return "Der Name des Servers konnte nicht aufgelöst werden.";
    case http_error::connectionRefused:
      return "Die Verbindung zum Server wurde abgelehnt.";
    case http_error::tlsFailed:
      return "Der Aufbau der verschlüsselten Verbindung oder die Prüfung des Serverzertifikats ist fehlgeschlagen.";
    case http_error::secureProxyNotReachable:
      return "Der sichere Proxy ist nicht erreichbar.";
    case http_error::timedOut:
      return "Zeitüberschreitung bei der Verbindung mit dem Server.";
    case http_error::clientCertificateUnusable:
      return "Das Client-Zertifikat oder sein privater Schlüssel ist nicht verwendbar.";
    case http_error::answerBrokenOff:
      return "Die Antwort des Servers wurde abgebrochen.";
    case http_error::answerTooLarge:
      return "Die Antwort des Servers ist zu groß.";
    default:
      return "Unbekannter Fehler bei der Übertragung.";
  }
}

}  // namespace kartix::adapters
