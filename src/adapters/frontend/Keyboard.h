#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>

#include "adapters/frontend/InputClock.h"

namespace kartix::adapters::frontend {

/// Since when the clerk sees what a key will do in a window.
class Readiness {
 public:
  using Time = InputClock::Time;

  /// The window has been painted for the first time.
  void seen(Time time) { since_ = time; }
  /// The form was at work until now, and the clerk could not know what a key would do.
  void worked(Time until) {
    worked_ = until;
    if (since_) since_ = until;
  }

  std::optional<Time> since() const { return since_; }
  std::optional<Time> workedUntil() const { return worked_; }

 private:
  std::optional<Time> since_;
  std::optional<Time> worked_;
};

/// What is known of the keys, and with it which presses of Enter, Space, Escape, F2 and of letters with Alt are none
/// of the clerk's for what is shown:
///
/// - a key that is held down. What is sent for it looks like any other press on a busy machine, so a press counts
/// only
///   when nothing was heard of the key for a while before it;
/// - a press made before the window was painted, or while one of its handlers was at work;
/// - in a window that was at work, any press as long as a key is still down from before.
///
/// In text fields the keys type and may be held; only one that is held from before types nothing.
class Keyboard {
 public:
  using Time = InputClock::Time;

  /// `repetition` when it is known to be one.
  void press(std::uint32_t key, Time made, bool repetition);
  void release(std::uint32_t key, Time made);

  /// True when the last that was heard of the key, not long before `made`, was that it is down.
  bool isDown(std::uint32_t key, Time made) const;

  /// Whether the last press may make something happen in a window.
  bool counts(const Readiness& window) const;
  /// Whether it may type something there.
  bool types(const Readiness& window) const;

 private:
  /// What is known of a key, as far back as it was never let alone.
  struct Key {
    Time since;         ///< the first event
    Time last;          ///< the last one
    bool down = false;  ///< the last one was a press
  };
  struct Press {
    Time made;
    Time since;  ///< of its key
    bool fresh = false;
  };

  bool anyDownSince(Time time) const;

  std::map<std::uint32_t, Key> keys_;
  std::optional<Press> press_;  ///< the last one
};

}  // namespace kartix::adapters::frontend
