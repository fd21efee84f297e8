#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The windows as their .ui files describe them. Lengths are in units of a 96th of an inch.
namespace kartix::adapters::native {

enum class Kind {
  column,  ///< layouts
  row,
  grid,
  space,
  label,  ///< widgets
  line,
  lines,
  option,
  button,
  combo,
  list,
  progress,
  status,
  group,
  scroll,
  panel,
  card,
  rule,
};

enum class Align { fill, start, centre, end };

/// A length that has no limit.
inline constexpr int unlimited = 1 << 20;

struct Size {
  int width = 0;
  int height = 0;
};

struct Margins {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// Place within a grid.
struct Cell {
  int row = 0;
  int column = 0;
  int rows = 1;
  int columns = 1;
};

/// Colours are 0xAARRGGBB; 0 stands for none.
struct Style {
  std::uint32_t colour = 0;
  std::uint32_t background = 0;
  std::uint32_t border = 0;
  double points = 0;  ///< size of the font where it is not the window's
  bool bold = false;
};

struct Element {
  Kind kind = Kind::column;
  std::string_view name{};
  std::string_view text{};     ///< label, button or title
  std::string_view partner{};  ///< widget that a label belongs to
  std::string_view drawing{};  ///< name of a drawing of our own
  std::string_view tip{};
  std::string_view spoken{};  ///< what a screen reader calls it
  Size least{};
  Size most{unlimited, unlimited};
  bool expands = false;   ///< a space that takes what is left
  bool upright = false;   ///< a space between widgets one above the other
  bool readOnly = false;  ///< from the beginning
  bool wraps = false;     ///< a label of several lines
  bool shrinks = false;   ///< a label that writes smaller what does not fit
  bool ink = false;       ///< a picture of which only what is dark is shown
  Style style{};
  Align horizontal = Align::fill;  ///< within its cell
  Align vertical = Align::fill;
  Align textHorizontal = Align::start;  ///< within itself
  Align textVertical = Align::centre;
  Cell cell{};
  Margins margins{};
  int horizontalSpacing = 6;
  int verticalSpacing = 6;
  std::span<const int> columnStretch{};
  std::span<const int> rowStretch{};
  std::span<const Element> children{};
};

struct Design {
  std::string_view form;
  const Element* root;
  bool fixed;  ///< the clerk cannot change its size
  std::span<const std::string_view> tabOrder;
};

/// The design of the form of this name, or nothing.
const Design* findDesign(std::string_view form);

}  // namespace kartix::adapters::native
