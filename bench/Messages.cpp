#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <memory>

#include "bench/Targets.h"
#include "dialogs/Workplace.h"
#include "gateway/KBAInterface.h"
#include "gateway/Order.h"
#include "platform/XmlLibrary.h"
#include "support/Files.h"

namespace kartix::bench {
namespace {

constexpr std::array<std::size_t, 3> sizes = {100'000, 1'000'000, 10'000'000};

/// An office with an image file of each size.
struct Sender : Office {
  Sender() {
    kba.InitXML();
    for (const std::size_t size : sizes) {
      std::string bytes(size, '\0');
      unsigned random = 1;
      for (char& byte : bytes) byte = static_cast<char>((random = random * 1664525U + 1013904223U) >> 24U);
      test::writeBytes(image(size), bytes);
    }
  }
  std::string image(std::size_t size) const { return (directory / (std::to_string(size) + ".jp2")).string(); }

  KBAInterface& kba = component.workplace().kba;
};

std::size_t encodedSize(std::size_t size) { return (size + 2) / 3 * 4; }

bool plainBase64(const Sender& sender, std::size_t size) {
  std::string bytes(size, '\0');
  std::ifstream(sender.image(size), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(size));
  std::string text(encodedSize(size) + 1, '\0');
  const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                     reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(size));
  return static_cast<std::size_t>(length) == encodedSize(size);
}

/// An order as it goes out, with an image of `size` bytes for each of photo and signature.
bool order(Sender& sender, std::size_t size) {
  OrderMessage message;
  message.photographFilename = message.signatureFilename = sender.image(size);
  const auto document = sender.kba.createDocument();
  return BuildOrderDocument(sender.component.runtime(), sender.kba, *document, message) &&
         KBAInterface::SetIsoDeclaration(document->xml()).size() > 2 * encodedSize(size);
}

}  // namespace

std::vector<Target> messageTargets() {
  const auto sender = later<Sender>();
  std::vector<Target> targets;
  std::vector<Round> encodings;
  std::vector<Round> orders;
  for (const std::size_t size : sizes) {
    const std::string bytes = std::to_string(size) + " bytes";
    targets.push_back(compare(
        "FileToBase64, " + bytes,
        [sender, size] { return sender().kba.FileToBase64(sender().image(size)).size() == encodedSize(size); },
        "OpenSSL", [sender, size] { return plainBase64(sender(), size); }, 1.5));
    encodings.push_back({targets.back().measured.front().benchmark, static_cast<double>(size)});
    orders.push_back(add(
        "order, images of " + bytes, [sender, size] { return order(sender(), size); }, static_cast<double>(size)));
  }
  targets.push_back({"FileToBase64, time per byte from 100 kB to 10 MB", encodings, encodings, 1.5});
  targets.push_back({"order document, time per byte from 100 kB to 10 MB", orders, orders, 1.5});
  return targets;
}

}  // namespace kartix::bench
