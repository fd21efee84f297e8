#pragma once

#include <memory>
#include <optional>

#include "platform/UserInterface.h"

namespace kartix::adapters::qt {

/// The application object that windows need: the host's, or one made when the host has none. There can be one in a
/// process, so ours is there only for as long as it must be.
class Application {
 public:
  enum class Fallback {
    none,       ///< no windows without a display
    offScreen,  ///< windows in memory when there is no display
  };

  explicit Application(Fallback fallback);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  using ShowResult = platform::UserInterface::ShowResult;

  /// Why no window can be opened on the calling thread; nothing when one can, after making the application object if
  /// need be.
  std::optional<ShowResult> obstacle();
  /// No window is open any more: lets the application object go if it is not the host's; True when it did. A host may
  /// make one of its own afterwards, and the end of the process finds none of ours.
  bool release();
  bool ready() { return !obstacle(); }

 private:
  struct Own;

  Fallback fallback_;
  std::unique_ptr<Own> own_;
};

}  // namespace kartix::adapters::qt
