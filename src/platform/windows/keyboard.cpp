#include "platform/windows/keyboard.h"

#include <algorithm>

#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

int Modifiers() {
  int mask = 0;
  if (GetKeyState(VK_SHIFT) < 0) mask |= ui::kShiftMask;
  if (GetKeyState(VK_CONTROL) < 0) mask |= ui::kControlMask;
  if (GetKeyState(VK_MENU) < 0) mask |= ui::kAltMask;
  return mask;
}

bool Reachable(const ControlWindow& window) {
  return IsWindowVisible(window.handle()) != 0 && IsWindowEnabled(window.handle()) != 0;
}

// The view of the form on which a page is shown; null for a form of its own.
FormView* HostOf(const FormView& view) {
  const ui::Control* panel = view.form().host_panel;
  return panel == nullptr ? nullptr : static_cast<FormView*>(panel->form().view.get());
}

// The controls of the form and, behind them, those of the form that hosts it.
std::vector<ControlWindow*> WholeOrder(const FormView& view) {
  std::vector<ControlWindow*> order = TabOrder(view);
  if (const FormView* host = HostOf(view)) {
    const std::vector<ControlWindow*> more = TabOrder(*host);
    order.insert(order.end(), more.begin(), more.end());
  }
  return order;
}

// The page with the keyboard: the one that is shown on the form if the focus is in the form itself.
FormView* PageOf(WindowsUi& ui, FormView* view) {
  for (FormView* page : ui.views()) {
    const ui::Form& form = page->form();
    if (form.host_panel != nullptr && &form.host_panel->form() == &view->form() && form.Visible()) {
      return page;
    }
  }
  return view;
}

void MoveFocus(WindowsUi& ui, FormView& view, const ControlWindow* from, bool back) {
  const std::vector<ControlWindow*> order = WholeOrder(*PageOf(ui, &view));
  if (order.empty()) return;
  const auto here = std::find(order.begin(), order.end(), from);
  size_t place = 0;
  if (here != order.end()) {
    const size_t count = order.size();
    place = (static_cast<size_t>(here - order.begin()) + (back ? count - 1 : 1)) % count;
  }
  SetFocus(order[place]->handle());
}

// The options of the group of one, in their order.
std::vector<ControlWindow*> GroupOf(const FormView& view, const ui::Control& option) {
  std::vector<ControlWindow*> group;
  for (const auto& window : view.windows()) {
    const ui::Control& other = window->control();
    if (other.kind() == ui::ControlKind::kOptionButton && other.container == option.container &&
        Reachable(*window)) {
      group.push_back(window.get());
    }
  }
  return group;
}

bool MoveInGroup(const FormView& view, const ControlWindow& from, bool back) {
  const std::vector<ControlWindow*> group = GroupOf(view, from.control());
  const auto here = std::find(group.begin(), group.end(), &from);
  if (here == group.end()) return false;
  const size_t count = group.size();
  const size_t place = (static_cast<size_t>(here - group.begin()) + (back ? count - 1 : 1)) % count;
  ControlWindow* next = group[place];
  SetFocus(next->handle());
  next->control().Click();
  return true;
}

template <class Wanted>
ui::Control* FindButton(const FormView& view, Wanted&& wanted) {
  for (const auto& window : view.windows()) {
    if (window->control().kind() != ui::ControlKind::kCommandButton || !Reachable(*window))
      continue;
    auto& button = static_cast<ui::CommandButton&>(window->control());
    if (wanted(button)) return &button;
  }
  return nullptr;
}

bool PressDefault(const FormView& view, ControlWindow* focused) {
  ui::Control* button = nullptr;
  if (focused != nullptr) {
    const ui::ControlKind kind = focused->control().kind();
    const bool is_button = kind == ui::ControlKind::kCommandButton ||
                           kind == ui::ControlKind::kImageButton || kind == ui::ControlKind::kLabel;
    if (is_button) button = &focused->control();
  }
  if (button == nullptr) {
    button = FindButton(view, [](const ui::CommandButton& each) { return each.is_default; });
  }
  if (button == nullptr) return false;
  button->Click();
  return true;
}

bool PressCancel(const FormView& view) {
  ui::Control* button =
      FindButton(view, [](const ui::CommandButton& each) { return each.is_cancel; });
  if (button == nullptr) return false;
  button->Click();
  return true;
}

// The control that a plain label names: the next one in the tab order, or, where the label has no
// place in it, the one that is declared next. Null if there is none.
ControlWindow* NamedBy(const FormView& view, const ControlWindow& label) {
  const int place = label.control().tab_index;
  ControlWindow* named = nullptr;
  bool behind = false;
  for (const auto& window : view.windows()) {
    const int other = window->control().tab_index;
    if (window.get() == &label) {
      behind = true;
    } else if (!window->TakesFocus() || !Reachable(*window)) {
      continue;
    } else if (place < 0) {
      if (behind) return window.get();
    } else if (other > place && (named == nullptr || other < named->control().tab_index)) {
      named = window.get();
    }
  }
  return named;
}

// A control's key goes to it; that of a plain label to the control that it names.
bool PressAccessKey(const FormView& view, int key) {
  for (const auto& window : view.windows()) {
    if (!Reachable(*window) || AccessKey(window->AccessText()) != key) continue;
    if (window->TakesFocus()) {
      SetFocus(window->handle());
      window->control().Click();
      return true;
    }
    if (const ControlWindow* named = NamedBy(view, *window)) {
      SetFocus(named->handle());
      return true;
    }
  }
  return false;
}

bool OfferToPage(FormView* view, ControlWindow* focused, int code, int modifiers) {
  for (FormView* each = view; each != nullptr; each = HostOf(*each)) {
    const auto handler = each->form().on_key_down;
    if (handler && handler(code, modifiers)) return true;
  }
  if (focused == nullptr) return false;
  const auto handler = focused->control().on_key_down;
  return handler && handler(code, modifiers);
}

}  // namespace

int AccessKey(const std::string& caption) {
  for (size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') {
      const unsigned char key = static_cast<unsigned char>(caption[i + 1]);
      return key >= 'a' && key <= 'z' ? key - 'a' + 'A' : key;
    }
    ++i;
  }
  return 0;
}

std::vector<ControlWindow*> TabOrder(const FormView& view) {
  std::vector<ControlWindow*> order;
  for (const auto& window : view.windows()) {
    if (!window->TakesFocus() || !Reachable(*window)) continue;
    const ui::Control& control = window->control();
    if (control.kind() == ui::ControlKind::kOptionButton) {
      // Of a group the chosen option, or the first while none is.
      const std::vector<ControlWindow*> group = GroupOf(view, control);
      const auto chosen = std::find_if(group.begin(), group.end(), [](ControlWindow* each) {
        return static_cast<const ui::OptionButton&>(each->control()).value.get();
      });
      if (window.get() != (chosen != group.end() ? *chosen : group.front())) continue;
    }
    order.push_back(window.get());
  }
  // Those without a place in the order come last, as they are declared.
  std::stable_sort(order.begin(), order.end(), [](ControlWindow* a, ControlWindow* b) {
    const unsigned first = static_cast<unsigned>(a->control().tab_index);
    const unsigned second = static_cast<unsigned>(b->control().tab_index);
    return first < second;
  });
  return order;
}

bool HandleKey(WindowsUi& ui, const MSG& message) {
  if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN &&
      message.message != WM_SYSCHAR) {
    return false;
  }
  FormView* view = ui.ViewOf(message.hwnd);
  if (view == nullptr || !view->form().AcceptsInput()) return false;
  auto* focused = dynamic_cast<ControlWindow*>(Window::Of(message.hwnd));
  FormView* page = PageOf(ui, view);
  if (message.message == WM_SYSCHAR) {
    const int key = static_cast<int>(reinterpret_cast<ULONG_PTR>(
        CharUpperA(reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(message.wParam & 0xFF)))));
    if (PressAccessKey(*page, key)) return true;
    return page != view && PressAccessKey(*view, key);
  }
  const int modifiers = Modifiers();
  if (OfferToPage(page, focused, static_cast<int>(message.wParam), modifiers)) return true;
  if (message.message == WM_SYSKEYDOWN) return false;
  if (focused != nullptr && focused->WantsKey(message.wParam)) return false;
  switch (message.wParam) {
    case VK_TAB:
      MoveFocus(ui, *view, focused, (modifiers & ui::kShiftMask) != 0);
      return true;
    case VK_RETURN:
      return PressDefault(*page, focused);
    case VK_ESCAPE:
      return PressCancel(*page);
    case VK_UP:
    case VK_LEFT:
    case VK_DOWN:
    case VK_RIGHT:
      if (focused == nullptr || focused->control().kind() != ui::ControlKind::kOptionButton) {
        return false;
      }
      return MoveInGroup(*view, *focused, message.wParam == VK_UP || message.wParam == VK_LEFT);
    default:
      return false;
  }
}

}  // namespace quorvale::windows
