#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "kartix/Automation.h"
#include "platform/ObjectClasses.h"

namespace kartix {

/// The classes that the host has registered. A failure of one of its objects is passed on as `AutomationError`.
class HostObjects : public platform::ObjectClasses {
 public:
  using Factory = std::function<std::unique_ptr<AutomationObject>()>;

  /// Sets or, with an empty `create`, removes a class.
  void set(const std::string& progId, Factory create);

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;

 private:
  std::map<std::string, Factory, std::less<>> classes_;
};

}  // namespace kartix
