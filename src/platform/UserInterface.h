#pragma once

#include <string_view>

namespace kartix::forms {
class Form;
}

namespace kartix::platform {

/// A front end: shows forms to a clerk, or plays one.
class UserInterface {
 public:
  enum class ShowResult {
    ended,        ///< the form was shown and has hidden itself
    noDisplay,    ///< there is nothing to show it on; the form was not shown
    noWidgets,    ///< nor was it: the host's application object is not one for windows
    otherThread,  ///< nor was it: windows belong to another thread of the host
    notLoaded,    ///< nor was it: what shows windows is not installed whole
  };

  virtual ~UserInterface() = default;

  /// Shows a loaded form modally and returns when it is hidden. Fires the form's start-up timer once the window
  /// has been painted. Calls may nest: a handler of one form may show another.
  virtual ShowResult showModal(forms::Form& form) = 0;

  /// Lets open windows paint what has changed. Takes no input from the clerk.
  virtual void repaint() = 0;

  /// Mouse pointer of all windows: hourglass or normal.
  virtual void setHourglass(bool on) = 0;

  /// Centres the form on the primary screen, activates it and brings it to the front; ignores every failure. A
  /// form that is not shown yet is centred when it is.
  virtual void centerForm(forms::Form& form) = 0;

  /// Told at the end of each progress call of a form: the bar's value (0 to 100) and the status text after it.
  virtual void progressReported(const forms::Form& form, int value, std::string_view status) = 0;
};

}  // namespace kartix::platform
