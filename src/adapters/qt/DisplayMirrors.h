#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <optional>

#include "adapters/qt/Mirror.h"

namespace kartix::adapters::qt {

/// Label. One with an accessible name is spoken as that name and its text. One that wraps its words gets the width
/// that suits its text; in a scroll area it also gets the area's size. One whose property "shrinks" is set has a
/// fixed place: a text that is too long for it is written smaller, and cut off with an ellipsis only when that does
/// not help.
class LabelMirror : public Mirror {
 public:
  LabelMirror(forms::Label& control, QLabel& widget);
  std::string caption() const override;

 protected:
  void show() override;

 private:
  void speak();
  void fitWrapped();
  void fitShrunk();

  QLabel& widget_;
  std::optional<QString> shown_;  ///< the whole text, however much of it fits
  std::optional<QString> designTip_;
  QString spoken_;  ///< what the text means
};

class ProgressMirror : public Mirror {
 public:
  ProgressMirror(forms::ProgressBar& control, QProgressBar& widget);

 protected:
  void show() override;

 private:
  forms::ProgressBar& control_;
  QProgressBar& widget_;
};

class StatusMirror : public Mirror {
 public:
  StatusMirror(forms::StatusBar& control, QStatusBar& widget);

 protected:
  void show() override;

 private:
  QStatusBar& widget_;
};

/// An image file, or the drawing that the widget's property "drawing" names. Of an image file in a widget whose
/// property "ink" is set, only what is dark is shown.
class PictureMirror : public Mirror {
 public:
  PictureMirror(forms::Picture& control, QLabel& widget);

 protected:
  void show() override;

 private:
  forms::Picture& control_;
  QLabel& widget_;
  QString shown_;
};

}  // namespace kartix::adapters::qt
