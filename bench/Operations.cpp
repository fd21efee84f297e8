#include <QImage>
#include <algorithm>
#include <random>
#include <stdexcept>
#include <utility>

#include "adapters/qt/Qt.h"
#include "bench/Bureau.h"
#include "bench/ByHand.h"
#include "bench/Orders.h"
#include "bench/Targets.h"
#include "images/Photograph.h"
#include "platform/forms/Form.h"
#include "support/Files.h"

namespace kartix::bench {
namespace {

constexpr const char* kept = "Keep-Alive: timeout=60\r\n";
constexpr const char* closed = "Connection: close\r\n";

std::string reply(const char* file) { return test::readBytes(test::scenarioFile("replies", file)); }

/// An inquiry by card number, of a person with as many card records.
Json inquiry(int records, const char* base) {
  Json scenario = test::loadBase(base);
  scenario["script"] = {"StartForm: type Text[4] df000000000100", "StartForm: click Button[0]",
                        "ZKR: click Button[0]"};
  Json& cards = scenario["rows"]["fahrerkarte"] = Json::array();
  for (int i = 1; i <= records; ++i) {
    cards.push_back({{"personennummer", "4711"},
                     {"lfdnr", std::to_string(i)},
                     {"kartennralt", "DF" + std::to_string(i)},
                     {"vorgangschl", "NA"}});
  }
  return scenario;
}

/// Both ways of making the same inquiry. The one by hand sends the bytes that the component has sent.
struct Inquiries {
  Inquiries(const char* base, const char* headers, int number)
      : bureau(inquiry(number, base), reply("auskunft.xml"), headers), records(number) {
    if (!bureau.operate()) throw std::runtime_error("the inquiry fails");
    message = messageIn(bureau.sent());
    if (written(message) != bureau.sent()) throw std::runtime_error("by hand other bytes would be sent");
  }

  bool byHand(Line& line) {
    constexpr std::size_t personTexts = 177;
    constexpr std::size_t cardTexts = 37;
    constexpr std::size_t answerTexts = 20;
    return loadedTexts(bureau.installation().file("host.db")) == personTexts + cardTexts * (1 + records) &&
           textsOf(line.exchange(written(message))).size() > answerTexts;
  }

  Bureau bureau;
  std::size_t records;
  Message message;
};

/// A program by hand keeps the rows that it has asked for as well, and SQLite takes most of its time to make them.
Target inquiryTarget(int records, double most) {
  const auto both = later<Inquiries>("found.json", closed, records);
  return compareInTurns(
      "inquiry, " + std::to_string(records) + " card record" + (records > 1 ? "s" : ""),
      [both] { return secondsOf([&] { return both().bureau.operate(); }); }, "libcurl, libxml2, SQLite",
      [both] {
        return secondsOf([&] {
          Line line(both().bureau.address("/zkr/anfrage"));
          return both().byHand(line);
        });
      },
      most);
}

constexpr int manyInquiries = 50;

std::vector<Target> secureTargets() {
  const auto both = later<Inquiries>("tls.json", kept, 1);
  const auto times = [](auto one) {
    return secondsOf([&] {
      for (int i = 0; i < manyInquiries; ++i) {
        if (!one(i == 0)) return false;
      }
      return true;
    });
  };
  Target time = compareInTurns(
      "50 inquiries over TLS with a client certificate",
      [both, times] { return times([&](bool first) { return both().bureau.operate(first); }); },
      "libcurl, libxml2, SQLite",
      [both, times] {
        const auto file = [&](const char* name) { return both().bureau.installation().file(name).string(); };
        const test::PemFiles client = {file("client.pem"), file("client.key")};
        Line line(both().bureau.address("/zkr/anfrage", true), &client, file("ca.pem"));
        return times([&](bool) { return both().byHand(line); });
      },
      1.15);
  const auto handshakes = [both, times] {
    const int before = both().bureau.connections();
    const bool good = times([&](bool first) { return both().bureau.operate(first); }) >= 0;
    return good ? both().bureau.connections() - before : manyInquiries;
  };
  return {std::move(time), {.what = "handshakes of 50 inquiries over TLS", .most = 1, .figure = handshakes}};
}

/// Both ways of sending the same order.
struct SentOrders {
  SentOrders() : bureau(Orders::scenario(), reply("accepted.xml"), closed) {
    Orders::makePictures(bureau.installation());
    if (!bureau.operate()) throw std::runtime_error("the order fails");
    message = messageIn(bureau.sent());
    if (written(message) != bureau.sent()) throw std::runtime_error("by hand other bytes would be sent");
  }

  /// From the answer to the question until the message of the outcome.
  double own() {
    double started = 0;
    double ended = 0;
    bureau.watch = [&](const forms::Form& form, bool before) {
      if (form.name() != "MessageBox") return;
      if (!before && started == 0) started = threadSeconds();
      if (before && started > 0) ended = threadSeconds();
    };
    const bool good = bureau.operate();
    bureau.watch = nullptr;
    return good && ended > started ? ended - started : -1;
  }

  /// After the same work on pictures, for the caches are the component's own no more once that is done.
  double byHand() {
    Orders::prepareAgain(bureau.installation());
    const double start = threadSeconds();
    replace(message, "photograph", base64(Orders::picture(bureau.installation(), "JP2")));
    replace(message, "signature", base64(Orders::picture(bureau.installation(), "JP3")));
    Line line(bureau.address("/bestellung"));
    const bool good = textsOf(line.exchange(written(message))).size() > 1;
    return good ? threadSeconds() - start : -1;
  }

  Bureau bureau;
  Message message;
};

Target orderTarget() {
  const auto orders = later<SentOrders>();
  return compareInTurns(
      "order, from the question to the outcome", [orders] { return orders().own(); }, "libxml2, OpenSSL, libcurl",
      [orders] { return orders().byHand(); }, 1.3);
}

/// `grain` makes up for what a made picture lacks of a real one: with it the photo leaves with as many bytes.
void photograph(QSize size, unsigned grain, const std::filesystem::path& file) {
  constexpr int quality = 95;
  constexpr int cell = 3;
  QImage image = test::photograph(size);
  std::minstd_rand random(1);
  for (int y = 0; y + cell <= size.height(); y += cell) {
    for (int x = 0; x + cell <= size.width(); x += cell) {
      const int more = static_cast<int>(random() % grain) - static_cast<int>(grain / 2);
      for (int i = 0; i < cell * cell; ++i) {
        const QPoint at(x + i % cell, y + i / cell);
        const QRgb rgb = image.pixel(at);
        const auto shade = [more](int base) { return std::clamp(base + more, 0, 255); };
        image.setPixel(at, qRgb(shade(qRed(rgb)), shade(qGreen(rgb)), shade(qBlue(rgb))));
      }
    }
  }
  image.save(QString::fromStdString(file.string()), "jpeg", quality);
}

}  // namespace

Json Orders::scenario() {
  Json scenario = test::loadBase("order.json");
  scenario.erase("pictures");
  scenario["script"].push_back("MessageBox: click Button[1]");
  return scenario;
}

void Orders::makePictures(const test::Installation& installation) {
  std::filesystem::create_directories(picture(installation, "JP0").parent_path());
  photograph({3 * 368, 3 * 490}, 56, picture(installation, "JP0"));
  photograph({3 * 740, 3 * 168}, 4, picture(installation, "JP1"));
}

void Orders::prepareAgain(const test::Installation& installation) {
  for (const auto& [kind, height] : {std::pair("JP0", 490), std::pair("JP1", 168)}) {
    const auto image = adapters::makeQtImages()->load(picture(installation, kind).string());
    if (!image || !image->resize(0, height) || !image->save(installation.file("again.jpg").string())) {
      throw std::runtime_error("no picture");
    }
  }
}

std::filesystem::path Orders::picture(const test::Installation& installation, const char* kind) {
  return installation.file("bilder/00/000/04500/0000004711") += std::string(".") + kind;
}

std::vector<Target> operationTargets() {
  std::vector<Target> targets = {inquiryTarget(1, 1.2), inquiryTarget(1000, 0.5), orderTarget()};
  for (Target& target : secureTargets()) targets.push_back(std::move(target));
  return targets;
}

}  // namespace kartix::bench
