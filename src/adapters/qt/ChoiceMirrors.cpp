#include "adapters/qt/ChoiceMirrors.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <utility>

namespace kartix::adapters::qt {
namespace {

QStringList shownAll(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& text : texts) list += shown(text);
  return list;
}

/// A key that types something, other than the blank, which opens a list.
bool types(const QKeyEvent& key) { return !key.text().isEmpty() && key.text()[0].isPrint() && key.text() != u" "; }

bool isEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

}  // namespace

ComboMirror::ComboMirror(forms::ComboBox& control, QComboBox& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {
  widget_.clear();
}

void ComboMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QComboBox::activated, this,
          [this](int index) { act([&] { control_.userSelect(static_cast<std::size_t>(index)); }); });
}

void ComboMirror::show() {
  if (items_ != control_.items()) {
    items_ = control_.items();
    widget_.clear();
    widget_.addItems(shownAll(items_));
  }
  const QString text = shown(control_.text());
  const int index = widget_.findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
  widget_.setPlaceholderText(index < 0 ? text : QString());
  if (widget_.currentIndex() != index) widget_.setCurrentIndex(index);
}

bool ComboMirror::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::KeyPress && types(static_cast<const QKeyEvent&>(*event))) return true;
  return Mirror::eventFilter(receiver, event);
}

ListMirror::ListMirror(forms::ListView& control, QTreeWidget& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {}

void ListMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QTreeWidget::currentItemChanged, this, [this] {
    if (const int row = currentRow(); row >= 0) control_.userMove(static_cast<std::size_t>(row));
  });
  connect(&widget_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
    const auto row = static_cast<std::size_t>(widget_.indexOfTopLevelItem(item));
    act([&] { control_.userDoubleClick(row); });
  });
}

void ListMirror::show() {
  if (columns_ != control_.columns() || rows_ != control_.rows()) showRows();
  const int row = control_.currentRow() ? static_cast<int>(*control_.currentRow()) : -1;
  if (row != currentRow()) widget_.setCurrentItem(widget_.topLevelItem(row));
}

void ListMirror::showRows() {
  columns_ = control_.columns();
  rows_ = control_.rows();
  widget_.clear();
  widget_.setColumnCount(static_cast<int>(columns_.size()));
  widget_.setHeaderLabels(shownAll(columns_));
  QList<QTreeWidgetItem*> items;
  for (const auto& row : rows_) items += new QTreeWidgetItem(shownAll(row));
  widget_.addTopLevelItems(items);
  for (int column = 0; column < widget_.columnCount(); ++column) widget_.resizeColumnToContents(column);
}

bool ListMirror::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::KeyPress && control_.onEnter && isEnter(static_cast<const QKeyEvent&>(*event))) {
    act([this] { control_.userEnter(); });
    return true;
  }
  return Mirror::eventFilter(receiver, event);
}

}  // namespace kartix::adapters::qt
