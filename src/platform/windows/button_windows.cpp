// Check boxes, option buttons and command buttons.
#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"

namespace quorvale::windows {
namespace {

class CheckWindow : public ControlWindow {
 public:
  CheckWindow(FormView& view, ui::CheckBox& box) : ControlWindow(view, box), box_(box) {
    MakeSystem("BUTTON", 0, BaseStyle() | BS_CHECKBOX | BS_MULTILINE, ParentWindow(), Place(),
               box.caption);
    Prepare();
    ShowValue();
  }

  std::string AccessText() const override { return box_.caption; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), box_.caption);
    if (property == ui::Property::kValue) return ShowValue();
    ControlWindow::Update(property);
  }

  void OnCommand(int code) override {
    if (code == BN_CLICKED) box_.Click();
  }

 private:
  void ShowValue() { Send(handle(), BM_SETCHECK, box_.value != 0 ? BST_CHECKED : BST_UNCHECKED); }
  ui::CheckBox& box_;
};

class OptionWindow : public ControlWindow {
 public:
  OptionWindow(FormView& view, ui::OptionButton& option)
      : ControlWindow(view, option), option_(option) {
    MakeSystem("BUTTON", 0, BaseStyle() | BS_RADIOBUTTON | BS_MULTILINE, ParentWindow(), Place(),
               option.caption);
    Prepare();
    ShowValue();
  }

  std::string AccessText() const override { return option_.caption; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), option_.caption);
    if (property == ui::Property::kValue) return ShowValue();
    ControlWindow::Update(property);
  }

  void OnCommand(int code) override {
    if (code == BN_CLICKED) option_.Click();
  }

 private:
  void ShowValue() { Send(handle(), BM_SETCHECK, option_.value ? BST_CHECKED : BST_UNCHECKED); }
  ui::OptionButton& option_;
};

class CommandWindow : public ControlWindow {
 public:
  CommandWindow(FormView& view, ui::CommandButton& button)
      : ControlWindow(view, button), button_(button) {
    const DWORD kind = button.is_default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    MakeSystem("BUTTON", 0, BaseStyle() | kind | BS_MULTILINE, ParentWindow(), Place(),
               button.caption);
    Prepare();
  }

  std::string AccessText() const override { return button_.caption; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), button_.caption);
    ControlWindow::Update(property);
  }

  void OnCommand(int code) override {
    if (code == BN_CLICKED) button_.Click();
  }

 private:
  ui::CommandButton& button_;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeButtonWindow(FormView& view, ui::Control& control) {
  switch (control.kind()) {
    case ui::ControlKind::kCheckBox:
      return std::make_unique<CheckWindow>(view, static_cast<ui::CheckBox&>(control));
    case ui::ControlKind::kOptionButton:
      return std::make_unique<OptionWindow>(view, static_cast<ui::OptionButton&>(control));
    default:
      return std::make_unique<CommandWindow>(view, static_cast<ui::CommandButton&>(control));
  }
}

}  // namespace quorvale::windows
