#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "component/Component.h"
#include "platform/forms/Form.h"
#include "support/TempDir.h"

namespace kartix::tests {

/// The windows of the component, filled with contents of usual length. They are not loaded, so that nothing starts in
/// them by itself.
class SampleWindows {
 public:
  explicit SampleWindows(platform::UserInterface& userInterface);

  std::unique_ptr<forms::Form> make(std::string_view name);
  std::vector<std::unique_ptr<forms::Form>> all();

 private:
  test::TempDir directory_;
  Component component_;
};

/// A control of a form, which must have it.
template <class C>
C& control(const forms::Form& form, std::string_view name) {
  return dynamic_cast<C&>(*form.find(name));
}

}  // namespace kartix::tests
