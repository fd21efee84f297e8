#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <csignal>

#include "adapters/qt/Qt.h"
#include "images/Photograph.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

using namespace std::string_literals;
using test::photograph;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string encoded(const QImage& image, const char* format = "jpeg") {
  QBuffer buffer;
  EXPECT_TRUE(image.save(&buffer, format, 95));
  return buffer.data().toStdString();
}

/// A JPEG that says how it is to be turned, and holds a preview with an end marker of its own.
std::string withOrientation(std::string jpeg, int orientation) {
  const std::string exif =
      "Exif\0\0MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0"s + char(orientation) + "\0\0\0\0\0\0\xFF\xD8\xFF\xD9"s;
  return jpeg.insert(2, "\xFF\xE1\0"s + char(exif.size() + 2) + exif);
}

void convert(const std::string& arguments) {
  ASSERT_EQ(std::system(("convert " + arguments).c_str()), 0) << arguments;
}

std::string text(QSize size) { return std::to_string(size.width()) + "x" + std::to_string(size.height()); }

/// Root mean square of the difference, 1 being that of black and white.
double difference(const std::string& jpeg, const QImage& expected) {
  const QImage seen(QString::fromStdString(jpeg), "jpeg");
  double sum = 0;
  for (int y = 0; y < seen.height(); ++y) {
    for (int x = 0; x < seen.width(); ++x) {
      const QRgb p = seen.pixel(x, y);
      const QRgb q = expected.pixel(x, y);
      for (const int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) sum += d * d;
    }
  }
  return seen.size() == expected.size() ? std::sqrt(sum / (3.0 * seen.width() * seen.height())) / 255 : 1;
}

class Images : public ::testing::Test {
 protected:
  std::string put(const std::string& name, const std::string& bytes) {
    test::writeBytes(directory / name, bytes);
    return (directory / name).string();
  }

  test::TempDir directory;
  std::unique_ptr<platform::ImageLibrary> images = makeQtImages();
  const std::string out = (directory / "1.JP2").string();
};

struct Preparation {
  QSize size;
  QSize target;  ///< a side of 0 follows; invalid: not scaled
  QSize result;
  QRect canvas = {};  ///< new canvas, with the picture at this place
  const char* format = "jpeg";
  int orientation = 1;
  QImage::Format pixels = QImage::Format_RGB32;
};

TEST_F(Images, AreMadeAsTheReferenceMakesThem) {
  std::vector<Preparation> cases = {
      {{300, 400}, {0, 490}, {368, 490}},
      {{900, 1200}, {0, 460}, {345, 460}},
      {{900, 1200}, {0, 300}, {225, 300}},
      {{1603, 1601}, {0, 199}, {199, 199}},
      {{1603, 1607}, {0, 100}, {100, 100}},
      {{1000, 200}, {740, 0}, {740, 168}, {0, 13, 1000, 227}},
      {{501, 250}, {680, 0}, {680, 219}, {137, 0, 775, 250}, "png"},
      {{3000, 601}, {710, 0}, {710, 161}, {0, 40, 3000, 681}, "jpeg", 1, QImage::Format_Grayscale8},
      {{400, 500}, {0, 490}, {392, 490}, {}, "png", 1, QImage::Format_ARGB32},
      {{1000, 300}, {710, 0}, {710, 213}, {}, "bmp", 1, QImage::Format_Mono},
      {{500, 400}, {0, 200}, {250, 200}, {}, "png", 1, QImage::Format_RGBX64},
      {{2000, 1}, {100, 0}, {100, 1}},
      {{100, 300}, {}, {320, 140}, {5, 30, 320, 140}, "jpeg", 6}};
  for (int turn = 2; turn <= 8; ++turn) {
    cases.push_back({{400, 240}, {150, 0}, {150, 150}, {10, 33, 450, 450}, "jpeg", turn});
  }
  for (const Preparation& c : cases) {
    SCOPED_TRACE(text(c.size) + " to " + text(c.result) + ", turn " + std::to_string(c.orientation));
    std::string bytes = encoded(photograph(c.size, c.pixels), c.format);
    if (c.orientation > 1) bytes = withOrientation(bytes, c.orientation);
    const std::string in = put("1.JP0", bytes);
    std::string arguments = in + " -auto-orient -background white -alpha remove";
    const auto image = images->load(in);
    ASSERT_TRUE(image);
    EXPECT_EQ(QSize(image->width(), image->height()), c.orientation < 5 ? c.size : c.size.transposed());
    if (!c.canvas.isNull()) {
      EXPECT_TRUE(image->enlargeCanvas(c.canvas.width(), c.canvas.height(), c.canvas.x(), c.canvas.y(), 0xFFFFFF));
      const QPoint at = -c.canvas.topLeft();
      arguments += " -extent " + text(c.canvas.size()) + QString::asprintf("%+d%+d", at.x(), at.y()).toStdString();
    }
    EXPECT_TRUE(!c.target.isValid() || image->resize(c.target.width(), c.target.height()));
    image->setResolution(500, 500);
    ASSERT_TRUE(image->save(out));

    const std::string written = test::readBytes(out);
    const bool grey = c.pixels == QImage::Format_Grayscale8;
    EXPECT_THAT(written, StartsWith("\xFF\xD8\xFF\xE0\0\x10JFIF\0\1\1\1\1\xF4\1\xF4"s)) << "not 500 dots per inch";
    EXPECT_THAT(written, HasSubstr(grey ? "\xFF\xC0\0\x0B\x08"s : "\xFF\xC0\0\x11\x08"s)) << "not baseline";
    const std::string reference = (directory / "reference.bmp").string();
    arguments += " -filter Lanczos -resize " + text(c.result) + "! ";
    convert(arguments + reference);
    EXPECT_LT(difference(out, QImage(QString::fromStdString(reference))), 0.015);
  }
}

TEST_F(Images, LeaveTheColourSpaceOfTheCamera) {
  QImage red({64, 64}, QImage::Format_RGB32);
  red.fill(QColor(234, 51, 35));
  red.setColorSpace(QColorSpace::DisplayP3);
  const auto image = images->load(put("1.JP0", encoded(red)));
  ASSERT_TRUE(image && image->save(out));
  red.fill(Qt::red);
  EXPECT_LT(difference(out, red), 0.01);
  EXPECT_THAT(test::readBytes(out), ::testing::Not(HasSubstr("ICC_PROFILE")));
}

TEST_F(Images, BrokenFilesAreNoPicturesAndNothingIsSaidOfThem) {
  static int heard = 0;
  const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++heard; });
  ::testing::internal::CaptureStderr();
  const std::string jpeg = withOrientation(encoded(photograph({90, 120})), 3);
  convert("-size 9x9 xc:red " + (directory / "1.gif").string());
  std::vector<std::string> broken = {"", "kein Bild", "\xFF\xD8", test::readBytes(directory / "1.gif")};
  for (const std::string& whole :
       {jpeg, encoded(photograph({90, 120}), "png"), encoded(photograph({90, 120}), "bmp")}) {
    EXPECT_TRUE(images->load(put("whole", whole + "\xFF\xD8\xFFtrail")));
    for (const std::size_t part : {1, 20, 50, 90, 99}) broken.push_back(whole.substr(0, whole.size() * part / 100));
    broken.push_back(whole.substr(0, whole.size() - 1));
  }
  for (const std::string& bytes : broken) {
    EXPECT_FALSE(images->load(put("broken", bytes))) << bytes.size() << " bytes: " << bytes.substr(0, 20);
  }
  ::mkfifo((directory / "pipe").c_str(), S_IRUSR | S_IWUSR);
  std::filesystem::resize_file(put("huge", jpeg), (64ULL << 20U) + 1);
  for (const char* name : {"none", "", "pipe", "huge"})
    EXPECT_FALSE(images->load((directory / name).string())) << name;

  // Data that ends early shows when it is decoded.
  const auto ended = images->load(put("ended", jpeg.substr(0, jpeg.size() * 2 / 3) + "\xFF\xD9"));
  EXPECT_TRUE(ended && !ended->resize(0, 60) && !ended->save(out));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(heard, 0);
  qWarning("of the host");
  EXPECT_EQ(heard, 1);
  qInstallMessageHandler(before);
}

TEST_F(Images, LimitsOfSizeAndCanvas) {
  const std::string jpeg = encoded(photograph({64, 64}));
  const std::size_t frame = jpeg.find("\xFF\xC0"s);
  const auto large = images->load(put("1.JP0", std::string(jpeg).replace(frame + 5, 4, "\x27\x11\x27\x10")));
  ASSERT_TRUE(large);
  EXPECT_EQ(QSize(large->width(), large->height()), QSize(10000, 10001));
  EXPECT_FALSE(large->resize(0, 490) || large->enlargeCanvas(10000, 10002, 0, 0, 0) || large->save(out));

  const auto small = images->load(put("1.JP0", jpeg));
  for (const QSize& size : {QSize(0, 0), {-1, 64}, {64, -1}, {10001, 10000}, {0, 2000000000}}) {
    EXPECT_FALSE(small->resize(size.width(), size.height())) << text(size);
  }
  for (const QRect& c : {QRect(1, 0, 64, 64), {0, -1, 64, 99}, {0, 0, 63, 64}, {0, 0, 64, 2000000}}) {
    EXPECT_FALSE(small->enlargeCanvas(c.width(), c.height(), c.x(), c.y(), 0)) << text(c.size());
  }
  // One canvas on another, and scaled twice.
  EXPECT_TRUE(small->enlargeCanvas(80, 64, 8, 0, 0xFF0000) && small->enlargeCanvas(80, 80, 0, 8, 0x0000FF));
  EXPECT_TRUE(small->resize(160, 0) && small->resize(0, 40) && small->save(out));
  const QImage seen(QString::fromStdString(out), "jpeg");
  EXPECT_EQ(seen.size(), QSize(40, 40));
  EXPECT_GT(qRed(seen.pixel(1, 20)), 200);
  EXPECT_GT(qBlue(seen.pixel(20, 1)), 200);
}

TEST_F(Images, FailedWriteLeavesWhatWasThere) {
  const auto image = images->load(put("in", encoded(photograph({300, 400}))));
  put("1.JP2", "former");
  for (const auto& file : {directory / "in/1.JP2", directory / "none/1.JP2", directory.path()}) {
    EXPECT_FALSE(image->save(file.string())) << file;
  }
  EXPECT_FALSE(image->save("/proc/1.JP2"));
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit little{5000, limit.rlim_max};
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &little);
  const bool written = image->save(out);
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, before);
  EXPECT_FALSE(written);
  EXPECT_EQ(test::readBytes(out), "former");
  const std::filesystem::directory_iterator left(directory.path());
  EXPECT_EQ(std::distance(begin(left), end(left)), 2);

  const mode_t mask = umask(S_IWGRP | S_IRWXO);
  EXPECT_TRUE(image->save((directory / "new").string()));
  umask(mask);
  struct stat status {};
  stat((directory / "new").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

}  // namespace
}  // namespace kartix::adapters
