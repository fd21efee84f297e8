#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <optional>

#include "adapters/qt/Mirror.h"

namespace kartix::adapters::qt {

/// One line of text.
class LineMirror : public Mirror {
 public:
  LineMirror(forms::TextField& control, QLineEdit& widget);
  void takeInput(Gate gate) override;

 protected:
  void show() override;

 private:
  void edited();

  forms::TextField& control_;
  QLineEdit& widget_;
  std::optional<bool> readOnly_;  ///< as it is shown
};

/// Text of several lines.
class LinesMirror : public Mirror {
 public:
  LinesMirror(forms::TextField& control, QPlainTextEdit& widget);
  void takeInput(Gate gate) override;

 protected:
  void show() override;

 private:
  void edited();

  forms::TextField& control_;
  QPlainTextEdit& widget_;
  std::optional<bool> readOnly_;  ///< as it is shown
};

}  // namespace kartix::adapters::qt
