// Text boxes and the read-only text of many lines.
#include "base/text.h"
#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr ui::Color kBlack = ui::Rgb(0, 0, 0);
constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);

class TextWindow : public ControlWindow {
 public:
  TextWindow(FormView& view, ui::TextBox& box) : ControlWindow(view, box), box_(box) {
    DWORD style = BaseStyle() | ES_LEFT;
    if (box.password) style |= ES_PASSWORD;
    if (box.read_only) style |= ES_READONLY;
    style |= box.multi_line ? ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL
                            : ES_AUTOHSCROLL;
    MakeSystem("EDIT", WS_EX_CLIENTEDGE, style, ParentWindow(), Place(), box.text);
    Prepare();
  }

  bool WantsKey(WPARAM key) const override { return box_.multi_line && key == VK_RETURN; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) {
      if (!updating_) {
        updating_ = true;
        SetText(handle(), box_.text);
        updating_ = false;
      }
      return;
    }
    if (property == ui::Property::kLook) {
      Send(handle(), EM_SETREADONLY, box_.read_only ? TRUE : FALSE);
      Send(handle(), EM_SETPASSWORDCHAR, box_.password ? '*' : 0);
    }
    ControlWindow::Update(property);
  }

  void OnCommand(int code) override {
    if (code != EN_CHANGE || updating_) return;
    updating_ = true;
    box_.text = TextOf(handle());
    updating_ = false;
    // A handler of the page may have given it another text meanwhile.
    if (box_.text.get() != TextOf(handle())) Update(ui::Property::kText);
  }

 protected:
  std::optional<LRESULT> OnMessage(UINT message, WPARAM, LPARAM) override {
    if (message == WM_SETFOCUS && !box_.multi_line) Send(handle(), EM_SETSEL, 0, -1);
    return std::nullopt;
  }

 private:
  ui::TextBox& box_;
};

// The newest rich edit control that the system has.
const char* RichTextClass() {
  if (LoadLibraryA("riched20.dll") != nullptr) return HasUnicode() ? "RichEdit20W" : "RichEdit20A";
  return LoadLibraryA("riched32.dll") != nullptr ? "RICHEDIT" : "EDIT";
}

class RichTextWindow : public ControlWindow {
 public:
  RichTextWindow(FormView& view, ui::RichTextBox& box) : ControlWindow(view, box), box_(box) {
    MakeSystem(RichTextClass(), WS_EX_CLIENTEDGE,
               BaseStyle() | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL |
                   (box.wraps ? 0 : WS_HSCROLL | ES_AUTOHSCROLL),
               ParentWindow(), Place(), "");
    Prepare();
    Send(handle(), EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    RECT inside;
    GetClientRect(handle(), &inside);
    InflateRect(&inside, -kRoom, -kRoom / 2);
    Send(handle(), EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inside));
    Send(handle(), EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(ToColorRef(box.back_color, kWhite)));
    ShowText();
  }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) return ShowText();
    ControlWindow::Update(property);
  }

 private:
  // A log grows line by line, so what is new is added to what is there.
  void ShowText() {
    const std::string& text = box_.text;
    if (!shown_.empty() && text.size() > shown_.size() &&
        text.compare(0, shown_.size(), shown_) == 0) {
      Send(handle(), EM_SETSEL, 0x7FFFFFFE, 0x7FFFFFFE);
      SendText(handle(), EM_REPLACESEL, FALSE, text.substr(shown_.size()));
    } else {
      SetText(handle(), text);
    }
    shown_ = text;
  }

  static constexpr int kRoom = 6;  // pixels between the border and the text
  ui::RichTextBox& box_;
  std::string shown_;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeTextWindow(FormView& view, ui::Control& control) {
  if (control.kind() == ui::ControlKind::kTextBox) {
    return std::make_unique<TextWindow>(view, static_cast<ui::TextBox&>(control));
  }
  return std::make_unique<RichTextWindow>(view, static_cast<ui::RichTextBox&>(control));
}

}  // namespace quorvale::windows
