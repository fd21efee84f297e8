#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "component/Dispatch.h"
#include "kartix/automation.h"

namespace kartix::automation {

/// An object that a host holds, with the texts that the last call on it gave out.
struct HeldObject {
  explicit HeldObject(dispatch::Object created) : object(std::move(created)) {}

  dispatch::Object object;
  std::vector<platform::Value> written;
  platform::Value result;
};

/// The objects that the hosts of this process hold, by their numbers.
class Objects {
 public:
  static Objects& ofProcess();

  kartix_object create(std::string_view className);
  /// The object stays for as long as someone holds it, also when it is released meanwhile. Raises `Failure`.
  std::shared_ptr<HeldObject> find(kartix_object number);
  void release(kartix_object number);

 private:
  std::mutex mutex_;
  std::map<kartix_object, std::shared_ptr<HeldObject>> objects_;
  kartix_object last_ = 0;
};

}  // namespace kartix::automation
