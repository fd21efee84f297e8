#pragma once

#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

class ProgressPart : public Part {
 public:
  ProgressPart(const Element& element, forms::ProgressBar& control, const Look& look);

 protected:
  void show() override;
  Size natural() const override { return {0, look().pixels(element().most.height)}; }

 private:
  forms::ProgressBar& control_;
};

class StatusPart : public Part {
 public:
  StatusPart(const Element& element, forms::StatusBar& control, const Look& look);

 protected:
  void show() override;
  Size natural() const override;

 private:
  std::wstring shown_;
};

/// The frame around a group of controls, with its title.
class GroupPart : public Part {
 public:
  GroupPart(const Element& element, const Look& look);

 protected:
  void show() override { setText(marked()); }
};

}  // namespace kartix::adapters::native
