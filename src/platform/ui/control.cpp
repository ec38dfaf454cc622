#include "platform/ui/control.h"

#include "platform/ui/form.h"

namespace quorvale::ui {

Control::Control(Form& form, std::string name, ControlKind kind)
    : form_(form), name_(std::move(name)), kind_(kind) {
  form_.Add(*this);
}

Control::~Control() { form_.Remove(*this); }

void Control::ApplyClick() {
  if (on_click) on_click();
}

void Control::Click() {
  if (!enabled || !form_.AcceptsInput()) return;
  ApplyClick();
}

void Control::SetFocus() {
  form_.FocusMoved(this);
  if (form_.view) form_.view->Focus(*this);
}

void Control::Refresh() {
  if (form_.view) form_.view->Refresh(this);
}

void Control::Notify(Property property) {
  if (form_.view) form_.view->Changed(*this, property);
}

bool Control::IsShown() const {
  if (!visible) return false;
  return container == nullptr || container->IsShown();
}

}  // namespace quorvale::ui
