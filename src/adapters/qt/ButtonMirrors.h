#pragma once

#include <QPushButton>
#include <QRadioButton>

#include "adapters/qt/Mirror.h"

namespace kartix::adapters::qt {

class ButtonMirror : public Mirror {
 public:
  ButtonMirror(forms::Button& control, QPushButton& widget);
  void takeInput(Gate gate) override;
  std::string caption() const override { return control_.text(); }

 protected:
  void show() override;

 private:
  forms::Button& control_;
  QPushButton& widget_;
};

class OptionMirror : public Mirror {
 public:
  OptionMirror(forms::OptionButton& control, QRadioButton& widget);
  void takeInput(Gate gate) override;
  std::string caption() const override { return control_.text(); }

 protected:
  void show() override;

 private:
  bool anySelected() const;
  void leadTabHere();
  void uncheck();

  forms::OptionButton& control_;
  QRadioButton& widget_;
};

}  // namespace kartix::adapters::qt
