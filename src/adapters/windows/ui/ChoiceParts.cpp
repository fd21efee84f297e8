#include "adapters/windows/ui/ChoiceParts.h"

#include <algorithm>

#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

/// Frame and margins of a combo box, its button, and entries that are seen at once.
constexpr int aroundEntry = 8;
constexpr int besideEntry = 36;
constexpr int entriesSeen = 12;

/// What stands around a text in a list, and rows of the other colour.
constexpr int aroundRow = 8;
constexpr int besideCell = 16;
constexpr COLORREF otherRow = RGB(0xf5, 0xf7, 0xfa);

}  // namespace

ComboPart::ComboPart(const Element& element, forms::ComboBox& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(WC_COMBOBOXW, CBS_DROPDOWNLIST | CBS_HASSTRINGS | WS_VSCROLL);
}

Size ComboPart::natural() const {
  int width = look().measure(wide(control_.text()), look().font()).width;
  for (const std::string& item : control_.items())
    width = std::max(width, look().measure(wide(item), look().font()).width);
  return {width + look().pixels(besideEntry), look().lineHeight() + look().pixels(aroundEntry)};
}

/// The size of a combo box is that of its open list; closed, it has the height that suits its font.
void ComboPart::place(const Box& box) {
  RECT closed{};
  GetWindowRect(handle(), &closed);
  const auto height = static_cast<int>(closed.bottom - closed.top);
  const int line = look().lineHeight() + 2;
  send(CB_SETITEMHEIGHT, 0, line);
  Part::place({box.left, box.top + (box.height - height) / 2, box.width, height + entriesSeen * line + 2});
}

void ComboPart::show() {
  if (items_ != control_.items()) {
    items_ = control_.items();
    send(CB_RESETCONTENT);
    for (const std::string& item : items_) send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(item).c_str()));
    text_.clear();
  }
  const auto found = std::find(items_.begin(), items_.end(), control_.text());
  const auto index = static_cast<WPARAM>(found == items_.end() ? CB_ERR : found - items_.begin());
  if (static_cast<WPARAM>(send(CB_GETCURSEL)) != index) send(CB_SETCURSEL, index);
  if (text_ == control_.text()) return;
  text_ = control_.text();
  const std::wstring other = found == items_.end() ? wide(text_) : std::wstring();
  send(CB_SETCUEBANNER, 0, reinterpret_cast<LPARAM>(other.c_str()));
}

/// The arrow keys choose at once in a closed list. In an open one nothing is chosen until it closes.
void ComboPart::command(WORD code) {
  if (code == CBN_DROPDOWN) decided_ = false;
  if (code == CBN_SELENDOK) decided_ = true;
  if (code == CBN_SELCHANGE && !isDropped()) take();
  if (code != CBN_CLOSEUP) return;
  decided_ ? take() : update();
}

void ComboPart::take() {
  const LRESULT index = send(CB_GETCURSEL);
  if (index < 0 || static_cast<std::size_t>(index) >= items_.size()) return;
  const auto chosen = static_cast<std::size_t>(index);
  if (items_[chosen] != control_.text()) act([&] { control_.userSelect(chosen); });
}

ListPart::ListPart(const Element& element, forms::ListView& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(WC_LISTVIEWW, LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER, WS_EX_CLIENTEDGE);
  send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
}

void ListPart::restyle() {
  Part::restyle();
  look().controls().setRowHeight(handle(), look().lineHeight() + look().pixels(aroundRow));
  fitColumns();
}

void ListPart::show() {
  if (columns_ != control_.columns() || rows_ != control_.rows()) showRows();
  const int row = control_.currentRow() ? static_cast<int>(*control_.currentRow()) : -1;
  if (row < 0 || row == currentRow()) return;
  LVITEMW state{};
  state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
  send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&state));
  send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void ListPart::showRows() {
  columns_ = control_.columns();
  rows_ = control_.rows();
  send(LVM_DELETEALLITEMS);
  while (send(LVM_DELETECOLUMN) != 0) continue;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::wstring title = wide(columns_[i]);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = title.data();
    column.iSubItem = static_cast<int>(i);
    send(LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    for (std::size_t i = 0; i < std::min(rows_[row].size(), columns_.size()); ++i) {
      std::wstring text = wide(rows_[row][i]);
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = static_cast<int>(row);
      item.iSubItem = static_cast<int>(i);
      item.pszText = text.data();
      send(i == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
  }
  fitColumns();
}

void ListPart::place(const Box& box) {
  Part::place(box);
  fitColumns();
}

/// Each column is as wide as its texts; the last one takes what is left.
void ListPart::fitColumns() const {
  RECT inside{};
  GetClientRect(handle(), &inside);
  int left = inside.right;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    int width = look().measure(wide(columns_[i]), look().font()).width;
    for (const auto& row : rows_) {
      if (i < row.size()) width = std::max(width, look().measure(wide(row[i]), look().font()).width);
    }
    width += look().pixels(besideCell);
    if (i + 1 == columns_.size()) width = std::max(width, left);
    send(LVM_SETCOLUMNWIDTH, i, width);
    left -= width;
  }
}

int ListPart::currentRow() const {
  return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
}

LRESULT ListPart::notified(NMHDR& report) {
  if (report.code == NM_CUSTOMDRAW) {
    auto& drawing = reinterpret_cast<NMLVCUSTOMDRAW&>(report);
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (drawing.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && drawing.nmcd.dwItemSpec % 2 == 1)
      drawing.clrTextBk = otherRow;
    return CDRF_DODEFAULT;
  }
  if (report.code == NM_DBLCLK) choose(reinterpret_cast<const NMITEMACTIVATE&>(report).iItem);
  if (report.code != LVN_ITEMCHANGED || showing()) return 0;
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(report);
  if (change.iItem >= 0 && (change.uNewState & LVIS_FOCUSED) != 0)
    control_.userMove(static_cast<std::size_t>(change.iItem));
  return 0;
}

void ListPart::choose(int row) {
  if (row >= 0) act([&] { control_.userDoubleClick(static_cast<std::size_t>(row)); });
}

bool ListPart::enter() {
  if (!control_.onEnter) return false;
  act([this] { control_.userEnter(); });
  return true;
}

}  // namespace kartix::adapters::native
