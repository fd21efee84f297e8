#include "adapters/windows/ui/Layout.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kartix::adapters::native {
namespace {

constexpr int unitsPerInch = 96;

bool isFrame(Kind kind) { return kind == Kind::group || kind == Kind::card; }

/// Widgets that only hold others.
bool isHolder(Kind kind) { return isFrame(kind) || kind == Kind::scroll || kind == Kind::panel; }

bool isSpace(const Element& element) { return element.kind == Kind::space; }

bool expandsAcross(Kind kind) {
  return kind == Kind::line || kind == Kind::lines || kind == Kind::list || kind == Kind::progress ||
         kind == Kind::status || kind == Kind::rule;
}

bool growsDown(Kind kind) { return kind == Kind::label || kind == Kind::lines || kind == Kind::list; }

int limited(int length) { return std::min(length, unlimited); }

}  // namespace

/// Columns and rows of a grid.
struct Layout::Lines {
  std::vector<Extent> columns;
  std::vector<Extent> rows;
  std::vector<Item> items;
};

Layout::Layout(const Element& root, int dpi, int titleHeight, Measure measure)
    : root_(root), dpi_(dpi), titleHeight_(titleHeight), measure_(std::move(measure)) {}

Size Layout::needed() const {
  const auto all = extents(root_);
  return all ? Size{all->across.least, all->down.least} : Size{};
}

std::vector<Placed> Layout::place(Size client) const {
  std::vector<Placed> all;
  if (extents(root_)) placeElement(root_, {0, 0, client.width, client.height}, all);
  return all;
}

/// Those with a stretch share the room in that proportion, else those that expand evenly, else all; none gets less
/// than its least or more than its most, and the others get their least.
std::vector<int> Layout::share(const std::vector<Extent>& cells, int room) {
  const bool stretched = std::any_of(cells.begin(), cells.end(), [](const Extent& c) { return c.stretch > 0; });
  const bool expanding = std::any_of(cells.begin(), cells.end(), [](const Extent& c) { return c.expands; });
  std::vector<int> sizes;
  std::vector<int> weights;
  for (const Extent& cell : cells) {
    sizes.push_back(cell.least);
    weights.push_back(stretched ? cell.stretch : expanding ? static_cast<int>(cell.expands) : 1);
  }
  if (room <= std::accumulate(sizes.begin(), sizes.end(), 0)) return sizes;
  while (std::any_of(weights.begin(), weights.end(), [](int weight) { return weight > 0; })) {
    int total = std::accumulate(weights.begin(), weights.end(), 0);
    int rest = room;
    for (std::size_t i = 0; i < cells.size(); ++i) rest -= weights[i] > 0 ? 0 : sizes[i];
    // Whoever cannot have exactly its share gets what it can, and the others share anew.
    const auto misfit = std::find_if(cells.begin(), cells.end(), [&](const Extent& cell) {
      const int weight = weights[static_cast<std::size_t>(&cell - cells.data())];
      return weight > 0 && cell.least > rest * weight / total;
    });
    const auto full = std::find_if(cells.begin(), cells.end(), [&](const Extent& cell) {
      const int weight = weights[static_cast<std::size_t>(&cell - cells.data())];
      return weight > 0 && cell.most < rest * weight / total;
    });
    if (misfit != cells.end() || full != cells.end()) {
      const auto& cell = misfit != cells.end() ? *misfit : *full;
      const auto i = static_cast<std::size_t>(&cell - cells.data());
      sizes[i] = misfit != cells.end() ? cell.least : cell.most;
      weights[i] = 0;
      continue;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (weights[i] == 0) continue;
      sizes[i] = rest * weights[i] / total;
      rest -= sizes[i];
      total -= weights[i];
    }
    break;
  }
  return sizes;
}

/// Makes the cells wide enough for an item that lies across `count` of them.
void Layout::widen(std::vector<Extent>& cells, int first, int count, int spacing, const Item& item,
                   const Extent& extent) {
  const auto begin = cells.begin() + first;
  if (count == 1) {
    begin->least = std::max(begin->least, extent.least);
    begin->expands = begin->expands || extent.expands;
    begin->used = begin->used || !isSpace(*item.element);
    return;
  }
  const std::vector<Extent> spanned(begin, begin + count);
  const std::vector<int> sizes = share(spanned, extent.least - spacing * gaps(spanned));
  for (int i = 0; i < count; ++i) begin[i].least = sizes[static_cast<std::size_t>(i)];
}

/// There is none beside a line that nothing but space stands in.
int Layout::gaps(const std::vector<Extent>& cells) {
  const auto used = std::count_if(cells.begin(), cells.end(), [](const Extent& cell) { return cell.used; });
  return static_cast<int>(std::max<std::ptrdiff_t>(used - 1, 0));
}

int Layout::scaled(int units) const {
  return units >= unlimited ? unlimited : (units * dpi_ + unitsPerInch / 2) / unitsPerInch;
}

Margins Layout::margins(const Element& element) const {
  const Margins& units = element.margins;
  return {scaled(units.left), scaled(units.top), scaled(units.right), scaled(units.bottom)};
}

std::optional<Layout::Extents> Layout::extents(const Element& element) const {
  if (isSpace(element)) return space(element);
  if (element.kind == Kind::column || element.kind == Kind::row) return line(element);
  if (element.kind == Kind::grid) return grid(element);
  if (isHolder(element.kind)) return framed(element);
  return widget(element);
}

Layout::Extents Layout::space(const Element& element) const {
  Extents both;
  Extent& along = element.upright ? both.down : both.across;
  along.least = scaled(element.upright ? element.least.height : element.least.width);
  along.most = element.expands ? unlimited : along.least;
  along.expands = element.expands;
  return both;
}

std::optional<Layout::Extents> Layout::widget(const Element& element) const {
  const auto natural = measure_(element);
  if (!natural) return std::nullopt;
  Extents both;
  both.across.most = scaled(element.most.width);
  both.across.least = std::min(std::max(natural->width, scaled(element.least.width)), both.across.most);
  both.across.expands = expandsAcross(element.kind);
  both.down.most = scaled(element.most.height);
  both.down.least = std::min(std::max(natural->height, scaled(element.least.height)), both.down.most);
  both.down.expands = element.kind == Kind::lines || element.kind == Kind::list;
  if (!growsDown(element.kind)) both.down.most = both.down.least;
  return both;
}

std::optional<Layout::Extents> Layout::framed(const Element& element) const {
  auto inside = element.children.empty() ? std::nullopt : extents(element.children.front());
  if (!inside) return std::nullopt;
  inside->down.least += element.kind == Kind::group ? titleHeight_ : 0;
  inside->across.least = std::max(inside->across.least, scaled(element.least.width));
  inside->down.least = std::max(inside->down.least, scaled(element.least.height));
  inside->across.most = scaled(element.most.width);
  inside->down.most = scaled(element.most.height);
  inside->down.expands = false;
  return inside;
}

/// The children that take room; none when no widget is among them.
std::vector<Layout::Item> Layout::items(const Element& element) const {
  std::vector<Item> shown;
  bool any = false;
  for (const Element& child : element.children) {
    const auto taken = extents(child);
    if (!taken) continue;
    shown.push_back({&child, *taken});
    any = any || !isSpace(child);
  }
  if (!any) shown.clear();
  return shown;
}

std::optional<Layout::Extents> Layout::line(const Element& element) const {
  const std::vector<Item> shown = items(element);
  if (shown.empty()) return std::nullopt;
  const bool down = element.kind == Kind::column;
  Extent along{0, 0, 0, false};
  Extent beside{0, 0, 0, false};
  int widgets = 0;
  for (const Item& item : shown) {
    const Extent& main = down ? item.extents.down : item.extents.across;
    const Extent& cross = down ? item.extents.across : item.extents.down;
    along.least += main.least;
    along.most = limited(along.most + main.most);
    along.expands = along.expands || main.expands;
    if (isSpace(*item.element)) continue;
    ++widgets;
    beside.least = std::max(beside.least, cross.least);
    beside.most = std::max(beside.most, cross.most);
    beside.expands = beside.expands || cross.expands;
  }
  const int spacing = scaled(down ? element.verticalSpacing : element.horizontalSpacing) * (widgets - 1);
  const Margins around = margins(element);
  Extents both{down ? beside : along, down ? along : beside};
  both.across.least += around.left + around.right + (down ? 0 : spacing);
  both.down.least += around.top + around.bottom + (down ? spacing : 0);
  both.across.most = limited(both.across.most + around.left + around.right + (down ? 0 : spacing));
  both.down.most = limited(both.down.most + around.top + around.bottom + (down ? spacing : 0));
  return both;
}

Layout::Lines Layout::lines(const Element& element) const {
  Lines lines;
  lines.items = items(element);
  std::size_t columns = 0;
  std::size_t rows = 0;
  for (const Element& child : element.children) {
    columns = std::max(columns, static_cast<std::size_t>(child.cell.column + child.cell.columns));
    rows = std::max(rows, static_cast<std::size_t>(child.cell.row + child.cell.rows));
  }
  lines.columns.resize(columns);
  lines.rows.resize(rows);
  for (std::size_t i = 0; i < std::min(columns, element.columnStretch.size()); ++i)
    lines.columns[i].stretch = element.columnStretch[i];
  for (std::size_t i = 0; i < std::min(rows, element.rowStretch.size()); ++i)
    lines.rows[i].stretch = element.rowStretch[i];
  const int across = scaled(element.horizontalSpacing);
  const int down = scaled(element.verticalSpacing);
  // Those in a single line first: only what they leave over is added for the others.
  for (const bool single : {true, false}) {
    for (const Item& item : lines.items) {
      const Cell& cell = item.element->cell;
      if ((cell.columns == 1) == single)
        widen(lines.columns, cell.column, cell.columns, across, item, item.extents.across);
      if ((cell.rows == 1) == single) widen(lines.rows, cell.row, cell.rows, down, item, item.extents.down);
    }
  }
  return lines;
}

std::optional<Layout::Extents> Layout::grid(const Element& element) const {
  const Lines all = lines(element);
  if (all.items.empty()) return std::nullopt;
  const auto sum = [](const std::vector<Extent>& cells, int spacing) {
    Extent total;
    for (const Extent& cell : cells) {
      total.least += cell.least;
      total.expands = total.expands || cell.expands || cell.stretch > 0;
    }
    total.least += spacing * gaps(cells);
    return total;
  };
  const Margins around = margins(element);
  Extents both{sum(all.columns, scaled(element.horizontalSpacing)), sum(all.rows, scaled(element.verticalSpacing))};
  both.across.least += around.left + around.right;
  both.down.least += around.top + around.bottom;
  return both;
}

Box Layout::within(Box cell, const Element& element, const Extents& extents) {
  const auto fit = [](int& start, int& room, Align align, const Extent& extent) {
    const int length = align == Align::fill ? std::min(room, extent.most) : std::min(room, extent.least);
    if (align == Align::end) start += room - length;
    if (align == Align::fill || align == Align::centre) start += (room - length) / 2;
    room = length;
  };
  fit(cell.left, cell.width, element.horizontal, extents.across);
  fit(cell.top, cell.height, element.vertical, extents.down);
  return cell;
}

void Layout::placeElement(const Element& element, Box box, std::vector<Placed>& all) const {
  if (isSpace(element)) return;
  if (element.kind == Kind::column || element.kind == Kind::row) return placeLine(element, box, all);
  if (element.kind == Kind::grid) return placeGrid(element, box, all);
  if (!isHolder(element.kind)) {
    all.push_back({&element, box});
    return;
  }
  if (isFrame(element.kind)) all.push_back({&element, box});
  if (element.kind == Kind::group) {
    box.top += titleHeight_;
    box.height -= titleHeight_;
  }
  placeElement(element.children.front(), box, all);
}

void Layout::placeLine(const Element& element, Box box, std::vector<Placed>& all) const {
  const bool down = element.kind == Kind::column;
  const std::vector<Item> shown = items(element);
  const int spacing = scaled(down ? element.verticalSpacing : element.horizontalSpacing);
  const Margins around = margins(element);
  int widgets = 0;
  std::vector<Extent> cells;
  for (const Item& item : shown) {
    cells.push_back(down ? item.extents.down : item.extents.across);
    if (!isSpace(*item.element)) ++widgets;
  }
  const Box inside{box.left + around.left, box.top + around.top, box.width - around.left - around.right,
                   box.height - around.top - around.bottom};
  const std::vector<int> sizes = share(cells, (down ? inside.height : inside.width) - spacing * (widgets - 1));
  int at = down ? inside.top : inside.left;
  bool first = true;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (!isSpace(*shown[i].element) && !std::exchange(first, false)) at += spacing;
    const Box cell =
        down ? Box{inside.left, at, inside.width, sizes[i]} : Box{at, inside.top, sizes[i], inside.height};
    placeElement(*shown[i].element, within(cell, *shown[i].element, shown[i].extents), all);
    at += sizes[i];
  }
}

void Layout::placeGrid(const Element& element, Box box, std::vector<Placed>& all) const {
  const Lines grid = lines(element);
  const Margins around = margins(element);
  const auto places = [](const std::vector<Extent>& cells, int start, int room, int spacing) {
    const std::vector<int> sizes = share(cells, room - spacing * gaps(cells));
    std::vector<std::pair<int, int>> result;
    bool any = false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (cells[i].used && std::exchange(any, true)) start += spacing;
      result.emplace_back(start, start + sizes[i]);
      start += sizes[i];
    }
    return result;
  };
  const auto columns = places(grid.columns, box.left + around.left, box.width - around.left - around.right,
                              scaled(element.horizontalSpacing));
  const auto rows = places(grid.rows, box.top + around.top, box.height - around.top - around.bottom,
                           scaled(element.verticalSpacing));
  for (const auto& [child, taken] : grid.items) {
    const Cell& cell = child->cell;
    const int left = columns[static_cast<std::size_t>(cell.column)].first;
    const int right = columns[static_cast<std::size_t>(cell.column + cell.columns - 1)].second;
    const int top = rows[static_cast<std::size_t>(cell.row)].first;
    const int bottom = rows[static_cast<std::size_t>(cell.row + cell.rows - 1)].second;
    placeElement(*child, within({left, top, right - left, bottom - top}, *child, taken), all);
  }
}

}  // namespace kartix::adapters::native
