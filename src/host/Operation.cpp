#include "host/Operation.h"

#include <array>

#include "common/Values.h"

namespace kartix::host {

dispatch::Object makeKartix(Component& component) { return {dispatch::classNamed("Kartix"), component}; }

bool callInit(dispatch::Object& kartix, const std::string& clerk, const std::string& person) {
  std::array<dispatch::Value, 2> arguments = {clerk, person};
  return std::get<bool>(kartix.call("init", arguments));
}

std::int32_t callOperation(dispatch::Object& kartix, const std::string& operation, const std::string& lfdnr) {
  if (operation == "none") return -1;
  std::array<dispatch::Value, 1> arguments = {lfdnr};
  return toNumber(kartix.call(operation, arguments));
}

}  // namespace kartix::host
