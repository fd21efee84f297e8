#include "automation/HostClass.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/Failure.h"
#include "automation/Values.h"
#include "common/Values.h"
#include "kartix/ObjectClasses.h"

namespace kartix::automation {
namespace {

/// An object of the host's behind its C functions.
class CObject final : public AutomationObject {
 public:
  CObject(const kartix_host_class& type, void* object) : type_(type), object_(object) {}
  ~CObject() override {
    if (type_.release) type_.release(object_);
  }
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

  AutomationValue call(const std::string& member, const std::vector<AutomationValue>& arguments) override {
    std::vector<std::string> places(arguments.size());
    std::vector<kartix_value> values;
    values.reserve(arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) values.push_back(toC(arguments[i], places[i]));
    kartix_value result = kartix_empty();
    const auto count = static_cast<std::int32_t>(values.size());
    const bool failed = type_.call(object_, member.c_str(), values.data(), count, &result) != 0;
    AutomationValue value = fromC(result, "the result of " + member);
    if (failed) throw std::runtime_error(toText(value));
    return value;
  }

 private:
  kartix_host_class type_;
  void* object_;
};

}  // namespace

void registerClass(std::string_view name, const kartix_host_class* hostClass) {
  if (!hostClass) return registerAutomationClass(std::string(name), {});
  if (!hostClass->create || !hostClass->call) throw Failure(KARTIX_NULL_POINTER, "create or call is NULL");
  registerAutomationClass(std::string(name), [type = *hostClass]() -> std::unique_ptr<AutomationObject> {
    void* const object = type.create(type.context);
    if (!object) return nullptr;
    return std::make_unique<CObject>(type, object);
  });
}

}  // namespace kartix::automation
