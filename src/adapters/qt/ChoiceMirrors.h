#pragma once

#include <QComboBox>
#include <QTreeWidget>
#include <vector>

#include "adapters/qt/Mirror.h"

namespace kartix::adapters::qt {

/// Drop-down list. Only its entries can be chosen; typed characters do nothing.
class ComboMirror : public Mirror {
 public:
  ComboMirror(forms::ComboBox& control, QComboBox& widget);
  void takeInput(Gate gate) override;

 protected:
  void show() override;
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  forms::ComboBox& control_;
  QComboBox& widget_;
  std::vector<std::string> items_;
};

/// List with columns.
class ListMirror : public Mirror {
 public:
  ListMirror(forms::ListView& control, QTreeWidget& widget);
  void takeInput(Gate gate) override;

 protected:
  void show() override;
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  int currentRow() const { return widget_.indexOfTopLevelItem(widget_.currentItem()); }
  void showRows();

  forms::ListView& control_;
  QTreeWidget& widget_;
  std::vector<std::string> columns_;
  std::vector<forms::ListView::Row> rows_;
};

}  // namespace kartix::adapters::qt
