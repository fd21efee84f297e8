#include "adapters/qt/Mirror.h"

#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTreeWidget>
#include <array>
#include <utility>

#include "adapters/frontend/Accelerators.h"
#include "adapters/qt/ButtonMirrors.h"
#include "adapters/qt/ChoiceMirrors.h"
#include "adapters/qt/DisplayMirrors.h"
#include "adapters/qt/TextMirrors.h"

namespace kartix::adapters::qt {

void Mirror::update() {
  const QSignalBlocker quiet(&widget_);
  if (widget_.isEnabled() != control_.enabled()) widget_.setEnabled(control_.enabled());
  // A widget that has not been shown yet would show itself with its window, whatever the control says.
  if (widget_.isHidden() == control_.visible()) widget_.setVisible(control_.visible());
  show();
}

void Mirror::setAccelerator(char letter) {
  accelerator_ = letter;
  update();
}

QString Mirror::marked() const { return shown(frontend::withAccelerator(control_.text(), accelerator_)); }

void Mirror::takeInput(Gate gate) {
  gate_ = std::move(gate);
  widget_.installEventFilter(this);
}

void Mirror::act(const std::function<void()>& action) {
  protect([&] {
    if (!gate_(action)) update();
  });
}

bool Mirror::eventFilter(QObject* receiver, QEvent* event) {
  if (!control_.onClick || qobject_cast<QAbstractButton*>(&widget_)) return QObject::eventFilter(receiver, event);
  if (event->type() == QEvent::MouseButtonRelease) {
    const auto& mouse = static_cast<const QMouseEvent&>(*event);
    if (mouse.button() == Qt::LeftButton && widget_.rect().contains(mouse.position().toPoint()))
      act([this] { control_.userClick(); });
  } else if (event->type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(*event).key() == Qt::Key_F2) {
    act([this] { control_.userClick(); });
    return true;
  }
  return QObject::eventFilter(receiver, event);
}

namespace {

template <class M, class C, class W>
std::unique_ptr<Mirror> mirrorOf(forms::Control& control, QWidget& widget) {
  auto* const fittingControl = dynamic_cast<C*>(&control);
  auto* const fittingWidget = qobject_cast<W*>(&widget);
  if (!fittingControl || !fittingWidget) return nullptr;
  return std::make_unique<M>(*fittingControl, *fittingWidget);
}

}  // namespace

std::unique_ptr<Mirror> makeMirror(forms::Control& control, QWidget& widget) {
  using Maker = std::unique_ptr<Mirror> (*)(forms::Control&, QWidget&);
  static constexpr std::array<Maker, 10> makers = {
      mirrorOf<LabelMirror, forms::Label, QLabel>,
      mirrorOf<LineMirror, forms::TextField, QLineEdit>,
      mirrorOf<LinesMirror, forms::TextField, QPlainTextEdit>,
      mirrorOf<OptionMirror, forms::OptionButton, QRadioButton>,
      mirrorOf<ButtonMirror, forms::Button, QPushButton>,
      mirrorOf<ComboMirror, forms::ComboBox, QComboBox>,
      mirrorOf<ListMirror, forms::ListView, QTreeWidget>,
      mirrorOf<ProgressMirror, forms::ProgressBar, QProgressBar>,
      mirrorOf<StatusMirror, forms::StatusBar, QStatusBar>,
      mirrorOf<PictureMirror, forms::Picture, QLabel>,
  };
  for (const Maker make : makers) {
    if (auto mirror = make(control, widget)) return mirror;
  }
  return nullptr;
}

QString shown(const std::string& text) {
  QString result = QString::fromStdString(text);
  return result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

std::string entered(QString text) { return text.replace(u'\n', QStringLiteral("\r\n")).toStdString(); }

}  // namespace kartix::adapters::qt
