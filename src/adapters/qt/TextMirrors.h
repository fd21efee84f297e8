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

/// A text after an edit, and where the cursor stands in it.
struct Edited {
  QString text;
  qsizetype cursor = 0;
};

/// What becomes of an edit that turned `before` into `after`: the characters that it brought in, typed, pasted or
/// dropped alike, go through the field's key filter.
Edited filterEdit(const forms::TextField& field, const QString& before, const Edited& after);

}  // namespace kartix::adapters::qt
