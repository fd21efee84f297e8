#include "adapters/canberra/Canberra.h"

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <utility>

namespace kartix::adapters {
namespace {

struct Context;
using Create = int (*)(Context**);
using Destroy = int (*)(Context*);
using Play = int (*)(Context*, std::uint32_t, ...);

/// Names of sounds as the themes of free desktops have them.
constexpr std::array<std::pair<std::string_view, const char*>, 3> soundNames = {
    {{"SystemQuestion", "dialog-question"}, {"SystemExclamation", "dialog-warning"}, {"SystemHand", "dialog-error"}}};

constexpr int succeeded = 0;

template <class Function>
Function symbol(void* library, const char* name) {
  return reinterpret_cast<Function>(dlsym(library, name));
}

class CanberraSounds final : public platform::SoundPlayer {
 public:
  CanberraSounds() = default;
  CanberraSounds(const CanberraSounds&) = delete;
  CanberraSounds& operator=(const CanberraSounds&) = delete;

  ~CanberraSounds() override {
    if (context_) destroy_(context_);
    // The library stays loaded: its sound threads may still be on their way out.
  }

  void playSound(std::string_view alias) override {
    for (const auto& [known, name] : soundNames) {
      if (known != alias || !ready()) continue;
      // Playing is asynchronous and leaves a sound that is under way alone.
      play_(context_, 0, "event.id", name, "media.role", "event", static_cast<const char*>(nullptr));
    }
  }

 private:
  bool ready() {
    if (tried_) return context_ != nullptr;
    tried_ = true;
    void* const library = dlopen("libcanberra.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!library) return false;
    const auto create = symbol<Create>(library, "ca_context_create");
    destroy_ = symbol<Destroy>(library, "ca_context_destroy");
    play_ = symbol<Play>(library, "ca_context_play");
    if (!create || !destroy_ || !play_ || create(&context_) != succeeded) context_ = nullptr;
    return context_ != nullptr;
  }

  bool tried_ = false;
  Context* context_ = nullptr;
  Destroy destroy_ = nullptr;
  Play play_ = nullptr;
};

}  // namespace

std::unique_ptr<platform::SoundPlayer> makeCanberraSounds() { return std::make_unique<CanberraSounds>(); }

}  // namespace kartix::adapters
