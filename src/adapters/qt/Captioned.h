#pragma once

#include <QLabel>
#include <string>

#include "adapters/frontend/Accelerators.h"

namespace kartix::adapters::qt {

/// What has a text that can carry an accelerator.
class Captioned {
 public:
  virtual ~Captioned() = default;

  /// The text that can carry an accelerator; empty when there is none.
  virtual std::string caption() const { return {}; }
  virtual void setAccelerator(char letter) = 0;

 protected:
  Captioned() = default;
  Captioned(const Captioned&) = default;
  Captioned& operator=(const Captioned&) = default;
};

/// True when the label leads to a field that takes input: then it carries an accelerator.
inline bool leadsToInput(const QLabel& label) {
  return label.buddy() && !label.buddy()->property("readOnly").toBool();
}

/// A label that belongs to the design alone and to no control of the form.
class DesignLabel : public Captioned {
 public:
  explicit DesignLabel(QLabel& widget) : widget_(widget), text_(widget.text().toStdString()) {}
  std::string caption() const override { return leadsToInput(widget_) ? text_ : std::string(); }
  void setAccelerator(char letter) override {
    widget_.setText(QString::fromStdString(frontend::withAccelerator(text_, letter)));
  }

 private:
  QLabel& widget_;
  std::string text_;
};

}  // namespace kartix::adapters::qt
