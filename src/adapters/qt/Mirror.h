#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "adapters/qt/Captioned.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

class QWidget;

namespace kartix::adapters::qt {

/// Lets what a clerk does reach a form, or keeps it back while one of the form's handlers runs. False when it was
/// kept back.
using Gate = std::function<bool(const std::function<void()>& action)>;

/// One control of a form and its widget. Values go to the widget by `update`; once input is taken, what the clerk
/// does goes to the control.
class Mirror : public QObject, public Captioned {
 public:
  Mirror(forms::Control& control, QWidget& widget) : control_(control), widget_(widget) {}

  const forms::Control& control() const { return control_; }
  QWidget& widget() const { return widget_; }

  /// Shows the control's values. Raises no event. Costs little when nothing has changed.
  void update();

  /// From now on the clerk's input goes through `gate` to the control.
  virtual void takeInput(Gate gate);

  void setAccelerator(char letter) override;

 protected:
  virtual void show() = 0;
  /// The clerk does `action`; when that is kept back, the widget shows the control's values again.
  void act(const std::function<void()>& action);
  /// For all that is called by the toolkit, through which nothing may be thrown: a failure ends the window.
  template <class Action>
  void protect(const Action& action) const noexcept {
    control_.form().protect(action);
  }
  /// The text with its accelerator marked, as buttons and labels take it.
  QString marked() const;
  /// A click on the widget is one on the control, as is F2 for those who use the keyboard.
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  forms::Control& control_;
  QWidget& widget_;
  Gate gate_;
  char accelerator_ = 0;
};

/// The mirror for `control` in `widget`; nothing when the widget is not of a kind that can show it.
std::unique_ptr<Mirror> makeMirror(forms::Control& control, QWidget& widget);

/// Text of a control as widgets take it, with line feeds for its line breaks, and the way back.
QString shown(const std::string& text);
std::string entered(QString text);

}  // namespace kartix::adapters::qt
