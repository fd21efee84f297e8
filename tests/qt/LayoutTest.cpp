#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>
#include <set>

#include "adapters/frontend/Accelerators.h"
#include "adapters/qt/Mirror.h"
#include "qt/QtFixture.h"

namespace kartix::tests {
namespace {

class Layout : public QtWindows {};

/// Why a text or picture is not wholly seen in its widget; empty when it is.
QString cutOff(const QWidget& widget) {
  QSize needed = widget.sizeHint();
  const QFontMetrics metrics(widget.font());
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    if (label->wordWrap()) needed = QSize(0, label->heightForWidth(label->width()));
    if (label->text().endsWith(u'…')) return "ellipsis";
  } else if (const auto* const line = qobject_cast<const QLineEdit*>(&widget)) {
    needed.setWidth(metrics.horizontalAdvance(line->displayText()) + 8);
  } else if (const auto* const bar = qobject_cast<const QStatusBar*>(&widget)) {
    needed.setWidth(metrics.horizontalAdvance(bar->currentMessage()));
  } else if (const auto* const list = qobject_cast<const QTreeWidget*>(&widget)) {
    needed = {};
    if (list->horizontalScrollBar()->maximum() > 0) return "columns";
  } else if (!qobject_cast<const QAbstractButton*>(&widget) && !qobject_cast<const QComboBox*>(&widget)) {
    return {};
  }
  if (needed.width() <= widget.width() && needed.height() <= widget.height()) return {};
  return QStringLiteral("needs %1 x %2").arg(needed.width()).arg(needed.height());
}

/// The desktop is set to a font of this size.
class DesktopFont {
 public:
  explicit DesktopFont(qreal points) : before_(QApplication::font()) {
    QFont font = before_;
    font.setPointSizeF(points);
    QApplication::setFont(font);
  }
  ~DesktopFont() { QApplication::setFont(before_); }
  DesktopFont(const DesktopFont&) = delete;
  DesktopFont& operator=(const DesktopFont&) = delete;

 private:
  QFont before_;
};

class LayoutAtFontSize : public Layout, public testing::WithParamInterface<double> {};
INSTANTIATE_TEST_SUITE_P(Points, LayoutAtFontSize, testing::Values(8, 9, 11, 14), testing::PrintToStringParamName());

TEST_P(LayoutAtFontSize, EveryWindowShowsAllOfItsControls) {
  constexpr QSize halfOfFullHd(960, 540);
  const DesktopFont desktop(GetParam());
  for (const auto& form : samples.all()) {
    SCOPED_TRACE(form->name());
    adapters::qt::Window window(*form, nullptr);
    ASSERT_TRUE(window.designed());
    window.centre();
    window.show();
    settle();
    for (forms::Control* const each : form->controls()) {
      auto* const found = window.findChild<QWidget*>(adapters::qt::widgetName(each->name()));
      EXPECT_TRUE(found && found->isVisible() == each->visible()) << each->name();
      // The card's background is the design's own.
      const bool background =
          qobject_cast<QFrame*>(found) && dynamic_cast<forms::Picture*>(each) && !qobject_cast<QLabel*>(found);
      EXPECT_TRUE(background || (found && adapters::qt::makeMirror(*each, *found))) << each->name();
    }
    const auto widgets = window.findChildren<QWidget*>();
    for (const QWidget* const widget : widgets) {
      if (!widget->isVisible()) continue;
      const std::string name = widget->objectName().toStdString();
      EXPECT_EQ(cutOff(*widget), QString()) << name;
      const QWidget* const parent = widget->parentWidget();
      if (qobject_cast<const QAbstractScrollArea*>(parent->parentWidget()) || name.starts_with("qt_")) continue;
      EXPECT_TRUE(parent->rect().contains(widget->geometry())) << name;
      for (const QWidget* const other : widgets) {
        if (other == widget || !other->isVisible() || other->parentWidget() != parent) continue;
        EXPECT_FALSE(other->geometry().intersects(widget->geometry())) << name << other->objectName().toStdString();
      }
    }
    EXPECT_EQ(window.font().pointSizeF(), GetParam());
    if (GetParam() > 9) continue;
    EXPECT_LE(window.height() + 30, halfOfFullHd.height());
    EXPECT_LE(window.width(), halfOfFullHd.width());
  }
}

/// A window on a screen of 1366 x 768 pixels at 150 %, with a panel.
class SmallScreenWindow : public adapters::qt::Window {
 public:
  explicit SmallScreenWindow(forms::Form& form) : Window(form, nullptr) {}
  QSize room() const override { return {902, 436}; }
};

TEST_P(LayoutAtFontSize, EveryWindowFitsASmallScreen) {
  const DesktopFont desktop(GetParam());
  for (const auto& form : samples.all()) {
    SCOPED_TRACE(form->name());
    SmallScreenWindow window(*form);
    window.centre();
    window.show();
    settle();
    EXPECT_LE(window.width(), window.room().width());
    EXPECT_LE(window.height(), window.room().height());
    const auto inSight = [&](const QWidget& widget) {
      return widget.visibleRegion().boundingRect() == widget.rect();
    };
    for (const auto* const button : window.findChildren<QPushButton*>()) {
      EXPECT_TRUE(!button->isVisible() || inSight(*button)) << button->text().toStdString();
    }
    for (auto* const widget : window.findChildren<QWidget*>()) {
      if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
      if (qobject_cast<QAbstractScrollArea*>(widget)) continue;
      widget->setFocus();
      settle();
      EXPECT_TRUE(inSight(*widget)) << widget->objectName().toStdString();
    }
  }
}

TEST_F(Layout, ATextTooLongForTheCardIsWrittenSmallerAndAtLastShortened) {
  const auto form = samples.make("Bestellung");
  adapters::qt::Window window(*form, nullptr);
  window.show();
  auto& label = widget<QLabel>(window, "Label2[5]");
  const QString tip = label.toolTip();
  const auto shownAs = [&](const std::string& text) {
    control<forms::Label>(*form, "Label2[5]").setText(text);
    window.mirrorAll();
    EXPECT_LE(QFontMetrics(label.font()).horizontalAdvance(label.text()), label.width());
    return label.text().toStdString();
  };
  const qreal usual = label.font().pointSizeF();
  const std::string longer = "Landratsamt Garmisch-Partenkirchen, Kfz-Zulassung";
  EXPECT_EQ(shownAs(longer), longer);
  EXPECT_LT(label.font().pointSizeF(), usual);
  EXPECT_EQ(label.toolTip(), tip);
  const std::string longest = longer + " und Führerscheinstelle";
  EXPECT_THAT(shownAs(longest), testing::EndsWith("…"));
  EXPECT_EQ(label.toolTip().toStdString(), longest);
  EXPECT_EQ(shownAs("Bonn"), "Bonn");
  EXPECT_EQ(label.font().pointSizeF(), usual);
  EXPECT_EQ(label.toolTip(), tip);
}

TEST_F(Layout, TabReachesEveryInput) {
  for (const auto& form : samples.all()) {
    SCOPED_TRACE(form->name());
    if (form->find("XPOption[0]")) control<forms::OptionButton>(*form, "XPOption[2]").setSelected(true);
    adapters::qt::Window window(*form, nullptr);
    window.show();
    settle();
    ASSERT_NE(window.focusWidget(), nullptr);
    EXPECT_FALSE(window.focusWidget()->property("readOnly").toBool())
        << "the clerk begins where something can be done";
    std::set<QWidget*> reached;
    while (reached.insert(window.focusWidget()).second) QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    for (forms::Control* const each : form->controls()) {
      // A label with a name shows a value, which whoever cannot see it comes to by the keyboard.
      const bool caption =
          dynamic_cast<forms::Label*>(each) && widget<QWidget>(window, each->name()).accessibleName().isEmpty();
      if (caption || dynamic_cast<forms::Picture*>(each) || dynamic_cast<forms::ProgressBar*>(each) ||
          dynamic_cast<forms::StatusBar*>(each)) {
        continue;
      }
      // Of the options the selected one is reached; the arrow keys lead to the others.
      const auto* const option = dynamic_cast<forms::OptionButton*>(each);
      EXPECT_EQ(reached.contains(&widget<QWidget>(window, each->name())), !option || option->selected())
          << each->name();
    }
  }
}

TEST_F(Layout, AcceleratorsAreUnique) {
  for (const auto& form : samples.all()) {
    adapters::qt::Window window(*form, nullptr);
    std::set<QString> letters;
    const auto take = [&](const QString& text, bool needed) {
      const QString letter = QKeySequence::mnemonic(text).toString();
      EXPECT_TRUE(letter.isEmpty() ? !needed : letters.insert(letter).second)
          << form->name() << ": " << text.toStdString();
    };
    for (const auto* const button : window.findChildren<QAbstractButton*>()) {
      if (!button->objectName().startsWith(u"qt_")) take(button->text(), true);
    }
    for (const auto* const label : window.findChildren<QLabel*>()) {
      if (label->buddy()) take(label->text(), adapters::qt::leadsToInput(*label));
    }
  }
  EXPECT_EQ(adapters::frontend::withAccelerator("Sichern && mehr", 'm'), "Sichern &&&& &mehr");
}

}  // namespace
}  // namespace kartix::tests
