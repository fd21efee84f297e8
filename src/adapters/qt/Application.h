#pragma once

#include <memory>

namespace kartix::adapters::qt {

/// The application object that windows need: the host's, or one made when the host has none.
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

  /// True when windows can be opened on the calling thread, after making the application object if need be.
  bool ready();

 private:
  struct Own;
  Fallback fallback_;
  std::unique_ptr<Own> own_;
};

}  // namespace kartix::adapters::qt
