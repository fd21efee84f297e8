#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "kartix/AutomationValue.h"

namespace kartix::platform {

/// A value as it passes between the component and an automation object.
using Value = AutomationValue;

/// Raised when a class cannot be created or a member fails; `what()` is the system's text for the clerk.
class AutomationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// An automation object of the host application, called by member name.
class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  /// Calls `member`. Raises `AutomationError` when it is unknown or fails.
  virtual Value call(std::string_view member, const std::vector<Value>& arguments) = 0;
};

/// Creates automation objects by class name.
class ObjectClasses {
 public:
  virtual ~ObjectClasses() = default;
  /// A new object. Raises `AutomationError` when there is no such class or it cannot be created.
  virtual std::unique_ptr<AutomationObject> createObject(std::string_view progId) = 0;
};

/// The classes that are installed on the machine for every program.
class InstalledClasses : public ObjectClasses {
 public:
  virtual bool has(std::string_view progId) = 0;
};

}  // namespace kartix::platform
