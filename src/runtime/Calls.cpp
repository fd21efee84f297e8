#include "runtime/Calls.h"

#include <new>
#include <utility>

namespace kartix {
namespace {

thread_local bool ends = false;

/// Objects of a thread are destroyed before those of static storage.
struct ThreadEnd {
  ThreadEnd() = default;
  ~ThreadEnd() { ends = true; }
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
};

void watchThread() { static thread_local const ThreadEnd end; }

/// The C library takes memory to remember that, and ends the process when it has none. The thread that loads the
/// library, which makes the calls as a rule, has it remembered before there is anything to lose.
[[maybe_unused]] const bool loadingThreadWatched = (watchThread(), true);

}  // namespace

bool Calls::onOwnThread() {
  const std::thread::id caller = std::this_thread::get_id();
  std::thread::id owner;
  if (!owner_.compare_exchange_strong(owner, caller) && owner != caller) return false;
  watchThread();
  return true;
}

bool Calls::threadEnds() { return ends; }

void Calls::leaveToOwnThread(std::function<void()> action) noexcept {
  try {
    const std::lock_guard lock(guard_);
    left_.push_back(std::move(action));
    anyLeft_ = true;
  } catch (const std::bad_alloc&) {
    // The system does it at the end of the process.
  }
}

void Calls::catchUp() {
  if (!anyLeft_) return;
  std::vector<std::function<void()>> left;
  {
    const std::lock_guard lock(guard_);
    left.swap(left_);
    anyLeft_ = false;
  }
  for (const auto& action : left) action();
}

Calls::Turn::Turn(Calls& calls, const void* caller) : calls_(calls), taken_(!calls.running_) {
  if (!taken_) return;
  calls_.running_ = true;
  calls_.caller_ = caller;
}

Calls::Turn::~Turn() {
  if (!taken_) return;
  calls_.running_ = false;
  calls_.caller_ = nullptr;
}

bool Calls::leaveInTurn(const void* caller) {
  if (!running_ || caller_ != caller) return false;
  caller_ = nullptr;
  return true;
}

}  // namespace kartix
