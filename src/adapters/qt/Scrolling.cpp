#include "adapters/qt/Scrolling.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "adapters/qt/Scale.h"

namespace kartix::adapters::qt {
namespace {

/// A list or a text is left this much at least.
constexpr int leastOfList = 60;

/// Space between what is scrolled and its bar, and around what has the focus.
constexpr int besideBar = 6;
constexpr int besideFocus = 8;

/// A line of text is left this width at least: a card number is seen as a whole.
constexpr int leastOfLine = 130;

constexpr QLatin1String upperPart("upperPart");

QSize needed(const QWidget& window) {
  QLayout& layout = *window.layout();
  layout.activate();
  return layout.sizeConstraint() == QLayout::SetFixedSize ? layout.totalSizeHint() : layout.totalMinimumSize();
}

bool holdsButton(const QLayout& layout) {
  for (int i = 0; i < layout.count(); ++i) {
    if (qobject_cast<QPushButton*>(layout.itemAt(i)->widget())) return true;
  }
  return false;
}

/// The column with the row of buttons, and the index of that row.
std::pair<QVBoxLayout*, int> columnOfButtons(const QWidget& window) {
  for (auto* const column : window.findChildren<QVBoxLayout*>()) {
    for (int i = 0; i < column->count(); ++i) {
      const QLayout* const row = column->itemAt(i)->layout();
      if (row && holdsButton(*row)) return {column, i};
    }
  }
  return {nullptr, 0};
}

void append(QBoxLayout& column, QLayoutItem* item) {
  if (item->widget()) {
    column.addWidget(item->widget());
    delete item;
  } else if (item->layout()) {
    column.addLayout(item->layout());
  } else {
    column.addItem(item);
  }
}

void setLeast(QScrollArea& area, QSize size) {
  area.setMinimumWidth(size.width());
  area.setFixedHeight(size.height());
}

/// Puts all that stands above the buttons into an area that can be scrolled.
QScrollArea* makeArea(const QWidget& window) {
  const auto [column, above] = columnOfButtons(window);
  if (!column || above == 0) return nullptr;
  auto* const area = new QScrollArea(column->parentWidget());
  area->setAccessibleName(QStringLiteral("Inhalt"));
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  area->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  auto* const inside = new QWidget(area);
  inside->setObjectName(upperPart);
  auto* const content = new QVBoxLayout(inside);
  content->setContentsMargins(0, 0, 0, 0);
  content->setSpacing(column->spacing());
  for (int i = 0; i < above; ++i) append(*content, column->takeAt(0));
  area->setWidget(inside);
  setLeast(*area, inside->sizeHint());
  column->insertWidget(0, area);
  // What has the focus is in sight, however it came there.
  QObject::connect(qApp, &QApplication::focusChanged, area, [area](const QWidget* /*before*/, QWidget* now) {
    if (!now || !area->widget()->isAncestorOf(now)) return;
    const QRect place(now->mapTo(area->widget(), QPoint(0, 0)), now->size());
    area->ensureVisible(place.center().x(), place.center().y(), place.width() / 2 + besideFocus,
                        place.height() / 2 + besideFocus);
  });
  return area;
}

int neededWidth(const QWidget& content) {
  // What has changed inside a group is told to the outside one step after the other.
  const auto inner = content.findChildren<QWidget*>();
  for (auto widget = inner.rbegin(); widget != inner.rend(); ++widget) {
    if (!(*widget)->layout()) continue;
    (*widget)->layout()->activate();
    (*widget)->updateGeometry();
  }
  content.layout()->activate();
  return content.layout()->totalMinimumSize().width();
}

/// Lines of text become shorter, and when that does not help, what stands side by side stands one below the other.
void narrow(const QWidget& content, int room) {
  if (neededWidth(content) <= room) return;
  for (auto* const line : content.findChildren<QLineEdit*>()) {
    line->setMinimumWidth(std::min(line->minimumWidth(), scaled(leastOfLine, content)));
  }
  if (neededWidth(content) <= room) return;
  for (int i = 0; i < content.layout()->count(); ++i) {
    if (auto* const row = qobject_cast<QHBoxLayout*>(content.layout()->itemAt(i)->layout()))
      row->setDirection(QBoxLayout::TopToBottom);
  }
}

void fitArea(QScrollArea& area, QSize room, const QWidget& window) {
  QSize size = area.minimumSize();
  const QSize left = room - (needed(window) - size);
  const QWidget& content = *area.widget();
  if (content.objectName() == upperPart) {
    const int inside = left.width() - area.verticalScrollBar()->sizeHint().width();
    narrow(content, inside - besideBar);
    size = {std::min(size.width(), left.width()), content.sizeHint().height()};
    if (neededWidth(content) > inside) size.rheight() += area.horizontalScrollBar()->sizeHint().height();
  }
  if (size.height() > left.height()) size.rwidth() += showBar(area);
  setLeast(area, size.boundedTo(left).expandedTo({leastOfList, leastOfList}));
}

/// Lists and texts scroll by themselves.
void shrinkLists(QWidget& window, QSize excess) {
  for (auto* const list : window.findChildren<QAbstractScrollArea*>()) {
    const QSize least = list->minimumSize();
    list->setMinimumSize(std::max(leastOfList, least.width() - std::max(0, excess.width())),
                         std::max(leastOfList, least.height() - std::max(0, excess.height())));
    excess.setHeight(excess.height() - (least.height() - list->minimumHeight()));
  }
}

}  // namespace

int showBar(QScrollArea& area) {
  if (area.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn) return 0;
  area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  area.setFocusPolicy(Qt::StrongFocus);
  return area.verticalScrollBar()->sizeHint().width() + besideBar;
}

void fitInto(QSize room, QWidget& window) {
  const QSize excess = needed(window) - room;
  if (excess.width() <= 0 && excess.height() <= 0) return;
  if (window.layout()->sizeConstraint() != QLayout::SetFixedSize) return shrinkLists(window, excess);
  auto* area = window.findChild<QScrollArea*>();
  if (!area) area = makeArea(window);
  if (area) fitArea(*area, room, window);
  window.layout()->activate();
}

}  // namespace kartix::adapters::qt
