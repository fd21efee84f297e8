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

/// The classes that the host has registered, and behind them those that step in for a class it has not. Both may be
/// set on any thread. A failure of one of its objects is passed on as `AutomationError`.
class HostObjects : public platform::ObjectClasses {
 public:
  using Factory = std::function<std::unique_ptr<AutomationObject>()>;

  /// Sets or, with an empty `create`, removes a class.
  void set(const std::string& progId, Factory create);

  /// Creates what the host has not registered, from now on. `classes` outlives this object.
  void setSubstitutes(platform::ObjectClasses& classes) { substitutes_ = &classes; }

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;

 private:
  Factory find(std::string_view progId);

  std::mutex guard_;  ///< of `classes_`
  std::map<std::string, Factory, std::less<>> classes_;
  std::atomic<platform::ObjectClasses*> substitutes_ = nullptr;
};

}  // namespace kartix
