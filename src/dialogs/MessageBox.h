#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

class Runtime;

/// A message for the clerk with one, two or three buttons, an icon and a system sound.
///
/// Load it, set its caption and the text of `Label1`, call `Setup`, show it modally, read `result`.
class MessageBox : public forms::Form {
 public:
  explicit MessageBox(Runtime& runtime);

  /// Chooses layout, icon and sound, and plays the sound. `buttons`: 2 for `caption1` and `caption2` ("OK" and
  /// "Abbrechen" when empty), 3 for "Ja", "Nein" and "Abbrechen", else "OK" alone. `icon`: 0 question, 1 warning,
  /// 2 error, else none.
  void Setup(int buttons, int icon, const std::string& caption1, const std::string& caption2);

  /// -2 while nothing has been pressed, and when it could not be shown, 1 for button 0 and for "OK", 0 for button 1,
  /// -1 for button 2 and the close box.
  std::int16_t result = notPressed;

  forms::Label Label1{*this, "Label1"};
  forms::ControlArray<forms::Picture> Picture1{*this, "Picture1", {0, 1, 2}};
  forms::ControlArray<forms::Button> Button{*this, "Button", {0, 1, 2}};

 protected:
  void onLoad() override;
  void onCloseBox() override;

 private:
  static constexpr std::int16_t notPressed = -2;
  static constexpr std::int16_t closed = -1;

  void press(int index);
  void lay(int index, bool visible, std::string_view caption);
  void playSound() const;

  Runtime& runtime_;
  std::string SoundName_;
};

/// The plain box of the database connection: a text and "OK".
class SystemMessageBox : public forms::Form {
 public:
  SystemMessageBox(std::string caption, std::string text);

  forms::Label Label1{*this, "Label1"};
  forms::ControlArray<forms::Button> Button{*this, "Button", {0}};
};

}  // namespace kartix
