#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/Form.h"

namespace kartix::tests {

/// A form with the controls of one of the real windows and contents of usual length.
class SampleForm : public forms::Form {
 public:
  using Form::Form;

  template <class C>
  C& add(const std::string& name, const std::string& text = {}) {
    auto control = std::make_unique<C>(*this, name);
    C& added = *control;
    added.setText(text);
    owned_.push_back(std::move(control));
    return added;
  }
  template <class C>
  C& get(const std::string& name) {
    return dynamic_cast<C&>(*find(name));
  }

 private:
  std::deque<std::unique_ptr<forms::Control>> owned_;
};

/// Every window, filled.
std::vector<std::unique_ptr<SampleForm>> sampleForms();
std::unique_ptr<SampleForm> sampleForm(const std::string& name);

}  // namespace kartix::tests
