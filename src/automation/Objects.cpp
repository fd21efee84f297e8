#include "automation/Objects.h"

#include "automation/Failure.h"
#include "component/Component.h"

namespace kartix::automation {
namespace {

Failure unknown(kartix_object number) {
  return {KARTIX_UNKNOWN_OBJECT, "no object, or a released one: " + std::to_string(number)};
}

}  // namespace

Objects& Objects::ofProcess() {
  // The component comes first, so that it ends last: objects that are left over at the end need it.
  Component::shared();
  static Objects objects;
  return objects;
}

kartix_object Objects::create(std::string_view className) {
  const dispatch::Class& type = dispatch::classNamed(className);
  auto held = std::make_shared<HeldObject>(dispatch::Object(type, Component::shared()));
  const std::lock_guard lock(mutex_);
  objects_.emplace(last_ + 1, std::move(held));
  return ++last_;
}

std::shared_ptr<HeldObject> Objects::find(kartix_object number) {
  const std::lock_guard lock(mutex_);
  const auto found = objects_.find(number);
  if (found == objects_.end()) throw unknown(number);
  return found->second;
}

void Objects::release(kartix_object number) {
  std::shared_ptr<HeldObject> released;  // ends after the lock does
  const std::lock_guard lock(mutex_);
  const auto found = objects_.find(number);
  if (found == objects_.end()) throw unknown(number);
  released = std::move(found->second);
  objects_.erase(found);
}

}  // namespace kartix::automation
