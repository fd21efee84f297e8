#include "adapters/qt/DisplayMirrors.h"

#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QScrollArea>
#include <QVariant>
#include <algorithm>

#include "adapters/qt/Icons.h"
#include "adapters/qt/Scale.h"
#include "adapters/qt/Scrolling.h"

namespace kartix::adapters::qt {
namespace {

/// Widths between which the lines of a message are wrapped, and the height beyond which it is scrolled.
constexpr int narrowest = 240;
constexpr int widest = 520;
constexpr int highest = 420;

/// A text that must fit its place is written no smaller than this.
constexpr qreal smallestPoints = 6.5;

/// Larger image files and images are not shown.
constexpr qint64 largestFile = 64LL << 20;
constexpr int longestSide = 20000;

/// What is written on white paper as it stands on any ground.
QImage inkOf(const QImage& image) {
  QImage darkness = image.convertToFormat(QImage::Format_Grayscale8);
  darkness.invertPixels();
  QImage ink(image.size(), QImage::Format_ARGB32_Premultiplied);
  ink.fill(QColor(0x14, 0x1e, 0x3c));
  ink.setAlphaChannel(darkness);
  return ink;
}

QPixmap readPicture(const QString& file, QSize size, qreal scale, bool ink) {
  if (QFileInfo(file).size() > largestFile) return {};
  QImageReader reader(file);
  // The host's image files do not say by their names what they are.
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  const QSize full = reader.size();
  if (full.width() > longestSide || full.height() > longestSide) return {};
  const QImage image = reader.read();
  if (image.isNull()) return {};
  const QImage scaled = image.scaled(size * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QPixmap picture = QPixmap::fromImage(ink ? inkOf(scaled) : scaled);
  picture.setDevicePixelRatio(scale);
  return picture;
}

}  // namespace

LabelMirror::LabelMirror(forms::Label& control, QLabel& widget)
    : Mirror(control, widget), widget_(widget), spoken_(widget.accessibleName()) {
  widget_.setTextFormat(Qt::PlainText);
}

std::string LabelMirror::caption() const { return leadsToInput(widget_) ? control().text() : std::string(); }

void LabelMirror::show() {
  // Without a partner an ampersand is an ordinary character to a label.
  const QString text = widget_.buddy() ? marked() : shown(control().text());
  if (text == shown_) return;
  shown_ = text;
  widget_.setText(text);
  speak();
  if (widget_.wordWrap()) fitWrapped();
  if (widget_.property("shrinks").toBool()) fitShrunk();
}

/// The accessible name takes the place of the text, and is all that is read out of a label.
void LabelMirror::speak() {
  if (spoken_.isEmpty()) return;
  widget_.setAccessibleName(spoken_ + QStringLiteral(": ") + *shown_);
  // Without a description of its own the tip would be read out after it, which says the same.
  widget_.setAccessibleDescription(QStringLiteral(" "));
}

void LabelMirror::fitShrunk() {
  QFont font = widget_.window()->font();
  const int room = widget_.maximumWidth();
  while (QFontMetrics(font).horizontalAdvance(*shown_) > room && font.pointSizeF() > smallestPoints) {
    font.setPointSizeF(font.pointSizeF() - 0.25);
  }
  widget_.setFont(font);
  const QString fitting = QFontMetrics(font).elidedText(*shown_, Qt::ElideRight, room);
  widget_.setText(fitting);
  // A text that does not even fit in small letters is told to whoever points at it.
  if (!designTip_) designTip_ = widget_.toolTip();
  widget_.setToolTip(fitting == *shown_ ? *designTip_ : *shown_);
}

void LabelMirror::fitWrapped() {
  const QFontMetrics metrics(widget_.font());
  const QSize natural = metrics.size(0, widget_.text());
  const int width = std::clamp(natural.width() + 4, scaled(narrowest, widget_), scaled(widest, widget_));
  const int height = widget_.heightForWidth(width);
  widget_.setMinimumSize(0, 0);
  auto* const inside = widget_.parentWidget();
  auto* const viewport = inside ? inside->parentWidget() : nullptr;
  if (auto* const area = viewport ? qobject_cast<QScrollArea*>(viewport->parentWidget()) : nullptr) {
    const int limit = scaled(highest, widget_);
    const int bar = height > limit ? showBar(*area) : 0;
    area->setFixedSize(width + bar, std::min(height, limit));
  } else {
    widget_.setMinimumSize(width, height);
  }
}

ProgressMirror::ProgressMirror(forms::ProgressBar& control, QProgressBar& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {
  widget_.setRange(0, 100);
}

void ProgressMirror::show() { widget_.setValue(control_.value()); }

StatusMirror::StatusMirror(forms::StatusBar& control, QStatusBar& widget)
    : Mirror(control, widget), widget_(widget) {}

void StatusMirror::show() {
  const QString text = shown(control().text());
  if (widget_.currentMessage() != text) widget_.showMessage(text);
}

PictureMirror::PictureMirror(forms::Picture& control, QLabel& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {}

void PictureMirror::show() {
  const qreal scale = widget_.devicePixelRatioF();
  const QSize size = widget_.minimumSize();
  const QFileInfo file(QString::fromStdString(control_.file()));
  const QString drawing = widget_.property("drawing").toString();
  // A file may be written anew under the same name.
  const QString present = control_.file().empty() ? drawing
                                                  : file.filePath() + u'|' + QString::number(file.size()) + u'|' +
                                                        QString::number(file.lastModified().toMSecsSinceEpoch());
  if (present == shown_) return;
  shown_ = present;
  widget_.setPixmap(control_.file().empty()
                        ? drawnIcon(drawing).pixmap(size, scale)
                        : readPicture(file.filePath(), size, scale, widget_.property("ink").toBool()));
}

}  // namespace kartix::adapters::qt
