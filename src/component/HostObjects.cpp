#include "component/HostObjects.h"

#include <exception>
#include <utility>

namespace kartix {
namespace {

/// The host's code may throw what it likes: it ends as the one failure that the component knows.
template <class Action>
auto guarded(Action action) {
  try {
    return action();
  } catch (const std::exception& error) {
    throw platform::AutomationError(error.what());
  } catch (...) {
    throw platform::AutomationError("Unbekannter Fehler");
  }
}

class HostObject final : public platform::AutomationObject {
 public:
  explicit HostObject(std::unique_ptr<kartix::AutomationObject> object) : object_(std::move(object)) {}

  platform::Value call(std::string_view member, const std::vector<platform::Value>& arguments) override {
    return guarded([&] { return object_->call(std::string(member), arguments); });
  }

 private:
  std::unique_ptr<kartix::AutomationObject> object_;
};

}  // namespace

AutomationObject::~AutomationObject() = default;

void HostObjects::set(const std::string& progId, Factory create) {
  const std::lock_guard lock(guard_);
  if (create) {
    classes_.insert_or_assign(progId, std::move(create));
  } else {
    classes_.erase(progId);
  }
}

HostObjects::Factory HostObjects::find(std::string_view progId) {
  const std::lock_guard lock(guard_);
  const auto found = classes_.find(progId);
  return found == classes_.end() ? nullptr : found->second;
}

std::unique_ptr<platform::AutomationObject> HostObjects::createObject(std::string_view progId) {
  const Factory create = find(progId);
  if (!create && installed_ && installed_->has(progId)) return installed_->createObject(progId);
  platform::ObjectClasses* const substitutes = substitutes_;
  if (!create && substitutes) return substitutes->createObject(progId);
  auto object = create ? guarded([&] { return create(); }) : nullptr;
  if (!object) {
    throw platform::AutomationError("Objekterstellung durch ActiveX-Komponente nicht möglich: " +
                                    std::string(progId));
  }
  return std::make_unique<HostObject>(std::move(object));
}

}  // namespace kartix
