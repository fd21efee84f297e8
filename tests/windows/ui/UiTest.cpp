#include <windows.h>
// After the header that it relies on.
#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <stdexcept>

#include "adapters/windows/ui/NativeUi.h"
#include "qt/SampleWindows.h"
#include "windows/ui/Play.h"

namespace kartix::tests {
namespace {

using forms::Button;
using forms::ComboBox;
using forms::OptionButton;
using forms::TextField;
using platform::UserInterface;

constexpr const wchar_t* ourClass = L"KartixWindow";

std::wstring textOf(HWND handle) {
  std::array<wchar_t, 1000> text{};
  return {text.data(), static_cast<std::size_t>(GetWindowTextW(handle, text.data(), static_cast<int>(text.size())))};
}

std::wstring classOf(HWND handle) {
  std::array<wchar_t, 100> name{};
  GetClassNameW(handle, name.data(), static_cast<int>(name.size()));
  return name.data();
}

std::vector<HWND> shownChildren(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if ((GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) children.push_back(child);
  }
  return children;
}

/// The `number`-th of the window's shown controls of a class, in the order of the tab key.
HWND child(HWND window, const wchar_t* className, int number = 0) {
  for (const HWND each : shownChildren(window)) {
    if (lstrcmpiW(classOf(each).c_str(), className) == 0 && number-- == 0) return each;
  }
  throw std::runtime_error("no such control");
}

RECT placeOf(HWND handle) {
  RECT place{};
  GetWindowRect(handle, &place);
  return place;
}

/// A host's window with a timer, in which `act` happens once one of our windows waits for the clerk.
class Host {
 public:
  Host()
      : window_(CreateWindowExW(0, WC_STATICW, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 200, 100, nullptr,
                                nullptr, nullptr, nullptr)) {
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetActiveWindow(window_);
  }
  ~Host() { DestroyWindow(window_); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  HWND window() const { return window_; }

  UserInterface::ShowResult show(UserInterface& clerk, forms::Form& form, std::function<void(HWND)> act) {
    act_ = std::move(act);
    form_ = &form;
    SetTimer(window_, 1, 300, [](HWND window, UINT, UINT_PTR timer, DWORD) {
      KillTimer(window, timer);
      reinterpret_cast<Host*>(GetWindowLongPtrW(window, GWLP_USERDATA))->act();
    });
    return clerk.showModal(form);
  }

 private:
  void act() {
    try {
      act_(FindWindowW(ourClass, nullptr));
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    form_->hide();
  }

  HWND window_;
  std::function<void(HWND)> act_;
  forms::Form* form_ = nullptr;
};

class NativeUi : public testing::Test {
 protected:
  std::unique_ptr<UserInterface> clerk = adapters::makeNativeUserInterface();
  SampleWindows samples{*clerk};
};

int textWidth(HWND handle, const std::wstring& text) {
  const HDC context = GetDC(handle);
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(handle, WM_GETFONT, 0, 0)));
  RECT room{};
  DrawTextW(context, text.c_str(), -1, &room, DT_CALCRECT);
  SelectObject(context, before);
  ReleaseDC(handle, context);
  return room.right;
}

/// Width that the text of a control needs; 0 where it may be wider than its place.
int needed(HWND handle) {
  const std::wstring kind = classOf(handle);
  const LONG style = GetWindowLongW(handle, GWL_STYLE);
  if (kind == WC_EDITW)
    return (style & (ES_PASSWORD | ES_MULTILINE)) != 0 ? 0 : textWidth(handle, textOf(handle)) + 6;
  if (kind == WC_BUTTONW) return textWidth(handle, textOf(handle)) + 12;
  if (kind == WC_COMBOBOXW) return textWidth(handle, textOf(handle)) + 20;
  const bool oneLine = kind == WC_STATICW && (style & SS_CENTERIMAGE) != 0;
  return oneLine ? textWidth(handle, textOf(handle)) : 0;
}

TEST_F(NativeUi, EveryWindowShowsAllOfItsControlsAtTheScaleOfTheScreen) {
  const std::string dpi = std::getenv("KARTIX_TEST_DPI");
  const std::string folder = std::getenv("KARTIX_TEST_PICTURES");
  const auto stage = adapters::makeNativeStage();
  ASSERT_TRUE(stage->onScreen());
  for (const auto& form : samples.all()) {
    SCOPED_TRACE(form->name());
    stage->show(*form);
    const HWND window = FindWindowW(ourClass, nullptr);
    ASSERT_TRUE(window);
    RECT inside{};
    GetClientRect(window, &inside);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&inside), 2);
    const auto children = shownChildren(window);
    for (const HWND each : children) {
      const RECT place = placeOf(each);
      const std::string text = testing::PrintToString(textOf(each));
      RECT common{};
      IntersectRect(&common, &place, &inside);
      EXPECT_TRUE(EqualRect(&common, &place)) << text;
      EXPECT_GE(place.right - place.left, needed(each)) << text;
      // Frames and the card hold others; they come last.
      for (const HWND other : children) {
        const RECT beside = placeOf(other);
        RECT both{};
        const bool apart = IntersectRect(&common, &place, &beside) == FALSE;
        UnionRect(&both, &place, &beside);
        const bool holds = EqualRect(&both, &place) || EqualRect(&both, &beside);
        EXPECT_TRUE(each == other || apart || holds) << text << testing::PrintToString(textOf(other));
      }
    }
    EXPECT_GT(inside.bottom - inside.top, 120 * std::stoi(dpi) / 96);
    std::string png = folder;
    EXPECT_TRUE(stage->savePicture(*form, png.append("/").append(form->name()).append(".png")));
    stage->hide(*form);
    EXPECT_FALSE(IsWindow(window));
  }
}

TEST_F(NativeUi, WhatIsTypedAndChosenReachesTheForm) {
  Host host;
  const auto start = samples.make("StartForm");
  auto& card = control<TextField>(*start, "Text[4]");
  auto& second = control<OptionButton>(*start, "XPOption[1]");
  int changes = 0;
  card.onChange = [&] { ++changes; };
  host.show(*clerk, *start, [&](HWND window) {
    const HWND edit = child(window, WC_EDITW, 1);
    for (const wchar_t key : {L'a', L'b', L'-', L'1'}) SendMessageW(edit, WM_CHAR, key, 0);
    EXPECT_EQ(card.text(), "AB1");
    EXPECT_EQ(textOf(edit), L"AB1");
    EXPECT_EQ(changes, 3);
    card.setText("a-b");
    EXPECT_EQ(textOf(edit), L"a-b");
    EXPECT_EQ(changes, 3);
    const HWND options[] = {child(window, WC_BUTTONW, 0), child(window, WC_BUTTONW, 1)};
    SendMessageW(options[1], BM_CLICK, 0, 0);
    EXPECT_TRUE(second.selected() && !control<OptionButton>(*start, "XPOption[0]").selected());
    second.setSelected(false);
    EXPECT_EQ(SendMessageW(options[1], BM_GETCHECK, 0, 0), BST_UNCHECKED);
    control<forms::ProgressBar>(*start, "Progress").setValue(77);
    EXPECT_EQ(SendMessageW(child(window, PROGRESS_CLASSW), PBM_GETPOS, 0, 0), 77);
  });
  const auto order = samples.make("Bestellung");
  auto& combo = control<ComboBox>(*order, "Combo[1]");
  combo.setText("Standard");
  host.show(*clerk, *order, [&](HWND window) {
    const HWND box = child(window, WC_COMBOBOXW, 1);
    SendMessageW(box, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(combo.text(), "Express");
    combo.setText("gibt es nicht");
    EXPECT_EQ(SendMessageW(box, CB_GETCURSEL, 0, 0), CB_ERR);
  });
  const auto hits = samples.make("Auswahl");
  auto& list = control<forms::ListView>(*hits, "Liste");
  std::vector<std::size_t> chosen;
  list.onDoubleClick = [&] { chosen.push_back(list.currentRow().value()); };
  list.onEnter = [&] { chosen.push_back(10 + list.currentRow().value()); };
  host.show(*clerk, *hits, [&](HWND window) {
    const HWND view = child(window, WC_LISTVIEWW);
    RECT row{LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(view, LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
    const LPARAM at = MAKELPARAM(row.left + 20, (row.top + row.bottom) / 2);
    SendMessageW(view, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageW(view, WM_LBUTTONUP, 0, at);
  });
  EXPECT_THAT(chosen, testing::ElementsAre(1U));
}

TEST_F(NativeUi, WindowsAreModalToTheHostsWhoseTimersRun) {
  Host host;
  SetFocus(host.window());
  const auto form = samples.make("fStorno");
  std::vector<std::string> heard;
  form->Timer1.onTimer = [&] { heard.emplace_back("painted"); };
  form->Timer1.start();
  control<Button>(*form, "Button[0]").onClick = [&] { heard.emplace_back("click"); };
  const auto result = host.show(*clerk, *form, [&](HWND window) {
    EXPECT_EQ(GetWindow(window, GW_OWNER), host.window());
    EXPECT_FALSE(IsWindowEnabled(host.window()));
    SendMessageW(child(window, WC_BUTTONW, 0), BM_CLICK, 0, 0);
  });
  EXPECT_EQ(result, UserInterface::ShowResult::ended);
  EXPECT_THAT(heard, testing::ElementsAre("painted", "click"));
  EXPECT_TRUE(IsWindowEnabled(host.window()));
  EXPECT_EQ(GetFocus(), host.window());
  EXPECT_FALSE(FindWindowW(ourClass, nullptr));
}

TEST_F(NativeUi, AHandlerThatThrowsAndAHostThatEndsEndTheWindow) {
  struct Failing : forms::Form {
    Failing() : Form("fStorno", "Fehler") {
      action.onClick = [] { throw std::runtime_error("kein Speicher"); };
    }
    void onCloseBox() override { closed = true; }
    void onFailure() override { result = -1; }
    Button action{*this, "Button[0]"};
    bool closed = false;
    int result = 0;
  };
  Host host;
  Failing failing;
  host.show(*clerk, failing, [&](HWND window) {
    SendMessageW(child(window, WC_BUTTONW, 0), BM_CLICK, 0, 0);
    EXPECT_FALSE(failing.shown());
  });
  EXPECT_EQ(failing.failure(), "kein Speicher");
  EXPECT_EQ(failing.result, -1);

  Failing closed;
  closed.Timer1.onTimer = [] { PostQuitMessage(7); };
  closed.Timer1.start();
  clerk->showModal(closed);
  EXPECT_TRUE(closed.closed);
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7);

  Failing destroyed;
  host.show(*clerk, destroyed, [&](HWND window) {
    DestroyWindow(window);
    EXPECT_FALSE(destroyed.shown());
  });
  EXPECT_TRUE(IsWindowEnabled(host.window()));
}

}  // namespace
}  // namespace kartix::tests

int main(int argc, char** argv) {
  SetProcessDPIAware();
  if (argc == 2 && std::string_view(argv[1]) == "play") {
    kartix::tests::play();
    return 0;
  }
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
