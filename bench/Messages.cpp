#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <memory>

#include "bench/ByHand.h"
#include "bench/Targets.h"
#include "common/CodePage.h"
#include "dialogs/Workplace.h"
#include "gateway/KBAInterface.h"
#include "gateway/Order.h"
#include "platform/XmlLibrary.h"
#include "support/Files.h"

namespace kartix::bench {
namespace {

constexpr std::size_t one = 1;
constexpr std::array<std::size_t, 3> sizes = {100'000, 1'000'000, 10'000'000};

/// An office with an image file of each size.
struct Sender : Office {
  Sender() {
    kba.InitXML();
    for (const std::size_t size : {one, sizes[0], sizes[1], sizes[2]}) {
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

/// The text of an order, with an image of `size` bytes for each of photo and signature.
std::string order(Sender& sender, std::size_t size) {
  OrderMessage message;
  message.photographFilename = message.signatureFilename = sender.image(size);
  const auto document = sender.kba.createDocument();
  if (!BuildOrderDocument(sender.component.runtime(), sender.kba, *document, message)) return {};
  return codepage::toIsoXml(KBAInterface::SetIsoDeclaration(document->xml()));
}

/// Both ways of making it.
Target orderTarget(std::function<Sender&()> sender, std::size_t size) {
  return compare(
      "order document, images of " + std::to_string(size) + " bytes",
      [sender, size] { return order(sender(), size).size() > 2 * encodedSize(size); }, "libxml2, OpenSSL",
      [sender, size, message = std::make_shared<Message>()] {
        if (message->elements.empty()) *message = messageIn(order(sender(), one));
        replace(*message, "photograph", base64(sender().image(size)));
        replace(*message, "signature", base64(sender().image(size)));
        return written(*message).size() > 2 * encodedSize(size);
      },
      1.5);
}

}  // namespace

std::vector<Target> messageTargets() {
  const auto sender = later<Sender>();
  std::vector<Target> targets;
  std::vector<Round> encodings;
  for (const std::size_t size : sizes) {
    targets.push_back(compare(
        "FileToBase64, " + std::to_string(size) + " bytes",
        [sender, size] { return sender().kba.FileToBase64(sender().image(size)).size() == encodedSize(size); },
        "OpenSSL", [sender, size] { return plainBase64(sender(), size); }, 1.5));
    encodings.push_back({targets.back().measured.front().benchmark, static_cast<double>(size)});
    targets.push_back(orderTarget(sender, size));
  }
  targets.push_back({"FileToBase64, time per byte from 100 kB to 10 MB", encodings, encodings, 1.5});
  return targets;
}

}  // namespace kartix::bench
