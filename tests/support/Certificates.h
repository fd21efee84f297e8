#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <filesystem>
#include <memory>
#include <string>

namespace kartix::test {

struct PemFiles {
  std::string certificate;
  std::string key;
};

struct CertificateWishes {
  /// Names that the certificate is for, as X.509 writes them.
  std::string names = "DNS:localhost,IP:127.0.0.1";
  int validDays = 30;       ///< from yesterday; negative for one that has expired
  std::string phrase = {};  ///< of the key file; empty for a key in the clear
};

/// An authority made at run time that issues certificates for servers and clients as PEM files.
class TestAuthority {
 public:
  explicit TestAuthority(const std::filesystem::path& directory);

  /// Certificate of the authority itself.
  std::string caFile() const { return (directory_ / "ca.pem").string(); }
  /// Writes `name`.pem and `name`.key into the directory.
  PemFiles issue(const std::string& name, const CertificateWishes& wishes = {}) const;

 private:
  std::filesystem::path directory_;
  std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
  std::unique_ptr<X509, decltype(&X509_free)> certificate_;
};

}  // namespace kartix::test
