// Trees with check boxes and pictures.
//
// The model tells of every single change, and a large tree has tens of thousands of nodes. So the
// window follows the model once per pause, not once per change, and makes the children of a node
// when the node is first opened.
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {
namespace {

constexpr UINT kCheckMessage = WM_APP + 1;  // the box of an item was clicked
constexpr UINT kClickMessage = WM_APP + 2;  // an item was clicked
constexpr UINT kTreeMessage = WM_APP + 3;   // the tree was clicked, wherever
constexpr UINT_PTR kSyncTimer = 1;
constexpr UINT kSyncDelay = 15;  // milliseconds
constexpr size_t kManyItems = 500;
constexpr int kPictureSize = 16;
constexpr UINT kUnchecked = 1;  // places in the list of check box pictures
constexpr UINT kChecked = 2;

// What the window shows for a node.
struct Item {
  ui::TreeNode* node = nullptr;
  HTREEITEM handle = nullptr;
  LPARAM number = 0;
  std::string text, image, selected_image;
  bool checked = false;
  bool expanded = false;
  bool has_children = false;
  bool filled = false;  // its children have items
  std::vector<std::unique_ptr<Item>> children;
};

class TreeWindow : public ControlWindow {
 public:
  TreeWindow(FormView& view, ui::TreeView& tree)
      : ControlWindow(view, tree), tree_(tree), pictures_(drawing(), kPictureSize) {
    MakeSystem(WC_TREEVIEWA, WS_EX_CLIENTEDGE,
               BaseStyle() | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
               ParentWindow(), Place(), "");
    // Told apart from the style at creation: only so do all versions make the boxes at once.
    SetWindowLongPtrA(handle(), GWL_STYLE, GetWindowLongPtrA(handle(), GWL_STYLE) | TVS_CHECKBOXES);
    Send(handle(), TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(pictures_.handle()));
    UseOwnBoxes();
    Prepare();
    root_.filled = true;
    Sync();
  }

  ~TreeWindow() override {
    Send(handle(), TVM_SETIMAGELIST, TVSIL_STATE, 0);
    ImageList_Destroy(boxes_);
  }

  void Update(ui::Property property) override {
    switch (property) {
      case ui::Property::kItems:
      case ui::Property::kSelection:
        stale_ = true;
        SetTimer(handle(), kSyncTimer, kSyncDelay, nullptr);
        return;
      default:
        ControlWindow::Update(property);
    }
  }

  LRESULT OnNotify(NMHDR* header) override {
    switch (header->code) {
      case static_cast<UINT>(NM_CLICK):
        return OnMouseClick();
      case static_cast<UINT>(NM_DBLCLK):
        if (tree_.on_double_click) tree_.on_double_click();
        return 0;
      case static_cast<UINT>(TVN_SELCHANGEDA):
      case static_cast<UINT>(TVN_SELCHANGEDW): {
        const auto& change = *reinterpret_cast<const NMTREEVIEWA*>(header);
        if (updating_) return 0;
        if (change.action == TVC_BYKEYBOARD) {
          PostMessageA(handle(), kClickMessage, 0, change.itemNew.lParam);
        } else if (change.action == TVC_UNKNOWN) {
          // A tree that gets the keyboard for the first time selects its first item by itself.
          if (Item* item = stale_ ? nullptr : Find(change.itemNew.lParam)) tree_.Select(item->node);
        }
        return 0;
      }
      case static_cast<UINT>(TVN_ITEMEXPANDINGA):
      case static_cast<UINT>(TVN_ITEMEXPANDINGW): {
        const auto& change = *reinterpret_cast<const NMTREEVIEWA*>(header);
        if (stale_ && !updating_) return TRUE;  // not now: its node may be gone
        if (Item* item = Find(change.itemNew.lParam)) Fill(*item);
        return 0;
      }
      case static_cast<UINT>(TVN_ITEMEXPANDEDA):
      case static_cast<UINT>(TVN_ITEMEXPANDEDW): {
        const auto& change = *reinterpret_cast<const NMTREEVIEWA*>(header);
        if (!updating_) OnExpanded(change.itemNew.lParam, (change.action & TVE_EXPAND) != 0);
        return 0;
      }
      default:
        return 0;
    }
  }

 protected:
  std::optional<LRESULT> OnMessage(UINT message, WPARAM w, LPARAM l) override {
    switch (message) {
      case WM_TIMER:
        if (w != kSyncTimer) return std::nullopt;
        KillTimer(handle(), kSyncTimer);
        Sync();
        return 0;
      case kCheckMessage:
        OnCheck(l);
        return 0;
      case kClickMessage:
        Sync();
        if (Item* item = Find(l)) tree_.UserClicks(item->node);
        return 0;
      case kTreeMessage:
        Sync();
        tree_.Click();
        return 0;
      case WM_PAINT:
        if (looks_wait_ && !stale_ && !updating_) ShowLooksInView();
        return std::nullopt;
      case TVM_GETITEMA:
      case TVM_GETITEMW:
        if (looks_wait_ && !stale_ && !updating_) {
          ShowLookAsked(*reinterpret_cast<const TVITEMA*>(l));
        }
        return std::nullopt;
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        if (stale_) Sync();  // what is acted on must be what the model holds
        return std::nullopt;
      case WM_KEYDOWN:
        if (stale_) Sync();
        // The page was asked before; what is left is the plain tick.
        if (w != VK_SPACE) return std::nullopt;
        if (tree_.Selected() != nullptr) {
          tree_.UserChecks(tree_.Selected(), !tree_.Selected()->Checked());
        }
        return 0;
      case WM_CHAR:
        if (w == ' ') return 0;
        return std::nullopt;
      default:
        return std::nullopt;
    }
  }

 private:
  // The system's boxes grow with the dots of the screen, the lines of the tree do not.
  void UseOwnBoxes() {
    boxes_ = ImageList_Create(kPictureSize, kPictureSize, ILC_COLOR24, 3, 0);
    const HDC screen = GetDC(nullptr);
    for (const UINT state : {0u, kUnchecked, kChecked}) {
      const HDC context = CreateCompatibleDC(screen);
      const HBITMAP bitmap = CreateCompatibleBitmap(screen, kPictureSize, kPictureSize);
      const HGDIOBJ before = SelectObject(context, bitmap);
      RECT area = {0, 0, kPictureSize, kPictureSize};
      FillRect(context, &area, drawing().Brush(RGB(255, 255, 255)));
      area = {1, 1, kPictureSize - 2, kPictureSize - 2};
      const UINT look = DFCS_BUTTONCHECK | DFCS_FLAT | (state == kChecked ? DFCS_CHECKED : 0);
      if (state != 0) DrawFrameControl(context, &area, DFC_BUTTON, look);
      SelectObject(context, before);
      ImageList_Add(boxes_, bitmap, nullptr);
      DeleteObject(bitmap);
      DeleteDC(context);
    }
    ReleaseDC(nullptr, screen);
    ImageList_Destroy(reinterpret_cast<HIMAGELIST>(
        Send(handle(), TVM_SETIMAGELIST, TVSIL_STATE, reinterpret_cast<LPARAM>(boxes_))));
  }

  // Messages carry the number of an item: an item may be gone when they come.
  Item* Find(LPARAM number) {
    const auto found = numbered_.find(number);
    return found == numbered_.end() ? nullptr : found->second;
  }

  LRESULT OnMouseClick() {
    const DWORD position = GetMessagePos();
    TVHITTESTINFO hit = {};
    hit.pt.x = static_cast<short>(LOWORD(position));
    hit.pt.y = static_cast<short>(HIWORD(position));
    ScreenToClient(handle(), &hit.pt);
    Send(handle(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    if (hit.hItem == nullptr) {
      PostMessageA(handle(), kTreeMessage, 0, 0);
      return 0;
    }
    const LPARAM number = NumberOf(hit.hItem);
    if ((hit.flags & TVHT_ONITEMSTATEICON) != 0) {
      PostMessageA(handle(), kCheckMessage, 0, number);
    } else if ((hit.flags & TVHT_ONITEM) != 0) {
      PostMessageA(handle(), kClickMessage, 0, number);
    }
    PostMessageA(handle(), kTreeMessage, 0, 0);
    return 0;
  }

  LPARAM NumberOf(HTREEITEM handle_of_item) const {
    TVITEMA data = {};
    data.mask = TVIF_PARAM | TVIF_HANDLE;
    data.hItem = handle_of_item;
    Send(handle(), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&data));
    return data.lParam;
  }

  // The system has turned its own box by now; the model decides.
  void OnCheck(LPARAM number) {
    Sync();
    Item* item = Find(number);
    if (item == nullptr) return;
    const bool wanted = !item->node->Checked();
    tree_.UserChecks(item->node, wanted);
    Sync();
    if ((item = Find(number)) == nullptr) return;
    item->checked = !item->node->Checked();  // which way the box shows is not known: write it
    SyncItem(*item, true);
  }

  void OnExpanded(LPARAM number, bool expanded) {
    Item* item = stale_ ? nullptr : Find(number);
    if (item == nullptr) return;
    item->expanded = expanded;
    item->node->SetExpanded(expanded);
    const auto& event = expanded ? tree_.on_expand : tree_.on_collapse;
    if (event) event(item->node);
  }

  void Sync() {
    if (updating_) return;
    updating_ = true;
    stale_ = false;
    Send(handle(), WM_SETREDRAW, FALSE);
    SyncChildren(root_, Roots(), TVI_ROOT);
    Select();
    Send(handle(), WM_SETREDRAW, TRUE);
    updating_ = false;
  }

  std::vector<ui::TreeNode*> Roots() const {
    std::vector<ui::TreeNode*> roots;
    if (tree_.Count() == 0) return roots;
    for (ui::TreeNode* node = tree_.Node(1); node != nullptr; node = node->Next()) {
      roots.push_back(node);
    }
    return roots;
  }

  void SyncChildren(Item& parent, const std::vector<ui::TreeNode*>& nodes, HTREEITEM handle_of) {
    size_t same = 0;
    while (same < nodes.size() && same < parent.children.size() &&
           parent.children[same]->node == nodes[same] &&
           parent.children[same]->text == nodes[same]->Text()) {
      ++same;
    }
    while (parent.children.size() > same) {
      Forget(*parent.children.back());
      Send(handle(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(parent.children.back()->handle));
      parent.children.pop_back();
    }
    for (size_t i = same; i < nodes.size(); ++i) Insert(parent, *nodes[i], handle_of);
    // To change an item takes some systems half a millisecond: of many, only those in view are.
    const bool at_once = parent.children.size() <= kManyItems;
    if (!at_once) looks_wait_ = true;
    for (const auto& item : parent.children) SyncItem(*item, at_once);
  }

  // The item is made with all that its node says, and as the last of its parent: some systems walk
  // through all items of the tree for each message that names one of them.
  void Insert(Item& parent, ui::TreeNode& node, HTREEITEM handle_of) {
    auto item = std::make_unique<Item>();
    item->node = &node;
    item->text = node.Text();
    item->number = ++last_number_;
    std::wstring wide = Wide(item->text);
    std::string ansi = Ansi(item->text);
    TVINSERTSTRUCTA insert = {};
    insert.hParent = handle_of;
    insert.hInsertAfter = TVI_LAST;
    TakeLook(*item, &insert.item);
    insert.item.mask |=
        TVIF_TEXT | TVIF_PARAM | TVIF_STATE | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN;
    insert.item.pszText = HasUnicode() ? reinterpret_cast<char*>(wide.data()) : ansi.data();
    insert.item.lParam = item->number;
    insert.item.stateMask = TVIS_STATEIMAGEMASK;
    insert.item.state = INDEXTOSTATEIMAGEMASK(item->checked ? kChecked : kUnchecked);
    if (item->image.empty()) insert.item.iImage = I_IMAGENONE;
    if (item->image.empty() && item->selected_image.empty()) {
      insert.item.iSelectedImage = I_IMAGENONE;
    }
    item->handle =
        reinterpret_cast<HTREEITEM>(Send(handle(), HasUnicode() ? TVM_INSERTITEMW : TVM_INSERTITEMA,
                                         0, reinterpret_cast<LPARAM>(&insert)));
    numbered_.emplace(item->number, item.get());
    parent.children.push_back(std::move(item));
  }

  // Puts into `data` what an item does not show of its node yet.
  void TakeLook(Item& item, TVITEMA* data) {
    const ui::TreeNode& node = *item.node;
    if (item.checked != node.Checked()) {
      item.checked = node.Checked();
      data->mask |= TVIF_STATE;
      data->stateMask = TVIS_STATEIMAGEMASK;
      data->state = INDEXTOSTATEIMAGEMASK(item.checked ? kChecked : kUnchecked);
    }
    if (item.image != node.image || item.selected_image != node.selected_image) {
      item.image = node.image;
      item.selected_image = node.selected_image;
      data->mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
      data->iImage = PictureOf(item.image);
      data->iSelectedImage =
          item.selected_image.empty() ? data->iImage : PictureOf(item.selected_image);
    }
    const bool has_children = node.Children() > 0;
    if (item.has_children != has_children) {
      item.has_children = has_children;
      data->mask |= TVIF_CHILDREN;
      data->cChildren = has_children ? 1 : 0;
    }
  }

  // Makes an item show what its node says of itself.
  void ShowLook(Item& item) {
    TVITEMA data = {};
    data.hItem = item.handle;
    TakeLook(item, &data);
    if (data.mask == 0) return;
    data.mask |= TVIF_HANDLE;
    Send(handle(), TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&data));
  }

  // The items on the screen, before they are painted.
  void ShowLooksInView() {
    LRESULT count = Send(handle(), TVM_GETVISIBLECOUNT) + 1;  // the last is seen in part
    LPARAM seen = Send(handle(), TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE);
    for (; seen != 0 && count > 0; --count) {
      if (Item* item = Find(NumberOf(reinterpret_cast<HTREEITEM>(seen)))) ShowLook(*item);
      seen = Send(handle(), TVM_GETNEXTITEM, TVGN_NEXTVISIBLE, seen);
    }
  }

  // The item that somebody asks about.
  void ShowLookAsked(const TVITEMA& asked) {
    if ((asked.mask & (TVIF_STATE | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN)) == 0) return;
    if (Item* item = Find(NumberOf(asked.hItem))) ShowLook(*item);
  }

  void SyncItem(Item& item, bool at_once) {
    const ui::TreeNode& node = *item.node;
    if (at_once) ShowLook(item);
    if (item.filled || node.Expanded()) {
      item.filled = true;
      SyncChildren(item, node.ChildNodes(), item.handle);
    }
    if (item.expanded != node.Expanded()) {
      item.expanded = node.Expanded();
      Send(handle(), TVM_EXPAND, item.expanded ? TVE_EXPAND : TVE_COLLAPSE,
           reinterpret_cast<LPARAM>(item.handle));
    }
  }

  int PictureOf(const std::string& name) {
    const int place = pictures_.Place(name);
    return place < 0 ? I_IMAGENONE : place;
  }

  void Fill(Item& item) {
    if (item.filled) return;
    item.filled = true;
    const bool before = updating_;
    updating_ = true;
    if (!before) Send(handle(), WM_SETREDRAW, FALSE);
    SyncChildren(item, item.node->ChildNodes(), item.handle);
    if (!before) Send(handle(), WM_SETREDRAW, TRUE);
    updating_ = before;
  }

  void Forget(Item& item) {
    for (const auto& child : item.children) Forget(*child);
    numbered_.erase(item.number);
  }

  Item* ItemOf(Item& parent, const ui::TreeNode* node) {
    for (const auto& item : parent.children) {
      if (item->node == node) return item.get();
    }
    return nullptr;
  }

  // The item of a node, made with all above it if it is not there yet; the root of all for null.
  Item* MakeItemOf(ui::TreeNode* node) {
    if (node == nullptr) return &root_;
    Item* parent = MakeItemOf(node->Parent());
    if (parent == nullptr) return nullptr;
    if (parent != &root_) Fill(*parent);
    return ItemOf(*parent, node);
  }

  void Select() {
    Item* item = MakeItemOf(tree_.Selected());
    if (item == nullptr) return;
    const HTREEITEM wanted = item == &root_ ? nullptr : item->handle;
    if (reinterpret_cast<HTREEITEM>(Send(handle(), TVM_GETNEXTITEM, TVGN_CARET)) != wanted) {
      Send(handle(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(wanted));
    }
  }

  ui::TreeView& tree_;
  PictureList pictures_;
  HIMAGELIST boxes_ = nullptr;
  bool stale_ = true;        // the model has changed since the window followed it
  bool looks_wait_ = false;  // items out of view may not show yet what their nodes say
  Item root_;
  std::unordered_map<LPARAM, Item*> numbered_;
  LPARAM last_number_ = 0;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeTreeWindow(FormView& view, ui::TreeView& tree) {
  return std::make_unique<TreeWindow>(view, tree);
}

}  // namespace quorvale::windows
