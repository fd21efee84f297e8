#include "host/Certificates.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

namespace kartix::host {
namespace {

constexpr std::uintmax_t largestFile = 1024UL * 1024;
constexpr int daysOfWarning = 30;
constexpr const char* area = "certificate";

struct Release {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

Finding fault(std::string text, std::string mend) {
  return {Finding::Level::fault, area, std::move(text), std::move(mend)};
}

std::optional<std::string> readSmallFile(const std::string& file) {
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

std::string timeText(const ASN1_TIME* time) {
  const Held<BIO> out(BIO_new(BIO_s_mem()));
  ASN1_TIME_print(out.get(), time);
  char* text = nullptr;
  const long size = BIO_get_mem_data(out.get(), &text);
  return {text, static_cast<std::size_t>(size)};
}

Finding checkDates(const X509* certificate) {
  const ASN1_TIME* const begin = X509_get0_notBefore(certificate);
  const ASN1_TIME* const end = X509_get0_notAfter(certificate);
  if (X509_cmp_current_time(begin) > 0) {
    return fault("is not in force before " + timeText(begin), "check the clock, or wait until then");
  }
  if (X509_cmp_current_time(end) < 0) {
    return fault("expired on " + timeText(end), "ask the authority for a new certificate");
  }
  int days = 0;
  int seconds = 0;
  ASN1_TIME_diff(&days, &seconds, nullptr, end);
  if (days < daysOfWarning) {
    return {Finding::Level::note, area, "expires on " + timeText(end), "ask the authority for a new certificate"};
  }
  return {Finding::Level::good, area, "in force until " + timeText(end), {}};
}

}  // namespace

Findings checkCertificate(const std::string& certificateFile, const std::string& keyFile, const std::string& phrase) {
  Findings findings;
  const auto certificateText = readSmallFile(certificateFile);
  const auto keyText = readSmallFile(keyFile);
  if (!certificateText) {
    findings.push_back(fault("cannot be read: " + certificateFile, "set ZEVIS.GATEWAYCert to a readable PEM file"));
  }
  if (!keyText)
    findings.push_back(fault("key cannot be read: " + keyFile, "set ZEVIS.GATEWAYPkey to a readable PEM file"));
  if (!certificateText || !keyText) return findings;

  const Held<X509> certificate(PEM_read_bio_X509(memory(*certificateText).get(), nullptr, nullptr, nullptr));
  std::string password = phrase;
  const Held<EVP_PKEY> key(PEM_read_bio_PrivateKey(memory(*keyText).get(), nullptr, givePhrase, &password));
  if (!certificate) {
    findings.push_back(fault("holds no certificate: " + certificateFile, "set ZEVIS.GATEWAYCert to a PEM file"));
  } else {
    findings.push_back(checkDates(certificate.get()));
  }
  if (!key) {
    findings.push_back(fault("key cannot be opened: " + keyFile,
                             "check the file, and its pass phrase: kartix settings set ZEVIS.GATEWAYCertPass"));
  } else if (certificate && X509_check_private_key(certificate.get(), key.get()) != 1) {
    findings.push_back(fault("and key do not belong together",
                             "set ZEVIS.GATEWAYCert and ZEVIS.GATEWAYPkey to the two files of one pair"));
  }
  ERR_clear_error();
  return findings;
}

}  // namespace kartix::host
