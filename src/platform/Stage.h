#pragma once

#include <string>

namespace kartix::forms {
class Form;
}

namespace kartix::platform {

/// Shows the forms that a script plays, on a display or off screen, and keeps pictures of them. It only mirrors:
/// no input reaches a form through it, and it neither attaches itself to a form nor fires its timer.
class Stage {
 public:
  virtual ~Stage() = default;

  /// True when a person can see the windows.
  virtual bool onScreen() const = 0;

  /// Opens a window for `form` and paints it. The form must be hidden again before it is destroyed.
  virtual void show(forms::Form& form) = 0;
  /// Paints what has changed since. Does nothing for a form that is not shown here.
  virtual void update(forms::Form& form) = 0;
  virtual void hide(forms::Form& form) = 0;

  /// Writes a PNG of the form's window, title bar included, to the path `png` (UTF-8). False when the form is not
  /// shown here or the file was not written.
  virtual bool savePicture(forms::Form& form, const std::string& png) = 0;
};

}  // namespace kartix::platform
