#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "kartix/ObjectClasses.h"
#include "platform/ObjectClasses.h"

namespace kartix {

/// The classes that the host has registered, behind them those that are installed on the machine, and at last those
/// that step in for a class that is neither. Classes and substitutes may be set on any thread. A failure of one of
/// the host's objects is passed on as `AutomationError`.
class HostObjects : public platform::ObjectClasses {
 public:
  using Factory = std::function<std::unique_ptr<AutomationObject>()>;

  /// `installed` may be nothing; it outlives this object.
  explicit HostObjects(platform::InstalledClasses* installed = nullptr) : installed_(installed) {}

  /// Sets or, with an empty `create`, removes a class.
  void set(const std::string& progId, Factory create);

  /// Creates what is neither registered nor installed, from now on. `classes` outlives this object.
  void setSubstitutes(platform::ObjectClasses& classes) { substitutes_ = &classes; }

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;

 private:
  Factory find(std::string_view progId);

  platform::InstalledClasses* installed_;
  std::mutex guard_;  ///< of `classes_`
  std::map<std::string, Factory, std::less<>> classes_;
  std::atomic<platform::ObjectClasses*> substitutes_ = nullptr;
};

}  // namespace kartix
