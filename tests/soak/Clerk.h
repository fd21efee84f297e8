#pragma once

#include <string>
#include <vector>

#include "platform/forms/Form.h"
#include "support/TestMachine.h"

namespace kartix::test {

/// A clerk who wants every operation carried out: starts it once, says yes to every question, and closes the window
/// when it is back.
class Clerk : public IdleParts {
 public:
  ShowResult showModal(forms::Form& form) override;

  /// In place of inquiring, changes the gateway's password to this one, unless it is empty.
  void wantPassword(std::string password) { newPassword_ = std::move(password); }

  /// The messages since the last call, as "caption|text".
  std::vector<std::string> takeMessages() { return std::exchange(messages_, {}); }

 private:
  void answer(forms::Form& message);

  std::vector<std::string> messages_;
  std::string newPassword_;
};

}  // namespace kartix::test
