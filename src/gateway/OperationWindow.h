#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kartix {

/// The window from which an order, a cancellation or a notification is sent.
class OperationWindow {
 public:
  virtual ~OperationWindow() = default;

  /// Moves the progress bar to `percent` (0 to 100), unit by unit when `animate`; an empty text leaves the status.
  virtual void ShowProgress(std::int16_t percent, std::string_view text, bool animate) = 0;

  /// The gateway password as it stands in the window.
  virtual std::string password() const = 0;

  /// Shows a refusal with its list of errors and returns when the clerk has read it. `summary` holds code and text of
  /// the answer, `list` the errors.
  virtual void showErrorList(const std::string& summary, const std::string& list) = 0;
};

}  // namespace kartix
