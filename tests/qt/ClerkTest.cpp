#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>
#include <stdexcept>
#include <utility>

#include "adapters/qt/Display.h"
#include "qt/QtFixture.h"

namespace kartix::tests {
namespace {

using forms::Button;
using forms::ComboBox;
using forms::ListView;
using forms::OptionButton;
using forms::TextField;

/// What a clerk does in a window, and what the form hears of it.
class Clerk : public QtWindows {};

TEST_F(Clerk, KeyFilterWorksOnTypedAndPastedText) {
  const auto form = samples.make("StartForm");
  auto& field = control<TextField>(*form, "Text[4]");
  int changes = 0;
  field.onChange = [&] { ++changes; };
  show(*form, [&](QDialog& window) {
    auto& edit = widget<QLineEdit>(window, "Text[4]");
    QTest::keyClicks(&edit, "ab-1");
    EXPECT_EQ(field.text(), "AB1");
    EXPECT_EQ(changes, 3);
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(field.text(), "AB");
    QGuiApplication::clipboard()->setText("x-9 ä\nz");
    edit.setCursorPosition(1);
    edit.paste();
    EXPECT_EQ(field.text(), "AX9ZB");
    EXPECT_EQ(edit.text(), "AX9ZB");
    EXPECT_EQ(edit.cursorPosition(), 4);
    EXPECT_EQ(changes, 5);
    edit.setSelection(1, 3);
    QKeyEvent umlaut(QEvent::KeyPress, Qt::Key_Odiaeresis, Qt::NoModifier, "ö");
    QApplication::sendEvent(&edit, &umlaut);
    EXPECT_EQ(field.text(), "AB");
    // Text that the component sets is not filtered and raises nothing.
    changes = 0;
    field.setText("a-b");
    EXPECT_EQ(edit.text(), "a-b");
    EXPECT_EQ(changes, 0);
  });
}

TEST_F(Clerk, LinesGoAsTheFormKnowsThem) {
  const auto form = samples.make("Mitteilung");
  auto& text = control<TextField>(*form, "Textbox[0]");
  show(*form, [&](QDialog& window) {
    auto& edit = widget<QPlainTextEdit>(window, "Textbox[0]");
    edit.selectAll();
    QTest::keyClicks(&edit, "a");
    QTest::keyClick(&edit, Qt::Key_Return);
    QTest::keyClicks(&edit, "b");
    EXPECT_EQ(text.text(), "a\r\nb");
    EXPECT_TRUE(form->shown()) << "Enter is a line break here";
  });
}

TEST_F(Clerk, PasswordsAreMaskedAndReadOnlyFieldsTakeNothing) {
  const auto form = samples.make("ZEVISPassChange");
  show(*form, [&](QDialog& window) {
    for (const char* name : {"Text[0]", "Text[1]", "Text[2]"}) {
      auto& edit = widget<QLineEdit>(window, name);
      EXPECT_EQ(edit.echoMode(), QLineEdit::Password);
      EXPECT_FALSE(edit.displayText().contains(u"geheim"));
    }
    auto& account = widget<QLineEdit>(window, "Text[3]");
    QTest::keyClicks(&account, "x");
    EXPECT_EQ(control<TextField>(*form, "Text[3]").text(), "argo01");
  });
}

TEST_F(Clerk, DropDownListTakesItsEntriesOnly) {
  const auto form = samples.make("Bestellung");
  auto& combo = control<ComboBox>(*form, "Combo[1]");
  combo.setText("Standard");
  std::string chosen;
  combo.onChange = [&] { chosen = combo.text(); };
  show(*form, [&](QDialog& window) {
    auto& box = widget<QComboBox>(window, "Combo[1]");
    EXPECT_FALSE(box.isEditable());
    QTest::keyClicks(&box, "exE");
    EXPECT_EQ(combo.text(), "Standard");
    EXPECT_EQ(box.currentText(), "Standard");
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(chosen, "Express");
    combo.setText("");
    EXPECT_EQ(box.currentIndex(), -1) << "no entry is preset";
    combo.setText("gibt es nicht");
    EXPECT_EQ(box.currentIndex(), -1);
  });
}

TEST_F(Clerk, ListIsChosenFromByDoubleClickAndEnter) {
  const auto form = samples.make("Auswahl");
  auto& list = control<ListView>(*form, "Liste");
  std::vector<std::string> heard;
  const auto row = [&] { return std::to_string(list.currentRow().value()); };
  list.onDoubleClick = [&] { heard.push_back("double " + row()); };
  list.onEnter = [&] { heard.push_back("enter " + row()); };
  show(*form, [&](QDialog& window) {
    auto& tree = widget<QTreeWidget>(window, "Liste");
    const QPoint second = tree.visualItemRect(tree.topLevelItem(1)).center();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, second);
    QTest::keyClick(&tree, Qt::Key_Up);
    QTest::keyClick(&tree, Qt::Key_Return);
    EXPECT_TRUE(form->shown());
  });
  EXPECT_THAT(heard, testing::ElementsAre("double 1", "enter 0"));
}

TEST_F(Clerk, OptionsExcludeEachOther) {
  const auto form = samples.make("StartForm");
  const auto option = [&](int i) -> OptionButton& {
    return control<OptionButton>(*form, "XPOption[" + std::to_string(i) + "]");
  };
  show(*form, [&](QDialog& window) {
    option(0).setSelected(true);
    auto& first = widget<QRadioButton>(window, "XPOption[0]");
    auto& second = widget<QRadioButton>(window, "XPOption[1]");
    EXPECT_TRUE(first.isChecked());
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Down);
    EXPECT_TRUE(option(1).selected() && !option(0).selected());
    option(1).setSelected(false);
    EXPECT_FALSE(first.isChecked() || second.isChecked());
    option(0).setEnabled(false);
    QTest::mouseClick(&first, Qt::LeftButton);
    EXPECT_FALSE(option(0).selected());
  });
}

TEST_F(Clerk, EnterEscapeAndLettersPressButtons) {
  struct Stubborn : forms::Form {
    Stubborn() : Form("fStorno", "Stur") {}
    void onCloseBox() override { ++closed; }
    TextField field{*this, "ZEVISPass"};
    Button action{*this, "Button[0]"};
    Button cancel{*this, "Button[1]"};
    int closed = 0;
  } form;
  form.action.setText("Stornieren");
  form.action.isDefault = true;
  int actions = 0;
  int cancels = 0;
  form.action.onClick = [&] { ++actions; };
  form.cancel.onClick = [&] { ++cancels; };
  show(form, [&](QDialog& window) {
    auto& edit = widget<QLineEdit>(window, "ZEVISPass");
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(actions, 1);
    auto& button = widget<QPushButton>(window, "Button[1]");
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Enter);
    EXPECT_EQ(cancels, 1);
    QTest::keyClick(&edit, Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return actions == 2; }));
    edit.setFocus();
    form.action.setEnabled(false);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(actions, 2);
    QTest::keyClick(&edit, Qt::Key_Escape);
    window.close();
    EXPECT_EQ(form.closed, 2);
    EXPECT_TRUE(form.shown() && window.isVisible());
    // A click on a field is one on its control, and F2 for those who use the keyboard.
    int clicks = 0;
    form.field.onClick = [&] { ++clicks; };
    QTest::mouseClick(&edit, Qt::LeftButton);
    QTest::keyClick(&edit, Qt::Key_F2);
    EXPECT_EQ(clicks, 2);
  });
}

/// A window in which whatever the clerk does leads to the next one.
struct Step : forms::Form {
  Step() : Form("fStorno", "Schritt") {
    action.setText("Weiter");
    action.isDefault = true;
    action.onClick = [this] { take(); };
    field.onClick = action.onClick;
  }
  void onCloseBox() override { take(); }
  void take() {
    ++taken;
    if (const auto once = std::exchange(next, nullptr)) once();
  }
  TextField field{*this, "ZEVISPass"};
  Button action{*this, "Button[0]"};
  std::function<void()> next;
  int taken = 0;
};

/// Presses a key in a window as a display does, which is no matter of its widgets.
void press(const QDialog& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QTest::keyClick(window.windowHandle(), key, modifiers);
}

/// Longer than a key must have been left alone.
void rest() { QTest::qWait(350); }

TEST_F(Clerk, KeysThatAreHeldPressOnce) {
  struct Case {
    Qt::Key key;
    const char* focus;
    Qt::KeyboardModifiers modifiers;
  };
  for (const Case& c : {Case{Qt::Key_Return, "ZEVISPass", {}}, Case{Qt::Key_Enter, "Button[0]", {}},
                        Case{Qt::Key_Space, "Button[0]", {}}, Case{Qt::Key_Escape, "Button[0]", {}},
                        Case{Qt::Key_F2, "ZEVISPass", {}}, Case{Qt::Key_W, "ZEVISPass", Qt::AltModifier}}) {
    // What comes while a key is held cannot be told from presses on a busy machine.
    const auto goOn = [&](QDialog& window) {
      window.activateWindow();
      rest();
      for (int i = 0; i < 3; ++i) {
        QTest::keyRelease(window.windowHandle(), c.key, c.modifiers);
        QTest::keyPress(window.windowHandle(), c.key, c.modifiers);
      }
      QTest::keyRelease(window.windowHandle(), c.key, c.modifiers);
      QTest::qWait(150);  // what an accelerator presses is pressed a moment later
    };
    const auto pressAnew = [&](QDialog& window, const Step& step) {
      rest();
      const int before = step.taken;
      widget<QWidget>(window, c.focus).setFocus();
      press(window, c.key, c.modifiers);
      return QTest::qWaitFor([&] { return step.taken > before; });
    };
    Step first;
    Step second;
    first.next = [&] {
      show(second, [&](QDialog& window) {
        widget<QWidget>(window, c.focus).setFocus();
        goOn(window);
        EXPECT_EQ(second.taken, 0) << c.key;
        EXPECT_TRUE(pressAnew(window, second)) << c.key;
      });
    };
    show(first, [&](QDialog& window) {
      EXPECT_TRUE(pressAnew(window, first)) << c.key;
      goOn(window);
      EXPECT_EQ(first.taken, 1) << c.key;
      EXPECT_TRUE(pressAnew(window, first)) << c.key;
      EXPECT_TRUE(first.taken == 2 && second.taken == 1) << c.key;
    });
  }
}

/// Presses a key in a window that is not painted yet.
class Hasty : public QObject {
 public:
  Hasty() { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    const auto* const window = qobject_cast<QDialog*>(receiver);
    if (window && event->type() == QEvent::Show) press(*window, Qt::Key_Return);
    return false;
  }
};

TEST_F(Clerk, KeysFromBeforeAWindowPressNothingInIt) {
  Step first;
  Step second;
  first.next = [&] {
    show(second, [&](QDialog& window) {
      QTest::keyPress(window.windowHandle(), Qt::Key_X);
      QTest::qWait(100);
    });
  };
  const Hasty hasty;
  show(first, [&](QDialog& window) {
    rest();
    press(window, Qt::Key_Enter);
    EXPECT_TRUE(first.taken == 1 && second.taken == 0);
    rest();
    QTest::keyRelease(window.windowHandle(), Qt::Key_X);
    QTest::keyPress(window.windowHandle(), Qt::Key_X);
    press(window, Qt::Key_Return);
    EXPECT_EQ(first.taken, 1) << "another key is still down";
    QTest::keyRelease(window.windowHandle(), Qt::Key_X);
    rest();
    press(window, Qt::Key_Return);
    EXPECT_EQ(first.taken, 2);
  });
}

/// Counts the paintings of every window.
class Paintings : public QObject {
 public:
  Paintings() { qApp->installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<QDialog*>(receiver)) ++count;
    return false;
  }
};

TEST_F(Clerk, TimerFiresOnceAfterTheWindowIsPainted) {
  const auto form = samples.make("fStorno");
  Paintings paintings;
  std::vector<bool> fired;
  form->Timer1.onTimer = [&] { fired.push_back(paintings.count > 0); };
  form->Timer1.start();
  show(*form, [&](QDialog& window) {
    EXPECT_THAT(fired, testing::ElementsAre(true));
    window.update();
    settle();
    EXPECT_EQ(fired.size(), 1U);
  });
}

TEST_F(Clerk, HandlerThatThrowsEndsTheWindow) {
  struct Failing : forms::Form {
    Failing() : Form("fStorno", "Fehler") {
      action.onClick = [] { throw std::runtime_error("kein Speicher"); };
    }
    void onFailure() override { result = -1; }
    Button action{*this, "Button[0]"};
    int result = 0;
  } form;
  show(form, [&](QDialog& window) {
    QTest::mouseClick(&widget<QPushButton>(window, "Button[0]"), Qt::LeftButton);
    EXPECT_FALSE(form.shown());
  });
  EXPECT_EQ(form.failure(), "kein Speicher");
  EXPECT_EQ(form.result, -1);
}

TEST_F(Clerk, WindowsNest) {
  const auto outer = samples.make("StartForm");
  int outerClicks = 0;
  control<Button>(*outer, "Button[2]").onClick = [&] { ++outerClicks; };
  bool answered = false;
  control<Button>(*outer, "Button[0]").onClick = [&] {
    QWidget* const below = QApplication::activeModalWidget();
    const auto inner = samples.make("MessageBox");
    control<Button>(*inner, "Button[0]").onClick = [&] {
      answered = true;
      inner->hide();
    };
    show(*inner, [&](QDialog& window) {
      EXPECT_EQ(window.parentWidget(), below);
      QTest::mouseClick(&widget<QPushButton>(*below, "Button[2]"), Qt::LeftButton);
      below->close();
      QTest::mouseClick(&widget<QPushButton>(window, "Button[0]"), Qt::LeftButton);
    });
    EXPECT_EQ(QApplication::activeModalWidget(), below);
  };
  show(*outer, [&](QDialog& window) {
    QTest::mouseClick(&widget<QPushButton>(window, "Button[0]"), Qt::LeftButton);
    EXPECT_TRUE(answered && outer->shown());
    EXPECT_EQ(outerClicks, 0) << "the window below takes no input";
    QTest::mouseClick(&widget<QPushButton>(window, "Button[2]"), Qt::LeftButton);
    EXPECT_EQ(outerClicks, 1);
  });
}

TEST_F(Clerk, WhatIsDoneWhileAHandlerRunsIsForgotten) {
  const auto form = samples.make("StartForm");
  auto& field = control<TextField>(*form, "Text[4]");
  auto& start = control<Button>(*form, "Button[0]");
  QDialog* shown = nullptr;
  int starts = 0;
  start.onClick = [&] {
    ++starts;
    start.setEnabled(false);
    const auto type = [&](QWidget& receiver, int key, const QString& text) {
      QCoreApplication::postEvent(&receiver, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
    };
    const auto click = [&](QWidget& receiver) {
      const QPointF at = receiver.rect().center();
      for (const auto what : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QCoreApplication::postEvent(&receiver, new QMouseEvent(what, at, receiver.mapToGlobal(at), Qt::LeftButton,
                                                               Qt::LeftButton, Qt::NoModifier));
      }
    };
    type(widget<QLineEdit>(*shown, "Text[4]"), Qt::Key_A, "a");
    type(*shown, Qt::Key_Escape, {});
    type(widget<QPushButton>(*shown, "Button[0]"), Qt::Key_Tab, "\t");
    click(widget<QPushButton>(*shown, "Button[2]"));
    start.setEnabled(true);
    click(widget<QPushButton>(*shown, "Button[0]"));
    control<forms::ProgressBar>(*form, "Progress").setValue(77);
    control<forms::StatusBar>(*form, "StatusBar").setText("Suche läuft");
    clerk->repaint();
    EXPECT_EQ(widget<QProgressBar>(*shown, "Progress").value(), 77);
    EXPECT_EQ(widget<QStatusBar>(*shown, "StatusBar").currentMessage(), QString("Suche läuft"));
  };
  control<Button>(*form, "Button[2]").onClick = [&] { ADD_FAILURE() << "closed meanwhile"; };
  show(*form, [&](QDialog& window) {
    shown = &window;
    auto& button = widget<QPushButton>(window, "Button[0]");
    button.setFocus();
    QTest::mouseClick(&button, Qt::LeftButton);
    settle();
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(field.text(), "");
    EXPECT_TRUE(form->shown());
    EXPECT_EQ(window.focusWidget(), &button) << "the focus comes back to a button that was disabled for its work";
  });
}

TEST_F(Clerk, HourglassAndFocusAreTheComponentsToSet) {
  const auto form = samples.make("ZEVISPassChange");
  show(*form, [&](QDialog& window) {
    clerk->setHourglass(true);
    clerk->setHourglass(true);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    clerk->setHourglass(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    control<TextField>(*form, "Text[1]").setFocus(true);
    auto& edit = widget<QLineEdit>(window, "Text[1]");
    EXPECT_EQ(window.focusWidget(), &edit);
    EXPECT_EQ(edit.selectionLength(), 8);
    form->setCaption("Neu");
    EXPECT_EQ(window.windowTitle(), QString("Neu"));
  });
}

TEST(Displays, ThatDoNotAnswerAreNotUsed) {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE"}) qunsetenv(name);
  struct Case {
    const char* wished;
    std::optional<std::string> usable;
  };
  for (const Case& c : {Case{"", std::nullopt},
                        {"xcb", std::nullopt},
                        {"wayland;xcb", std::nullopt},
                        {"gibtesnicht", std::nullopt},
                        {"xcb;offscreen", "offscreen"}}) {
    qputenv("QT_QPA_PLATFORM", c.wished);
    EXPECT_EQ(adapters::qt::usablePlatform(), c.usable) << c.wished;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
}

}  // namespace
}  // namespace kartix::tests
