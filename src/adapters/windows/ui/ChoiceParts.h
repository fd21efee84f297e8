#pragma once

#include <string>
#include <vector>

#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

/// Drop-down list. Only its entries can be chosen; typed characters do nothing.
class ComboPart : public Part {
 public:
  ComboPart(const Element& element, forms::ComboBox& control, const Look& look);
  void place(const Box& box) override;
  void command(WORD code) override;
  bool isDropped() const override { return send(CB_GETDROPPEDSTATE) != 0; }

 protected:
  void show() override;
  Size natural() const override;

 private:
  void take();

  forms::ComboBox& control_;
  std::vector<std::string> items_;
  std::string text_;
  bool decided_ = false;  ///< an entry of the open list has been chosen
};

/// List with columns.
class ListPart : public Part {
 public:
  ListPart(const Element& element, forms::ListView& control, const Look& look);
  void restyle() override;
  void place(const Box& box) override;
  LRESULT notified(NMHDR& report) override;
  bool enter() override;

 protected:
  void show() override;

 private:
  int currentRow() const;
  void showRows();
  void fitColumns() const;
  void choose(int row);

  forms::ListView& control_;
  std::vector<std::string> columns_;
  std::vector<forms::ListView::Row> rows_;
};

}  // namespace kartix::adapters::native
