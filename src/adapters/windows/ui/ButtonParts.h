#pragma once

#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

class ButtonPart : public Part {
 public:
  ButtonPart(const Element& element, forms::Button& control, const Look& look);
  std::string caption() const override { return content(); }
  void command(WORD code) override;
  void click() override {}  // it reports clicks by itself
  bool isDefault() const { return control_.isDefault; }
  /// Presses it, as a click does.
  void press();

 protected:
  void show() override { setText(marked()); }
  Size natural() const override;

 private:
  forms::Button& control_;
};

class OptionPart : public Part {
 public:
  OptionPart(const Element& element, forms::OptionButton& control, const Look& look);
  std::string caption() const override { return content(); }
  void command(WORD code) override;
  void click() override {}  // it reports clicks by itself

 protected:
  void show() override;
  Size natural() const override;

 private:
  forms::OptionButton& control_;
};

}  // namespace kartix::adapters::native
