#include "platform/windows/form_view.h"

#include <algorithm>
#include <cstddef>

#include "platform/windows/keyboard.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {
namespace {

constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);
constexpr DWORD kFrameStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kBorderlessStyle = WS_POPUP | WS_SYSMENU | WS_MINIMIZEBOX;
constexpr int kToolTipWidth = 300;

DWORD StyleOf(const ui::Form& form) {
  const DWORD clip = WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
  if (form.host_panel != nullptr) return WS_CHILD | clip;
  return (form.borderless ? kBorderlessStyle : kFrameStyle) | clip;
}

DWORD ExtendedStyleOf(const ui::Form& form) {
  return form.host_panel == nullptr && form.borderless ? WS_EX_APPWINDOW : 0;
}

// The outermost window that a window stands in.
HWND TopLevel(HWND window) {
  while ((GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD) != 0) window = GetParent(window);
  return window;
}

}  // namespace

class FormView::FormWindow : public Surface {
 public:
  explicit FormWindow(FormView& view) : view_(view) {
    const ui::Form& form = view.form_;
    HWND parent = nullptr;
    if (form.host_panel != nullptr) {
      auto* host = static_cast<FormView*>(form.host_panel->form().view.get());
      parent = host->SurfaceOf(form.host_panel)->handle();
    } else if (!form.borderless) {
      parent = view.ui_.Owner();
    }
    RECT place = {0, 0, form.Width(), form.Height()};
    if (form.host_panel == nullptr) place = OnScreen(form);
    MakeOwn(ExtendedStyleOf(form), StyleOf(form), parent, place, form.Caption());
    SetPropA(handle(), "QuorvaleForm",
             reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GlobalAddAtomA(form.name().c_str()))));
  }

  ~FormWindow() override {
    const HANDLE name = RemovePropA(handle(), "QuorvaleForm");
    if (name != nullptr) GlobalDeleteAtom(static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(name)));
  }

  void PaintAll(Canvas& canvas, Origin origin) override {
    const RECT area = {origin.x, origin.y, origin.x + view_.form_.Width(),
                       origin.y + view_.form_.Height()};
    canvas.Fill(area, GroundColor());
  }
  COLORREF GroundColor() const override { return ToColorRef(view_.form_.back_color, kWhite); }

  // The window with its frame, in the middle of the screen and never beyond its upper left corner.
  static RECT OnScreen(const ui::Form& form) {
    RECT outer = {0, 0, form.Width(), form.Height()};
    AdjustWindowRectEx(&outer, StyleOf(form), FALSE, ExtendedStyleOf(form));
    const int width = outer.right - outer.left;
    const int height = outer.bottom - outer.top;
    RECT work = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const int left = std::max(work.left, (work.left + work.right - width) / 2);
    const int top = std::max(work.top, (work.top + work.bottom - height) / 2);
    return {left, top, left + width, top + height};
  }

 protected:
  Drawing& drawing() const override { return view_.ui_.drawing(); }

  LRESULT Handle(UINT message, WPARAM w, LPARAM l) override {
    if (const std::optional<LRESULT> answer = RouteToChild(message, w, l)) return *answer;
    switch (message) {
      case WM_ERASEBKGND:
        return 1;
      case WM_PAINT:
        OnPaint();
        return 0;
      case WM_LBUTTONDOWN:
        OnPress(static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l)));
        return 0;
      case WM_ACTIVATE:
        OnActivate(LOWORD(w) != WA_INACTIVE);
        return 0;
      case WM_SIZE:
        OnSize(w);
        return 0;
      case WM_SYSCOMMAND:
        // The classic rule: a window that is asked to close is brought to its size first.
        if ((w & 0xFFF0) == SC_CLOSE) view_.form_.SetState(ui::WindowState::kNormal);
        break;
      case WM_QUERYENDSESSION:
        view_.form_.SetState(ui::WindowState::kNormal);
        return TRUE;
      case WM_CLOSE:
        OnClose();
        return 0;
      case WM_TIMER:
        view_.RunTimer(w);
        return 0;
      case WM_SETCURSOR:
        if (view_.ui_.pointer() != ui::Pointer::kHourglass) break;
        SetCursor(LoadCursorA(nullptr, IDC_WAIT));
        return TRUE;
      default:
        break;
    }
    return Default(message, w, l);
  }

 private:
  void OnPaint() {
    PAINTSTRUCT paint;
    const HDC target = BeginPaint(handle(), &paint);
    FillRect(target, &paint.rcPaint, drawing().Brush(GroundColor()));
    EndPaint(handle(), &paint);
  }

  void OnPress(int x, int y) {
    if (view_.DragFrom(handle(), x, y)) return;
    if (view_.form_.on_mouse_down) view_.form_.on_mouse_down(x, y);
  }

  void OnActivate(bool active) {
    ui::Form& form = view_.form_;
    if (!active) {
      if (form.on_deactivate) form.on_deactivate();
    } else if (view_.shown_ && form.Visible()) {
      view_.OnActivated();
    }
  }

  void OnSize(WPARAM kind) {
    if (view_.form_.host_panel != nullptr) return;
    if (kind == SIZE_MINIMIZED || kind == SIZE_RESTORED) {
      view_.WindowStateMoved(kind == SIZE_MINIMIZED);
    }
  }

  void OnClose() {
    ui::Form& form = view_.form_;
    if (form.on_close_request) {
      form.on_close_request();
    } else {
      form.Hide();
    }
  }

  FormView& view_;
};

FormView::FormView(WindowsUi& ui, ui::Form& form) : ui_(ui), form_(form) {
  window_ = std::make_unique<FormWindow>(*this);
  tooltips_ = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                              window_->handle(), nullptr, GetModuleHandleA(nullptr), nullptr);
  SendMessageA(tooltips_, TTM_SETMAXTIPWIDTH, 0, kToolTipWidth);
  ui_.Add(*this);
  MakeControls();
  UpdateShape();
}

FormView::~FormView() {
  ui_.Remove(*this);
  // Controls may be gone by now: no window is told of anything any more.
  if (tooltips_ != nullptr) DestroyWindow(tooltips_);
  while (!windows_.empty()) windows_.pop_back();
}

HWND FormView::handle() const { return window_->handle(); }

HWND FormView::ParentOf(const ui::Control& control) const {
  return SurfaceOf(control.container)->handle();
}

Surface* FormView::SurfaceOf(const ui::Control* container) const {
  if (container == nullptr) return window_.get();
  ControlWindow* window = WindowOf(*container);
  return window != nullptr ? static_cast<Surface*>(window) : window_.get();
}

ControlWindow* FormView::WindowOf(const ui::Control& control) const {
  const auto found = by_control_.find(&control);
  return found == by_control_.end() ? nullptr : found->second;
}

void FormView::MakeControls() {
  for (ui::Control* control : form_.controls()) {
    if (control->kind() == ui::ControlKind::kTimer) {
      timers_.push_back(control);
      UpdateTimer(*control);
    } else {
      MakeControl(*control);
    }
  }
}

// Its containers first: they may be declared behind it.
void FormView::MakeControl(ui::Control& control) {
  if (by_control_.contains(&control)) return;
  if (control.container != nullptr) MakeControl(*control.container);
  std::unique_ptr<ControlWindow> window = MakeControlWindow(*this, control);
  if (window == nullptr) return;
  by_control_.emplace(&control, window.get());
  windows_.push_back(std::move(window));
}

void FormView::Changed(ui::Control& control, ui::Property property) {
  if (control.kind() == ui::ControlKind::kTimer) return UpdateTimer(control);
  if (ControlWindow* window = WindowOf(control)) window->Update(property);
}

void FormView::UpdateTimer(ui::Control& control) {
  const auto found = std::find(timers_.begin(), timers_.end(), &control);
  if (found == timers_.end()) return;
  const auto& timer = static_cast<const ui::Timer&>(control);
  const UINT_PTR id = static_cast<UINT_PTR>(found - timers_.begin()) + 1;
  if (timer.enabled) {
    SetTimer(handle(), id, static_cast<UINT>(std::max(timer.interval.get(), 1)), nullptr);
  } else {
    KillTimer(handle(), id);
  }
}

// A timer whose handler still runs, inside a pump of its own, does not run again.
void FormView::RunTimer(UINT_PTR id) {
  if (id == 0 || id > timers_.size()) return;
  ui::Control* control = timers_[id - 1];
  if (!control->enabled || !running_timers_.insert(control).second) return;
  const std::function<void()> handler = static_cast<ui::Timer*>(control)->on_timer;
  if (handler) handler();
  running_timers_.erase(control);
}

void FormView::FormChanged() {
  SetText(handle(), form_.Caption());
  EnableWindow(handle(), form_.Enabled() ? TRUE : FALSE);
  UpdateShape();
  UpdateVisibility();
}

void FormView::WindowStateMoved(bool minimized) {
  if (changing_) return;
  changing_ = true;
  form_.SetState(minimized ? ui::WindowState::kMinimized : ui::WindowState::kNormal);
  changing_ = false;
}

void FormView::UpdateVisibility() {
  if (changing_) return;
  changing_ = true;
  const HWND window = handle();
  if (!form_.Visible()) {
    if (IsWindowVisible(window) != 0 || shown_) ShowWindow(window, SW_HIDE);
    shown_ = false;
    awaits_focus_ = false;
    form_.FocusMoved(nullptr);
  } else if (form_.State() == ui::WindowState::kMinimized && form_.host_panel == nullptr) {
    ShowWindow(window, SW_MINIMIZE);
  } else {
    if (form_.host_panel == nullptr && IsIconic(window) != 0) ShowWindow(window, SW_RESTORE);
    if (!shown_) {
      shown_ = true;
      if (form_.host_panel != nullptr) {
        // Under the controls of its panel: the list of steps lies over a page.
        SetWindowPos(window, HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
      } else {
        ShowWindow(window, SW_SHOW);
      }
      awaits_focus_ = !FocusFirst();
      UpdateWindow(window);
    }
  }
  changing_ = false;
}

// Its size, and for a window without a frame its outline.
void FormView::UpdateShape() {
  const HWND window = handle();
  RECT outer = {0, 0, form_.Width(), form_.Height()};
  AdjustWindowRectEx(&outer, StyleOf(form_), FALSE, ExtendedStyleOf(form_));
  const int width = outer.right - outer.left;
  const int height = outer.bottom - outer.top;
  RECT now;
  GetWindowRect(window, &now);
  if (IsIconic(window) == 0 && (now.right - now.left != width || now.bottom - now.top != height)) {
    RECT place = form_.host_panel == nullptr ? FormWindow::OnScreen(form_) : RECT{0, 0, 0, 0};
    SetWindowPos(window, nullptr, place.left, place.top, width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    shape_corner_ = -1;
  }
  if (form_.corner == shape_corner_) return;
  shape_corner_ = form_.corner;
  // The system owns the region from here on.
  const HRGN outline =
      form_.corner > 0 ? CreateRoundRectRgn(0, 0, width + 1, height + 1, form_.corner, form_.corner)
                       : nullptr;
  SetWindowRgn(window, outline, TRUE);
}

void FormView::Focus(ui::Control& control) {
  if (ControlWindow* window = WindowOf(control)) SetFocus(window->handle());
}

void FormView::FocusMoved(ui::Control* control) { form_.FocusMoved(control); }

bool FormView::FocusFirst() {
  if (TabOrder(*this).empty()) return false;
  if (form_.focused == nullptr) return FocusStart();
  RestoreFocus();
  return true;
}

bool FormView::TakeAwaitedFocus() {
  if (!awaits_focus_ || !form_.AcceptsInput() || !FocusFirst()) return false;
  awaits_focus_ = false;
  return true;
}

// The first control of the order; a link only if there is nothing else, since Enter follows it.
bool FormView::FocusStart() {
  const std::vector<ControlWindow*> order = TabOrder(*this);
  if (order.empty()) return false;
  const auto first = std::find_if(order.begin(), order.end(), [](const ControlWindow* each) {
    return each->control().kind() != ui::ControlKind::kLabel;
  });
  SetFocus((first != order.end() ? *first : order.front())->handle());
  return true;
}

void FormView::OnActivated() {
  RestoreFocus();
  if (!changing_) form_.Activate();
}

void FormView::RestoreFocus() {
  // A page that is shown on this form has the keyboard before the form's own controls.
  for (FormView* page : ui_.views()) {
    const bool hosted =
        page->form_.host_panel != nullptr && &page->form_.host_panel->form() == &form_;
    if (hosted && page->form_.Visible()) return page->RestoreFocus();
  }
  ControlWindow* window = form_.focused != nullptr ? WindowOf(*form_.focused) : nullptr;
  if (window != nullptr && IsWindowVisible(window->handle()) != 0 &&
      IsWindowEnabled(window->handle()) != 0) {
    SetFocus(window->handle());
    return;
  }
  FocusStart();
}

void FormView::Refresh(ui::Control* control) {
  const ControlWindow* window = control != nullptr ? WindowOf(*control) : nullptr;
  RedrawWindow(window != nullptr ? window->handle() : handle(), nullptr, nullptr,
               RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void FormView::SetToolTip(const ControlWindow& window) {
  const std::string& text = window.control().tooltip;
  std::wstring wide = Wide(text);
  std::string ansi = Ansi(text);
  TTTOOLINFOA tool = {};
  tool.cbSize = TTTOOLINFOA_V1_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window_->handle();
  tool.uId = reinterpret_cast<UINT_PTR>(window.handle());
  tool.lpszText = HasUnicode() ? reinterpret_cast<char*>(wide.data()) : ansi.data();
  SendMessageA(tooltips_, HasUnicode() ? TTM_DELTOOLW : TTM_DELTOOLA, 0,
               reinterpret_cast<LPARAM>(&tool));
  if (text.empty()) return;
  SendMessageA(tooltips_, HasUnicode() ? TTM_ADDTOOLW : TTM_ADDTOOLA, 0,
               reinterpret_cast<LPARAM>(&tool));
}

bool FormView::DragFrom(HWND window, int x, int y) {
  POINT point = {x, y};
  MapWindowPoints(window, handle(), &point, 1);
  if (!form_.drag_area || !form_.drag_area(point.x, point.y)) return false;
  ReleaseCapture();
  SendMessageA(TopLevel(handle()), WM_NCLBUTTONDOWN, HTCAPTION, 0);
  return true;
}

}  // namespace quorvale::windows
