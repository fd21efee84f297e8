#include "windows/ui/Play.h"

#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>

#include "adapters/windows/ui/NativeUi.h"
#include "platform/forms/Form.h"

namespace kartix::tests {
namespace {

void tell(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

/// A window with the controls of a real one. Its first button works for a while; its close box closes it the second
/// time only.
struct Step : forms::Form {
  explicit Step(std::string title) : Form("fStorno", title) {
    action.setText("Weiter");
    action.isDefault = true;
    cancel.setText("Abbrechen");
    for (forms::Control* each : {static_cast<forms::Control*>(&action), static_cast<forms::Control*>(&cancel),
                                 static_cast<forms::Control*>(&field)})
      each->onClick = [this, each] { hear(each->name()); };
    field.onChange = [this] { tell(caption() + " text " + field.text()); };
    Timer1.onTimer = [this] { tell(caption() + " begins"); };
    Timer1.start();
  }

  void hear(const std::string& what) {
    tell(caption() + " " + what);
    if (what == "Button[0]" && next) next();
  }
  void onCloseBox() override {
    tell(caption() + " close");
    if (++closed == 2) hide();
  }

  forms::TextField field{*this, "ZEVISPass"};
  forms::Button action{*this, "Button[0]"};
  forms::Button cancel{*this, "Button[1]"};
  std::function<void()> next;
  int closed = 0;
};

}  // namespace

void play() {
  const auto clerk = adapters::makeNativeUserInterface();
  Step first("Eins");
  Step second("Zwei");
  int times = 0;
  first.next = [&] {
    if (++times == 1) {
      // At work, as an exchange with the gateway is.
      for (const DWORD began = GetTickCount(); GetTickCount() - began < 3000; Sleep(20)) clerk->repaint();
      tell("Eins done");
    }
    if (times == 2) clerk->showModal(second);
  };
  clerk->showModal(first);
  tell("end");
}

}  // namespace kartix::tests
