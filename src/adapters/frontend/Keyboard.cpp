#include "adapters/frontend/Keyboard.h"

#include <algorithm>

namespace kartix::adapters::frontend {
namespace {

/// A key of which nothing was heard for so long is pressed anew. Longer than the pause between two repetitions of a
/// held key, and shorter than that between two presses of somebody who reads in between.
constexpr std::chrono::milliseconds letAlone{300};

/// The release of a key goes unheard when it comes while the focus changes: a key of which nothing more is heard is
/// taken for released after this time, which is longer than the pause before a held key is repeated.
constexpr std::chrono::milliseconds silent{1100};

}  // namespace

void Keyboard::press(std::uint32_t key, Time made, bool repetition) {
  const auto known = keys_.find(key);
  const bool fresh = !repetition && (known == keys_.end() || made - known->second.last >= letAlone);
  const Time since = fresh || known == keys_.end() ? made : known->second.since;
  keys_[key] = {since, made, true};
  press_ = {made, since, fresh};
}

void Keyboard::release(std::uint32_t key, Time made) {
  const auto known = keys_.find(key);
  keys_[key] = {known == keys_.end() ? made : known->second.since, made, false};
}

bool Keyboard::isDown(std::uint32_t key, Time made) const {
  const auto known = keys_.find(key);
  return known != keys_.end() && known->second.down && made - known->second.last < silent;
}

bool Keyboard::types(const Readiness& window) const {
  return !press_ || (window.since() && press_->since >= *window.since());
}

bool Keyboard::counts(const Readiness& window) const {
  if (!press_) return true;
  if (!press_->fresh || !window.since() || press_->made < *window.since()) return false;
  return !window.workedUntil() || !anyDownSince(*window.workedUntil());
}

bool Keyboard::anyDownSince(Time time) const {
  return std::any_of(keys_.begin(), keys_.end(), [&](const auto& each) {
    const Key& key = each.second;
    return key.since < time && press_->made - key.last < (key.down ? silent : letAlone);
  });
}

}  // namespace kartix::adapters::frontend
