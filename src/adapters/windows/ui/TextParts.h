#pragma once

#include <optional>

#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

/// Label. One that wraps its words gets the width that suits its text; what is too high for a screen is scrolled.
class LabelPart : public Part {
 public:
  LabelPart(const Element& element, forms::Control* control, const Look& look);
  std::string caption() const override;
  void place(const Box& box) override;
  /// The control that the label belongs to.
  void setPartner(const Part& partner) { partner_ = &partner; }

 protected:
  void show() override;
  Size natural() const override;

 private:
  bool tooHigh() const;

  const Part* partner_ = nullptr;
  bool scrolls_;
};

/// Text that is typed, of one line or of several.
class TextPart : public Part {
 public:
  TextPart(const Element& element, forms::TextField& control, const Look& look);
  void place(const Box& box) override;
  void command(WORD code) override;
  bool takesText() const override { return true; }
  bool takesLines() const override;
  bool isReadOnly() const override { return control_.readOnly(); }

 protected:
  void show() override;
  Size natural() const override;

 private:
  std::wstring shown() const;
  void edited();
  void fitScrollBar() const;

  forms::TextField& control_;
  std::optional<bool> readOnly_;  ///< as it is shown
};

}  // namespace kartix::adapters::native
