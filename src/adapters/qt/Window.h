#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "adapters/frontend/Keyboard.h"
#include "adapters/qt/Mirror.h"
#include "platform/forms/Form.h"

namespace kartix::adapters::qt {

/// The window of one form, with a mirror for each control that its design has a widget for: `Text_3` for `Text[3]`,
/// `Progress` for `Progress`. It shows the form and, once `takeInput` is called, takes the clerk's input.
class Window : public QDialog {
 public:
  Window(forms::Form& form, QWidget* parent);

  /// False when there is no design for the form.
  bool designed() const { return designed_; }

  void takeInput(const Gate& gate);

  /// Shows everything of the form again.
  void mirrorAll();
  void mirrorCaption();
  void mirror(const forms::Control& control);
  void focus(const forms::Control& control, bool selectAll);

  /// Centres the window on the primary screen, no larger than that, and brings it to the front.
  void centre();
  /// Brings the window to the front and gives it the focus.
  void comeForward();

  /// The largest size that it may have there.
  virtual QSize room() const;

  /// The form was at work until now.
  void markWorked();
  const frontend::Readiness& readiness() const { return readiness_; }

  /// Called after each painting.
  std::function<void()> onPainted;

  /// Escape and the close box: both are the form's to decide on.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  Mirror* mirrorOf(const forms::Control& control) const;
  void mirrorEnabled(const Mirror& mirror, bool hadFocus);
  void takeLabels();
  void assignAccelerators();
  void pressEnter();

  forms::Form& form_;
  Gate gate_;
  bool designed_ = false;
  bool painted_ = false;
  QTimer seen_;  ///< for what follows the first painting
  frontend::Readiness readiness_;
  std::vector<std::unique_ptr<Mirror>> mirrors_;
  std::vector<DesignLabel> labels_;    ///< those that no control of the form stands behind
  QPointer<QWidget> lostFocus_;        ///< had the focus when it was disabled
  std::vector<std::string> captions_;  ///< those that the accelerators were chosen for
};

/// "Text_3" for "Text[3]".
QString widgetName(const std::string& controlName);

}  // namespace kartix::adapters::qt
