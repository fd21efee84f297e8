#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace kartix::adapters::dbe {

/// Objects by a 16-bit handle of at least 1.
template <typename Object>
class Handles {
 public:
  /// Handle of a new object, or -1 when there are too many.
  std::int16_t add(Object object) {
    if (objects_.size() >= static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) return -1;
    do {
      last_ =
          last_ == std::numeric_limits<std::int16_t>::max() ? std::int16_t{1} : static_cast<std::int16_t>(last_ + 1);
    } while (objects_.contains(last_));
    objects_.emplace(last_, std::move(object));
    return last_;
  }

  Object* find(std::int16_t handle) {
    const auto found = objects_.find(handle);
    return found == objects_.end() ? nullptr : &found->second;
  }

  bool remove(std::int16_t handle) { return objects_.erase(handle) == 1; }

  template <typename Condition>
  void removeIf(Condition condition) {
    std::erase_if(objects_, [&](auto& entry) { return condition(entry.second); });
  }

 private:
  std::map<std::int16_t, Object> objects_;
  std::int16_t last_ = 0;
};

}  // namespace kartix::adapters::dbe
