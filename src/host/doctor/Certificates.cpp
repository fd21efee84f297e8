#include "host/doctor/Certificates.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

#include "common/Paths.h"

namespace kartix::host {
namespace {

constexpr std::uintmax_t largestFile = 1024UL * 1024;
constexpr int daysOfWarning = 30;
const Area area("Clientzertifikat");

constexpr const char* certificateSetting = "ZEVIS.GATEWAYCert";
constexpr const char* keySetting = "ZEVIS.GATEWAYPkey";
constexpr const char* phraseSetting = "ZEVIS.GATEWAYCertPass";

struct Release {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

std::optional<std::string> readSmallFile(const std::string& name) {
  const std::filesystem::path file = pathOf(name);
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error) || std::filesystem::file_size(file, error) > largestFile) {
    return std::nullopt;
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

Held<BIO> memory(const std::string& bytes) {
  return Held<BIO>(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
}

int givePhrase(char* buffer, int size, int, void* data) {
  const auto& phrase = *static_cast<const std::string*>(data);
  if (size < 0 || phrase.size() > static_cast<std::size_t>(size)) return -1;
  std::copy(phrase.begin(), phrase.end(), buffer);
  return static_cast<int>(phrase.size());
}

bool holdsKey(const std::string& pem) { return pem.find("PRIVATE KEY-----") != std::string::npos; }

std::string dateText(const ASN1_TIME* time) {
  std::tm parts{};
  if (ASN1_TIME_to_tm(time, &parts) != 1) return "?";
  constexpr int firstYear = 1900;
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%02d.%02d.%04d", parts.tm_mday, parts.tm_mon + 1,
                parts.tm_year + firstYear);
  return text.data();
}

std::string setFile(const char* setting) { return std::string("kartix settings set ") + setting + " DATEI"; }

Finding unreadable(const char* setting, const std::string& what, const std::string& file) {
  std::error_code error;
  if (!std::filesystem::exists(pathOf(file), error)) {
    return area.fault(setting, what + "fehlt: " + file, setFile(setting));
  }
  return area.fault(setting, what + "nicht lesbar: " + file,
                    "als Eigentümer der Datei chmod u+r " + asArgument(file) + ", oder " + setFile(setting));
}

Finding checkDates(const X509* certificate) {
  const ASN1_TIME* const begin = X509_get0_notBefore(certificate);
  const ASN1_TIME* const end = X509_get0_notAfter(certificate);
  const std::string renewed = "bei der ausstellenden Stelle ein neues beantragen; dann " +
                              setFile(certificateSetting) + " und " + setFile(keySetting);
  if (X509_cmp_current_time(begin) > 0) {
    return area.fault(certificateSetting, "gilt erst ab " + dateText(begin),
                      "Uhr dieses Rechners prüfen, sonst abwarten");
  }
  if (X509_cmp_current_time(end) < 0) {
    return area.fault(certificateSetting, "abgelaufen seit " + dateText(end), renewed);
  }
  int days = 0;
  int seconds = 0;
  ASN1_TIME_diff(&days, &seconds, nullptr, end);
  if (days < daysOfWarning) {
    return area.fault(certificateSetting,
                      "läuft am " + dateText(end) + " ab (Tage bis dahin: " + std::to_string(days) + ")", renewed);
  }
  return area.good("gültig bis " + dateText(end));
}

}  // namespace

Findings checkCertificate(const std::string& certificateFile, const std::string& keyFile, const std::string& phrase) {
  const auto certificateText = readSmallFile(certificateFile);
  const auto keyText = readSmallFile(keyFile);
  Findings findings;
  if (!certificateText) findings.push_back(unreadable(certificateSetting, "", certificateFile));
  if (!keyText) findings.push_back(unreadable(keySetting, "Schlüssel ", keyFile));
  if (!findings.empty()) return findings;

  const Held<X509> certificate(PEM_read_bio_X509(memory(*certificateText).get(), nullptr, nullptr, nullptr));
  std::string password = phrase;
  const Held<EVP_PKEY> key(PEM_read_bio_PrivateKey(memory(*keyText).get(), nullptr, givePhrase, &password));
  if (!certificate) {
    findings.push_back(area.fault(certificateSetting, "keine PEM-Datei mit einem Zertifikat: " + certificateFile,
                                  setFile(certificateSetting)));
  }
  if (!key && !holdsKey(*keyText)) {
    findings.push_back(
        area.fault(keySetting, "keine PEM-Datei mit einem Schlüssel: " + keyFile, setFile(keySetting)));
  } else if (!key) {
    findings.push_back(
        area.fault(phraseSetting, "Passwort des Schlüssels ist falsch: " + keyFile,
                   std::string("kartix settings set ") + phraseSetting + " (fragt nach dem Passwort)"));
  } else if (certificate && X509_check_private_key(certificate.get(), key.get()) != 1) {
    findings.push_back(area.fault(keySetting, "Schlüssel und Zertifikat gehören nicht zusammen: " + keyFile,
                                  setFile(keySetting) + ", mit dem Schlüssel zu " + certificateFile));
  }
  if (findings.empty()) findings.push_back(checkDates(certificate.get()));
  ERR_clear_error();
  return findings;
}

}  // namespace kartix::host
