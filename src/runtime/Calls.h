#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kartix {

/// Who may use a component: one thread, that of its first call, and on it one exclusive call at a time. Nothing else
/// of a component may be touched on another thread.
class Calls {
 public:
  /// True on the component's own thread, which the first call to ask this makes it. Safe on every thread.
  bool onOwnThread();

  /// Leaves `action` to the own thread, which does it in its next call, or drops it when memory has run out. Safe on
  /// every thread.
  void leaveToOwnThread(std::function<void()> action) noexcept;
  /// Does what other threads have left. On the own thread only.
  void catchUp();

  /// True once the calling thread, which has made a call or loaded the library, loses its objects of static storage:
  /// with the main thread, the process is ending and the libraries underneath may be gone.
  static bool threadEnds();

  /// The turn of an exclusive call, taken on the own thread when no other is running.
  class Turn {
   public:
    Turn(Calls& calls, const void* caller);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    bool taken() const { return taken_; }
    /// The object that the call was made on has gone meanwhile.
    bool callerGone() const { return calls_.caller_ == nullptr; }

   private:
    Calls& calls_;
    bool taken_;
  };

  /// `caller` goes. True when it has the turn; the end of the call is then the end of the object too.
  bool leaveInTurn(const void* caller);

 private:
  std::atomic<std::thread::id> owner_;
  bool running_ = false;
  const void* caller_ = nullptr;

  std::mutex guard_;  ///< of `left_`
  std::vector<std::function<void()>> left_;
  std::atomic<bool> anyLeft_ = false;
};

}  // namespace kartix
