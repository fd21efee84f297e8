#include "support/Certificates.h"

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <stdexcept>

namespace kartix::test {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

constexpr long day = 24L * 60 * 60;

void require(bool succeeded) {
  if (!succeeded) throw std::runtime_error("certificate could not be made");
}

Key makeKey() {
  Key key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  require(key != nullptr);
  return key;
}

void addExtension(X509* certificate, int kind, const std::string& value) {
  const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
      X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str()), X509_EXTENSION_free);
  require(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

Certificate makeCertificate(const std::string& name, int validDays, EVP_PKEY* key) {
  static long serial = 0;
  Certificate certificate(X509_new(), X509_free);
  require(certificate != nullptr);
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), ++serial);
  const long start = validDays < 0 ? 2L * validDays * day : -day;
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), start);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validDays * day);
  X509_set_pubkey(certificate.get(), key);
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                             reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
  return certificate;
}

File create(const std::filesystem::path& path) {
  File file(std::fopen(path.string().c_str(), "w"), std::fclose);
  require(file != nullptr);
  return file;
}

}  // namespace

TestAuthority::TestAuthority(const std::filesystem::path& directory)
    : directory_(directory),
      key_(makeKey()),
      certificate_(makeCertificate("CA " + directory.filename().string(), 30, key_.get())) {
  X509_set_issuer_name(certificate_.get(), X509_get_subject_name(certificate_.get()));
  addExtension(certificate_.get(), NID_basic_constraints, "critical,CA:TRUE");
  require(X509_sign(certificate_.get(), key_.get(), EVP_sha256()) > 0);
  require(PEM_write_X509(create(caFile()).get(), certificate_.get()) == 1);
}

PemFiles TestAuthority::issue(const std::string& name, const CertificateWishes& wishes) const {
  const Key key = makeKey();
  const Certificate certificate = makeCertificate(name, wishes.validDays, key.get());
  X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate_.get()));
  addExtension(certificate.get(), NID_subject_alt_name, wishes.names);
  require(X509_sign(certificate.get(), key_.get(), EVP_sha256()) > 0);

  PemFiles files{(directory_ / (name + ".pem")).string(), (directory_ / (name + ".key")).string()};
  require(PEM_write_X509(create(files.certificate).get(), certificate.get()) == 1);
  const EVP_CIPHER* const cipher = wishes.phrase.empty() ? nullptr : EVP_aes_256_cbc();
  require(PEM_write_PKCS8PrivateKey(create(files.key).get(), key.get(), cipher, wishes.phrase.data(),
                                    static_cast<int>(wishes.phrase.size()), nullptr, nullptr) == 1);
  return files;
}

}  // namespace kartix::test
