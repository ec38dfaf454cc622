#include "platform/windows/control_window.h"

#include "platform/ui/form.h"
#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {
namespace {

constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);
constexpr COLORREF kBoxBorder = RGB(127, 157, 185);
constexpr COLORREF kQuietBox = RGB(243, 246, 251);  // behind text that cannot be typed over
// Another program finds a control by this property of its window: an atom of "form.control".
constexpr char kNameProperty[] = "QuorvaleName";
// And by this one it sees bold text: it cannot look into fonts.
constexpr char kBoldProperty[] = "QuorvaleBold";

}  // namespace

std::optional<LRESULT> Surface::RouteToChild(UINT message, WPARAM w, LPARAM l) {
  const auto child_of = [](HWND window) {
    return dynamic_cast<ControlWindow*>(Window::Of(window));
  };
  switch (message) {
    case WM_COMMAND:
      if (ControlWindow* child = child_of(reinterpret_cast<HWND>(l))) {
        child->OnCommand(HIWORD(w));
        return 0;
      }
      break;
    case WM_NOTIFY: {
      auto* header = reinterpret_cast<NMHDR*>(l);
      if (ControlWindow* child = child_of(header->hwndFrom)) return child->OnNotify(header);
      break;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
      // A control of the system's own is coloured too.
      const ControlWindow* child = child_of(reinterpret_cast<HWND>(l));
      const COLORREF ground = child != nullptr ? child->InsideColor(GroundColor()) : GroundColor();
      SetBkColor(reinterpret_cast<HDC>(w), ground);
      return reinterpret_cast<LRESULT>(drawing().Brush(ground));
    }
    default:
      break;
  }
  return std::nullopt;
}

ControlWindow::ControlWindow(FormView& view, ui::Control& control)
    : view_(view), control_(control) {}

ControlWindow::~ControlWindow() {
  if (handle() == nullptr) return;
  RemovePropA(handle(), kBoldProperty);
  const HANDLE name = RemovePropA(handle(), kNameProperty);
  if (name != nullptr) GlobalDeleteAtom(static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(name)));
}

Drawing& ControlWindow::drawing() const { return view_.ui().drawing(); }

HWND ControlWindow::ParentWindow() const { return view_.ParentOf(control_); }

RECT ControlWindow::Place() const {
  const ui::Bounds bounds = control_.bounds;
  return {bounds.left, bounds.top, bounds.left + bounds.width, bounds.top + bounds.height};
}

DWORD ControlWindow::BaseStyle() const {
  DWORD style = WS_CHILD | WS_CLIPSIBLINGS;
  if (control_.visible) style |= WS_VISIBLE;
  if (!control_.enabled) style |= WS_DISABLED;
  return style;
}

void ControlWindow::Prepare() {
  const std::string name = view_.form().name() + "." + control_.name();
  const ATOM atom = GlobalAddAtomA(name.c_str());
  SetPropA(handle(), kNameProperty, reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(atom)));
  SetWindowPos(handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  UseFont(FALSE);
  view_.SetToolTip(*this);
}

void ControlWindow::UseFont(BOOL repaint) {
  Send(handle(), WM_SETFONT, reinterpret_cast<WPARAM>(drawing().FontOf(control_)), repaint);
  if (control_.bold) {
    SetPropA(handle(), kBoldProperty, reinterpret_cast<HANDLE>(ULONG_PTR{1}));
  } else {
    RemovePropA(handle(), kBoldProperty);
  }
}

void ControlWindow::Update(ui::Property property) {
  switch (property) {
    case ui::Property::kVisible:
      ShowWindow(handle(), control_.visible ? SW_SHOWNA : SW_HIDE);
      Invalidate();
      break;
    case ui::Property::kEnabled:
      EnableWindow(handle(), control_.enabled ? TRUE : FALSE);
      RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
      Invalidate();
      break;
    case ui::Property::kBounds: {
      Invalidate();
      const RECT place = Place();
      SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      Invalidate();
      break;
    }
    case ui::Property::kFont:
      UseFont(TRUE);
      Invalidate();
      break;
    case ui::Property::kToolTip:
      view_.SetToolTip(*this);
      break;
    default:
      Invalidate();
      break;
  }
}

void ControlWindow::Invalidate() {
  RECT place;
  GetWindowRect(handle(), &place);
  const HWND parent = GetParent(handle());
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
  RedrawWindow(parent, &place, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void ControlWindow::PaintAll(Canvas& canvas, Origin origin) {
  PaintBehind(canvas, origin);
  PaintContent(canvas, origin);
}

// The parent, and the pictures beside this window that lie under it.
void ControlWindow::PaintBehind(Canvas& canvas, Origin origin) {
  const RECT place = Place();
  const Origin parent_origin{origin.x - place.left, origin.y - place.top};
  Surface* parent = view_.SurfaceOf(control_.container);
  if (parent != nullptr) parent->PaintAll(canvas, parent_origin);
  for (const auto& other : view_.windows()) {
    if (other.get() == this) break;
    const ui::Control& lower = other->control();
    const bool picture =
        lower.kind() == ui::ControlKind::kPictureBox || lower.kind() == ui::ControlKind::kFrame;
    if (!picture || !lower.visible || lower.container != control_.container) continue;
    const RECT lower_place = other->Place();
    RECT common;
    if (IntersectRect(&common, &place, &lower_place) == 0) continue;
    other->PaintContent(canvas,
                        {parent_origin.x + lower_place.left, parent_origin.y + lower_place.top});
  }
}

COLORREF ControlWindow::GroundColor() const {
  if (control_.back_color != ui::kDefaultColor) return ToColorRef(control_.back_color, kWhite);
  const Surface* parent = view_.SurfaceOf(control_.container);
  return parent != nullptr ? parent->GroundColor() : ToColorRef(kWhite, kWhite);
}

void ControlWindow::PaintWindow() {
  PAINTSTRUCT paint;
  const HDC target = BeginPaint(handle(), &paint);
  RECT area;
  GetClientRect(handle(), &area);
  Canvas canvas(area.right, area.bottom);
  PaintAll(canvas, {0, 0});
  canvas.ShowOn(target);
  EndPaint(handle(), &paint);
}

bool ControlWindow::OnMouse(UINT message, LPARAM l) {
  const int x = static_cast<short>(LOWORD(l));
  const int y = static_cast<short>(HIWORD(l));
  switch (message) {
    case WM_MOUSEMOVE:
      if (!mouse_inside_) OnMouseEnter();
      return false;
    case WM_MOUSELEAVE:
      OnMouseLeave();
      return false;
    case WM_LBUTTONDOWN:
      return OnPress(x, y);
    case WM_LBUTTONUP:
      return OnRelease(x, y);
    case WM_LBUTTONDBLCLK:
      if (control_.on_double_click) control_.on_double_click();
      return false;
    default:
      return false;
  }
}

void ControlWindow::OnMouseEnter() {
  mouse_inside_ = true;
  TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, handle(), 0};
  _TrackMouseEvent(&track);
  if (control_.on_mouse_enter) control_.on_mouse_enter();
  if (OwnClicks()) Invalidate();
}

void ControlWindow::OnMouseLeave() {
  mouse_inside_ = false;
  if (control_.on_mouse_leave) control_.on_mouse_leave();
  if (OwnClicks()) Invalidate();
}

bool ControlWindow::OnPress(int x, int y) {
  if (control_.on_mouse_down) control_.on_mouse_down(x, y);
  if (!OwnClicks()) return false;
  if (TakesFocus()) SetFocus(handle());
  mouse_pressed_ = true;
  SetCapture(handle());
  Invalidate();
  return true;
}

bool ControlWindow::OnRelease(int x, int y) {
  const bool pressed = mouse_pressed_;
  mouse_pressed_ = false;
  if (OwnClicks()) {
    if (GetCapture() == handle()) ReleaseCapture();
    Invalidate();
  }
  if (control_.on_mouse_up) control_.on_mouse_up(x, y);
  if (!OwnClicks()) return false;
  RECT area;
  GetClientRect(handle(), &area);
  if (pressed && PtInRect(&area, POINT{x, y}) != 0) OnClick();
  return true;
}

// Boxes of all kinds have the same thin line around them, whatever look the system gives each.
void ControlWindow::PaintBoxBorder() {
  RECT area;
  GetWindowRect(handle(), &area);
  OffsetRect(&area, -area.left, -area.top);
  const HDC target = GetWindowDC(handle());
  FrameRect(target, &area, drawing().Brush(kBoxBorder));
  InflateRect(&area, -1, -1);
  FrameRect(target, &area, drawing().Brush(InsideColor(ToColorRef(kWhite, kWhite))));
  ReleaseDC(handle(), target);
}

COLORREF ControlWindow::InsideColor(COLORREF around) const {
  if (control_.kind() != ui::ControlKind::kTextBox) return around;
  const bool quiet = !control_.enabled || static_cast<const ui::TextBox&>(control_).read_only;
  return quiet ? kQuietBox : ToColorRef(kWhite, kWhite);
}

LRESULT ControlWindow::Handle(UINT message, WPARAM w, LPARAM l) {
  if (const std::optional<LRESULT> answer = OnMessage(message, w, l)) return *answer;
  if (const std::optional<LRESULT> answer = RouteToChild(message, w, l)) return *answer;
  switch (message) {
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
      if (OnMouse(message, l)) return 0;
      break;
    case WM_SETFOCUS:
      view_.FocusMoved(&control_);
      break;
    case WM_NCPAINT:
      if ((GetWindowLongPtrA(handle(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0) {
        const LRESULT answer = Default(message, w, l);
        PaintBoxBorder();
        return answer;
      }
      break;
    case WM_CHAR:
      if (control_.on_key_press && w >= 8) {
        w = static_cast<WPARAM>(control_.on_key_press(static_cast<int>(w)));
        if (w == 0) return 0;
      }
      break;
    default:
      break;
  }
  return Default(message, w, l);
}

std::unique_ptr<ControlWindow> MakeControlWindow(FormView& view, ui::Control& control) {
  switch (control.kind()) {
    case ui::ControlKind::kLabel:
    case ui::ControlKind::kImageButton:
    case ui::ControlKind::kPictureBox:
    case ui::ControlKind::kFrame:
      return MakeDrawnWindow(view, control);
    case ui::ControlKind::kCheckBox:
    case ui::ControlKind::kOptionButton:
    case ui::ControlKind::kCommandButton:
      return MakeButtonWindow(view, control);
    case ui::ControlKind::kTextBox:
    case ui::ControlKind::kRichTextBox:
      return MakeTextWindow(view, control);
    case ui::ControlKind::kComboBox:
    case ui::ControlKind::kListBox:
    case ui::ControlKind::kListView:
    case ui::ControlKind::kGrid:
      return MakeListWindow(view, control);
    case ui::ControlKind::kTreeView:
      return MakeTreeWindow(view, static_cast<ui::TreeView&>(control));
    case ui::ControlKind::kProgressBar:
    case ui::ControlKind::kDatePicker:
      return MakeValueWindow(view, control);
    case ui::ControlKind::kTimer:
      break;
  }
  return nullptr;
}

}  // namespace quorvale::windows
