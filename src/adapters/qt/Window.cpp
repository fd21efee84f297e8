#include "adapters/qt/Window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>
#include <chrono>
#include <utility>

#include "adapters/frontend/Accelerators.h"
#include "adapters/qt/Designs.h"
#include "adapters/qt/Display.h"
#include "adapters/qt/Icons.h"
#include "adapters/qt/Scale.h"
#include "adapters/qt/Scrolling.h"

namespace kartix::adapters::qt {

QString widgetName(const std::string& controlName) {
  QString name = QString::fromStdString(controlName);
  return name.replace(u'[', u'_').remove(u']');
}

namespace {

bool takesInput(const QWidget& widget) {
  // The keyboard reaches these to read and to scroll.
  if (qobject_cast<const QLabel*>(&widget) || qobject_cast<const QScrollArea*>(&widget)) return false;
  const auto* const line = qobject_cast<const QLineEdit*>(&widget);
  const auto* const lines = qobject_cast<const QPlainTextEdit*>(&widget);
  if ((line && line->isReadOnly()) || (lines && lines->isReadOnly())) return false;
  return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

}  // namespace

Window::Window(forms::Form& form, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint),
      form_(form) {
  designed_ = fillFromDesign(form_.name(), *this);
  followDesktop(*this);
  setWindowModality(Qt::ApplicationModal);
  setAttribute(Qt::WA_QuitOnClose, false);
  for (forms::Control* control : form_.controls()) {
    auto* const widget = findChild<QWidget*>(widgetName(control->name()));
    if (auto mirror = widget ? makeMirror(*control, *widget) : nullptr) mirrors_.push_back(std::move(mirror));
  }
  takeLabels();
  mirrorAll();
  seen_.setSingleShot(true);
  connect(&seen_, &QTimer::timeout, this, [this] { readiness_.seen(std::chrono::steady_clock::now()); });
}

/// Labels and drawings that belong to the design alone and to no control of the form.
void Window::takeLabels() {
  for (auto* const label : findChildren<QLabel*>()) {
    const QString drawing = label->property("drawing").toString();
    const bool mirrored =
        std::any_of(mirrors_.begin(), mirrors_.end(), [&](const auto& m) { return &m->widget() == label; });
    if (mirrored) continue;
    if (drawing.isEmpty()) labels_.emplace_back(*label);
    if (!drawing.isEmpty())
      label->setPixmap(drawnIcon(drawing).pixmap(label->minimumSize(), label->devicePixelRatioF()));
  }
}

void Window::takeInput(const Gate& gate) {
  gate_ = gate;
  for (const auto& mirror : mirrors_) mirror->takeInput(gate);
}

void Window::mirrorAll() {
  mirrorCaption();
  for (const auto& mirror : mirrors_) mirror->update();
  assignAccelerators();
}

void Window::mirrorCaption() { setWindowTitle(QString::fromStdString(form_.caption())); }

void Window::mirror(const forms::Control& control) {
  Mirror* const mirror = mirrorOf(control);
  if (!mirror) return;
  const bool hadFocus = mirror->widget().hasFocus();
  mirror->update();
  mirrorEnabled(*mirror, hadFocus);
  assignAccelerators();
}

/// A button that is disabled for the time of its work gets the focus back afterwards, unless the clerk went
/// elsewhere.
void Window::mirrorEnabled(const Mirror& mirror, bool hadFocus) {
  if (hadFocus && !mirror.control().enabled()) lostFocus_ = &mirror.widget();
  if (lostFocus_ != &mirror.widget() || !mirror.control().enabled()) return;
  lostFocus_->setFocus(Qt::OtherFocusReason);
  lostFocus_.clear();
}

void Window::focus(const forms::Control& control, bool selectAll) {
  const Mirror* const mirror = mirrorOf(control);
  if (!mirror) return;
  lostFocus_.clear();
  mirror->widget().setFocus(Qt::OtherFocusReason);
  if (!selectAll) return;
  if (auto* const line = qobject_cast<QLineEdit*>(&mirror->widget())) line->selectAll();
  if (auto* const lines = qobject_cast<QPlainTextEdit*>(&mirror->widget())) lines->selectAll();
}

void Window::centre() {
  if (layout()) fitInto(room(), *this);
  adjustSize();
  resize(size().boundedTo(room()));
  if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
    const QRect room = screen->availableGeometry();
    QRect frame(QPoint(0, 0), isVisible() ? frameGeometry().size() : size());
    frame.moveCenter(room.center());
    move(std::max(frame.left(), room.left()), std::max(frame.top(), room.top()));
  }
  if (isVisible()) comeForward();
}

QSize Window::room() const { return roomFor(*this); }

void Window::comeForward() {
  // Off screen there is nothing to be in front of, and the platform complains about being asked.
  if (visiblePlatform(QGuiApplication::platformName().toStdString())) raise();
  activateWindow();
}

/// The clerk begins at the first control that takes input, not at one that only shows something.
void Window::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (focusWidget() != nullptr) return;
  for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
    if (!takesInput(*next)) continue;
    next->setFocus(Qt::OtherFocusReason);
    return;
  }
}

void Window::reject() {
  if (gate_) gate_([this] { form_.userClose(); });
}

void Window::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void Window::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    pressEnter();
    event->accept();
    return;
  }
  if (event->modifiers() == Qt::NoModifier && event->key() != Qt::Key_Escape) lostFocus_.clear();
  QDialog::keyPressEvent(event);
}

/// Enter presses the button that has the focus, else the form's default button.
void Window::pressEnter() {
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  for (const auto& mirror : mirrors_) {
    if (button) break;
    const auto* const control = dynamic_cast<const forms::Button*>(&mirror->control());
    if (control && control->isDefault) button = qobject_cast<QPushButton*>(&mirror->widget());
  }
  if (button && button->isVisible()) button->click();
}

void Window::markWorked() { readiness_.worked(std::chrono::steady_clock::now()); }

void Window::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  // The clerk sees it once its widgets are painted too.
  if (!std::exchange(painted_, true)) seen_.start();
  if (onPainted) onPainted();
}

Mirror* Window::mirrorOf(const forms::Control& control) const {
  const auto found =
      std::find_if(mirrors_.begin(), mirrors_.end(), [&](const auto& m) { return &m->control() == &control; });
  return found == mirrors_.end() ? nullptr : found->get();
}

void Window::assignAccelerators() {
  std::vector<Captioned*> bearers;
  // Buttons first: their letters are the ones that clerks learn.
  for (const bool buttons : {true, false}) {
    for (const auto& mirror : mirrors_) {
      if ((qobject_cast<QPushButton*>(&mirror->widget()) != nullptr) != buttons) continue;
      bearers.push_back(mirror.get());
    }
  }
  for (DesignLabel& label : labels_) bearers.push_back(&label);
  std::vector<std::string> captions;
  std::transform(bearers.begin(), bearers.end(), std::back_inserter(captions),
                 [](const Captioned* bearer) { return bearer->caption(); });
  if (captions == captions_) return;
  captions_ = captions;
  const auto letters = frontend::chooseAccelerators(captions);
  for (std::size_t i = 0; i < bearers.size(); ++i) bearers[i]->setAccelerator(letters[i]);
}

}  // namespace kartix::adapters::qt
