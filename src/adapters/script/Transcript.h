#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ObjectClasses.h"

namespace kartix::forms {
class Form;
}

namespace kartix::adapters {

struct Step;

/// Writes what a clerk saw and did, and what the host's objects were asked, as JSON lines in the order in which it
/// happened. Each line reaches the stream at once. Passwords appear as "*****".
class Transcript {
 public:
  /// `out` outlives the transcript.
  explicit Transcript(std::ostream& out) : out_(out) {}

  void show(const forms::Form& form);
  /// The window waits for the clerk: every control with its values.
  void ready(const forms::Form& form);
  /// `form` is the window in which `step` is taken.
  void step(const Step& step, const forms::Form& form);
  void progress(const forms::Form& form, int value, std::string_view text);
  /// Never throws: a line that cannot be written leaves the stream bad.
  void hide(const forms::Form& form) noexcept;
  /// The script did not fit what the clerk saw in `form`, the last of the `open` windows.
  void mismatch(std::string_view text, const std::vector<forms::Form*>& open, const forms::Form& form);
  /// The script did not fit, and no window was there.
  void mismatch(std::string_view text);

  void sound(std::string_view alias);

  void objectReturned(std::string_view progId, std::string_view member, const std::vector<platform::Value>& arguments,
                      const platform::Value& returned);
  void objectFailed(std::string_view progId, std::string_view member, const std::vector<platform::Value>& arguments,
                    std::string_view error);

 private:
  std::ostream& out_;
};

}  // namespace kartix::adapters
