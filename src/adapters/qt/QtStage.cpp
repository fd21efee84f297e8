#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QSaveFile>
#include <map>
#include <memory>

#include "adapters/qt/Application.h"
#include "adapters/qt/Display.h"
#include "adapters/qt/InputBlock.h"
#include "adapters/qt/Qt.h"
#include "adapters/qt/Window.h"

namespace kartix::adapters {
namespace {

/// How long a window may take to appear on the display.
constexpr int appearsWithinMs = 1000;

constexpr int barHeight = 30;
constexpr int border = 1;

class StageWindow : public qt::Window {
 public:
  StageWindow(forms::Form& form, QWidget* parent) : Window(form, parent) {
    onPainted = [this] { painted_ = true; };
  }
  bool painted() const { return painted_; }

 private:
  bool painted_ = false;
};

void drawTitleBar(QPainter& painter, const QRect& bar, const QString& caption, QFont font) {
  painter.fillRect(bar, QColor(0x3b, 0x4a, 0x5a));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  const QRect text = bar.adjusted(12, 0, -barHeight - 12, 0);
  painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                   painter.fontMetrics().elidedText(caption, Qt::ElideRight, text.width()));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::white, 1.6, Qt::SolidLine, Qt::RoundCap));
  const QPointF middle(bar.right() - barHeight / 2.0, bar.center().y() + 0.5);
  const qreal arm = 4.5;
  painter.drawLine(middle + QPointF(-arm, -arm), middle + QPointF(arm, arm));
  painter.drawLine(middle + QPointF(-arm, arm), middle + QPointF(arm, -arm));
}

/// The window under a title bar of the same look on every desktop.
QImage framed(QWidget& window) {
  const QPixmap inside = window.grab();
  const qreal scale = inside.devicePixelRatio();
  const QSize size = window.size() + QSize(2 * border, barHeight + border);
  QImage image(size * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(QColor(0x3b, 0x4a, 0x5a));
  QPainter painter(&image);
  painter.drawPixmap(border, barHeight, inside);
  drawTitleBar(painter, QRect(0, 0, size.width(), barHeight), window.windowTitle(), window.font());
  return image;
}

class QtStage final : public platform::Stage {
 public:
  bool onScreen() const override {
    return application_.ready() && qt::visiblePlatform(QGuiApplication::platformName().toStdString());
  }

  void show(forms::Form& form) override {
    if (!application_.ready() || windows_.count(&form) != 0) return;
    auto window = std::make_unique<StageWindow>(form, QApplication::activeModalWidget());
    if (!window->designed()) return;
    window->centre();
    window->show();
    window->centre();
    QElapsedTimer waiting;
    waiting.start();
    do qt::InputBlock::paintPending();
    while (!window->painted() && waiting.elapsed() < appearsWithinMs);
    windows_.emplace(&form, std::move(window));
  }

  void update(forms::Form& form) override {
    const auto found = windows_.find(&form);
    if (found == windows_.end()) return;
    found->second->mirrorAll();
    qt::InputBlock::paintPending();
  }

  void hide(forms::Form& form) override {
    if (windows_.erase(&form) != 0) qt::InputBlock::paintPending();
  }

  bool savePicture(forms::Form& form, const std::string& png) override {
    const auto found = windows_.find(&form);
    if (found == windows_.end()) return false;
    QSaveFile file(QString::fromStdString(png));
    return file.open(QIODevice::WriteOnly) && framed(*found->second).save(&file, "PNG") && file.commit();
  }

 private:
  mutable qt::Application application_{qt::Application::Fallback::offScreen};
  std::map<const forms::Form*, std::unique_ptr<StageWindow>> windows_;
};

}  // namespace

std::unique_ptr<platform::Stage> makeQtStage() { return std::make_unique<QtStage>(); }

}  // namespace kartix::adapters
