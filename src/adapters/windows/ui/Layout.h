#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "adapters/windows/ui/Design.h"

namespace kartix::adapters::native {

struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

struct Placed {
  const Element* element;
  Box box;
};

/// Gives the widgets of a design their places. All lengths but those of the design are in pixels.
class Layout {
 public:
  /// What a widget needs to show all of its content; nothing when it is hidden and leaves its place to others.
  using Measure = std::function<std::optional<Size>(const Element& widget)>;

  /// `dpi` pixels make 96 units of the design; the title of a group takes `titleHeight`.
  Layout(const Element& root, int dpi, int titleHeight, Measure measure);

  /// The smallest size at which nothing is cut off.
  Size needed() const;

  /// The places of all widgets that are shown in a window of `client`; those that lie within others come after them.
  std::vector<Placed> place(Size client) const;

 private:
  /// What an element takes of one direction.
  struct Extent {
    int least = 0;
    int most = unlimited;
    int stretch = 0;
    bool expands = false;
    bool used = false;  ///< of a grid's line: a widget stands in it
  };
  struct Extents {
    Extent across;
    Extent down;
  };
  struct Item {
    const Element* element;
    Extents extents;
  };
  struct Lines;

  static std::vector<int> share(const std::vector<Extent>& cells, int room);
  static void widen(std::vector<Extent>& cells, int first, int count, int spacing, const Item& item,
                    const Extent& extent);
  static int gaps(const std::vector<Extent>& cells);
  static Box within(Box cell, const Element& element, const Extents& extents);

  int scaled(int units) const;
  Margins margins(const Element& element) const;
  std::optional<Extents> extents(const Element& element) const;
  Extents space(const Element& element) const;
  std::optional<Extents> widget(const Element& element) const;
  std::optional<Extents> framed(const Element& element) const;
  std::optional<Extents> line(const Element& element) const;
  std::optional<Extents> grid(const Element& element) const;
  std::vector<Item> items(const Element& element) const;
  Lines lines(const Element& element) const;

  void placeElement(const Element& element, Box box, std::vector<Placed>& all) const;
  void placeLine(const Element& element, Box box, std::vector<Placed>& all) const;
  void placeGrid(const Element& element, Box box, std::vector<Placed>& all) const;

  const Element& root_;
  int dpi_;
  int titleHeight_;
  Measure measure_;
};

}  // namespace kartix::adapters::native
