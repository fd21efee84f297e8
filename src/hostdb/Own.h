#pragma once

#include <memory>

namespace kartix {

/// Makes public objects for a component (or its runtime) other than the one that the process shares. Hosts have no
/// such component, and no such constructor.
struct Own {
  template <class Object, class Home>
  static Object of(Home& home) {
    return Object(home);
  }
  template <class Object, class Home>
  static std::unique_ptr<Object> newOf(Home& home) {
    return std::unique_ptr<Object>(new Object(home));
  }
};

}  // namespace kartix
