// Combo boxes, list boxes, list views and grids.
#include <algorithm>

#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kDroppedLines = 10;
constexpr int kTwipsPerPixel = 15;
constexpr ui::Color kBlack = ui::Rgb(0, 0, 0);
constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);

// A combo box or a list box: the same acts under two sets of numbers.
class ListControlWindow : public ControlWindow {
 public:
  ListControlWindow(FormView& view, ui::ListControl& list)
      : ControlWindow(view, list), list_(list), combo_(list.kind() == ui::ControlKind::kComboBox) {
    RECT place = Place();
    if (combo_) {
      place.bottom += kDroppedLines * kLine;
      MakeSystem("COMBOBOX", 0, BaseStyle() | CBS_DROPDOWNLIST | CBS_HASSTRINGS | WS_VSCROLL,
                 ParentWindow(), place, "");
    } else {
      MakeSystem("LISTBOX", WS_EX_CLIENTEDGE,
                 BaseStyle() | LBS_NOTIFY | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | WS_VSCROLL,
                 ParentWindow(), place, "");
    }
    Prepare();
    ShowItems();
  }

  bool WantsKey(WPARAM key) const override {
    return combo_ && (key == VK_RETURN || key == VK_ESCAPE) &&
           Send(handle(), CB_GETDROPPEDSTATE) != 0;
  }

  void Update(ui::Property property) override {
    switch (property) {
      case ui::Property::kItems:
        return ShowItems();
      case ui::Property::kSelection:
        return ShowSelection();
      case ui::Property::kBounds:
        if (combo_) {  // its height is that of the list that drops down
          const RECT place = Place();
          SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left,
                       place.bottom - place.top + kDroppedLines * kLine,
                       SWP_NOZORDER | SWP_NOACTIVATE);
          return;
        }
        break;
      default:
        break;
    }
    ControlWindow::Update(property);
  }

  void OnCommand(int code) override {
    if (code == (combo_ ? CBN_SELCHANGE : LBN_SELCHANGE)) {
      list_.list_index = static_cast<int>(Send(handle(), combo_ ? CB_GETCURSEL : LB_GETCURSEL));
    } else if (code == (combo_ ? CBN_DBLCLK : LBN_DBLCLK) && list_.on_double_click) {
      list_.on_double_click();
    }
  }

 private:
  static constexpr int kLine = 16;

  void ShowItems() {
    if (shown_ > list_.Count() || list_.Count() == 0) {
      Send(handle(), combo_ ? CB_RESETCONTENT : LB_RESETCONTENT);
      shown_ = 0;
    }
    for (; shown_ < list_.Count(); ++shown_) {
      SendText(handle(), combo_ ? CB_ADDSTRING : LB_ADDSTRING, 0, list_.Item(shown_));
    }
    ShowSelection();
  }
  void ShowSelection() {
    Send(handle(), combo_ ? CB_SETCURSEL : LB_SETCURSEL,
         static_cast<WPARAM>(list_.list_index.get()));
  }

  ui::ListControl& list_;
  bool combo_;
  int shown_ = 0;
};

// A list of the system in its table form.
class TableWindow : public ControlWindow {
 public:
  TableWindow(FormView& view, ui::Control& control) : ControlWindow(view, control) {}

 protected:
  void Make(DWORD style) {
    MakeSystem(WC_LISTVIEWA, WS_EX_CLIENTEDGE,
               BaseStyle() | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | style, ParentWindow(),
               Place(), "");
    Send(handle(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    Prepare();
  }
  void AddColumn(int index, const std::string& caption, int width) {
    std::wstring wide = Wide(caption);
    std::string ansi = Ansi(caption);
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.cx = width;
    column.iSubItem = index;
    column.pszText = HasUnicode() ? reinterpret_cast<char*>(wide.data()) : ansi.data();
    Send(handle(), HasUnicode() ? LVM_INSERTCOLUMNW : LVM_INSERTCOLUMNA, static_cast<WPARAM>(index),
         reinterpret_cast<LPARAM>(&column));
    ++columns_;
  }
  void AddRow(int row, const std::vector<std::string>& cells) {
    for (int column = 0; column < std::max(columns_, 1); ++column) {
      const size_t place = static_cast<size_t>(column);
      const std::string text = place < cells.size() ? cells[place] : "";
      std::wstring wide = Wide(text);
      std::string ansi = Ansi(text);
      LVITEMA item = {};
      item.mask = LVIF_TEXT;
      item.iItem = row;
      item.iSubItem = column;
      item.pszText = HasUnicode() ? reinterpret_cast<char*>(wide.data()) : ansi.data();
      const UINT message = column == 0 ? (HasUnicode() ? LVM_INSERTITEMW : LVM_INSERTITEMA)
                                       : (HasUnicode() ? LVM_SETITEMW : LVM_SETITEMA);
      Send(handle(), message, 0, reinterpret_cast<LPARAM>(&item));
    }
  }
  int columns() const { return columns_; }

 private:
  int columns_ = 0;
};

class ListViewWindow : public TableWindow {
 public:
  ListViewWindow(FormView& view, ui::ListView& list) : TableWindow(view, list), list_(list) {
    Make(0);
    ShowItems();
  }

  void Update(ui::Property property) override {
    if (property == ui::Property::kItems) return ShowItems();
    if (property == ui::Property::kSelection) return ShowSelection();
    ControlWindow::Update(property);
  }

  LRESULT OnNotify(NMHDR* header) override {
    if (header->code == static_cast<UINT>(LVN_ITEMCHANGED) && !updating_) {
      const auto& change = *reinterpret_cast<const NMLISTVIEW*>(header);
      const bool selected = (change.uNewState & LVIS_SELECTED) != 0;
      if (selected && (change.uOldState & LVIS_SELECTED) == 0) {
        list_.selected = change.iItem;
        if (list_.on_item_click) list_.on_item_click();
      }
    } else if (header->code == static_cast<UINT>(NM_DBLCLK) && list_.on_double_click) {
      list_.on_double_click();
    } else if (header->code == static_cast<UINT>(LVN_COLUMNCLICK) && list_.on_column_click) {
      list_.on_column_click(reinterpret_cast<const NMLISTVIEW*>(header)->iSubItem);
    }
    return 0;
  }

 private:
  int ColumnWidth(int index) const {
    const int room = static_cast<const ui::Bounds&>(list_.bounds).width - kScrollBar;
    if (list_.column_percents.empty()) return room / static_cast<int>(list_.columns.size());
    return room * list_.column_percents[static_cast<size_t>(index)] / 100;
  }
  void ShowItems() {
    updating_ = true;
    while (columns() < static_cast<int>(list_.columns.size())) {
      const int index = columns();
      AddColumn(index, list_.columns[static_cast<size_t>(index)], ColumnWidth(index));
    }
    const int count = static_cast<int>(list_.rows().size());
    if (shown_ > count || count == 0) {
      Send(handle(), LVM_DELETEALLITEMS);
      shown_ = 0;
    }
    for (; shown_ < count; ++shown_) {
      AddRow(shown_, list_.rows()[static_cast<size_t>(shown_)].cells);
    }
    updating_ = false;
    ShowSelection();
  }
  void ShowSelection() {
    updating_ = true;
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    const int selected = list_.selected;
    item.state = selected >= 0 ? item.stateMask : 0;
    Send(handle(), LVM_SETITEMSTATE, static_cast<WPARAM>(selected),
         reinterpret_cast<LPARAM>(&item));
    if (selected >= 0) Send(handle(), LVM_ENSUREVISIBLE, static_cast<WPARAM>(selected), FALSE);
    updating_ = false;
  }

  static constexpr int kScrollBar = 22;
  ui::ListView& list_;
  int shown_ = 0;
};

class GridWindow : public TableWindow {
 public:
  GridWindow(FormView& view, ui::Grid& grid) : TableWindow(view, grid), grid_(grid) {
    Make(LVS_NOCOLUMNHEADER);
    ShowItems();
  }

  void Update(ui::Property property) override {
    if (property == ui::Property::kItems || property == ui::Property::kLook) return ShowItems();
    ControlWindow::Update(property);
  }

  LRESULT OnNotify(NMHDR* header) override {
    if (header->code != static_cast<UINT>(NM_CUSTOMDRAW)) return 0;
    auto* draw = reinterpret_cast<NMLVCUSTOMDRAW*>(header);
    if (draw->nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw->nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
    const size_t place = draw->nmcd.dwItemSpec;
    if (place >= grid_.rows().size()) return CDRF_DODEFAULT;
    const ui::Grid::Row& row = grid_.rows()[place];
    draw->clrTextBk = ToColorRef(row.back_color, kWhite);
    draw->clrText = ToColorRef(grid_.fore_color, kBlack);
    SelectObject(draw->nmcd.hdc, drawing().Font(grid_.font_size, row.bold, false));
    return CDRF_NEWFONT;
  }

 private:
  void ShowItems() {
    size_t wanted = grid_.column_widths.size();
    for (const ui::Grid::Row& row : grid_.rows()) wanted = std::max(wanted, row.cells.size());
    while (columns() < static_cast<int>(wanted)) AddColumn(columns(), "", 100);
    for (size_t i = 0; i < grid_.column_widths.size(); ++i) {
      Send(handle(), LVM_SETCOLUMNWIDTH, i, MAKELPARAM(grid_.column_widths[i] / kTwipsPerPixel, 0));
    }
    const int count = static_cast<int>(grid_.rows().size());
    if (shown_ > count || count == 0) {
      Send(handle(), LVM_DELETEALLITEMS);
      shown_ = 0;
    }
    for (; shown_ < count; ++shown_) {
      AddRow(shown_, grid_.rows()[static_cast<size_t>(shown_)].cells);
    }
  }

  ui::Grid& grid_;
  int shown_ = 0;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeListWindow(FormView& view, ui::Control& control) {
  switch (control.kind()) {
    case ui::ControlKind::kListView:
      return std::make_unique<ListViewWindow>(view, static_cast<ui::ListView&>(control));
    case ui::ControlKind::kGrid:
      return std::make_unique<GridWindow>(view, static_cast<ui::Grid&>(control));
    default:
      return std::make_unique<ListControlWindow>(view, static_cast<ui::ListControl&>(control));
  }
}

}  // namespace quorvale::windows
