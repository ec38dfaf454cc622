#include "platform/ui/form.h"

#include <algorithm>

#include "base/text.h"
#include "platform/ui/ui.h"

namespace quorvale::ui {

Form::Form(Ui& ui, std::string name) : ui_(ui), name_(std::move(name)) {}

Form::~Form() = default;

Control* Form::FindControl(const std::string& name) const {
  for (Control* control : controls_) {
    if (EqualsNoCase(control->name(), name)) return control;
  }
  return nullptr;
}

void Form::Show() {
  visible_ = true;
  if (!attached_) {
    attached_ = true;
    ui_.Attach(*this);
  }
  if (view) view->FormChanged();
  Activate();
}

void Form::Hide() {
  if (!visible_) return;
  visible_ = false;
  if (view) view->FormChanged();
}

void Form::ShowModal() {
  Show();
  ui_.RunModal(*this);
}

bool Form::AcceptsInput() const {
  if (!enabled_) return false;
  return host_panel == nullptr || host_panel->form().AcceptsInput();
}

void Form::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  if (view) view->FormChanged();
}

void Form::SetState(WindowState state) {
  if (state_ == state) return;
  state_ = state;
  if (view) view->FormChanged();
}

void Form::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  if (view) view->FormChanged();
}

void Form::SetSize(int width, int height) {
  width_ = width;
  height_ = height;
  if (view) view->FormChanged();
}

void Form::Refresh() {
  if (view) view->Refresh(nullptr);
}

void Form::FocusMoved(Control* control) {
  Control* before = focused;
  if (before == control) return;
  focused = control;
  if (before != nullptr && before->on_lost_focus) before->on_lost_focus();
  if (control != nullptr && control->on_got_focus) control->on_got_focus();
}

void Form::Add(Control& control) { controls_.push_back(&control); }

void Form::Remove(Control& control) {
  std::erase(controls_, &control);
  if (focused == &control) focused = nullptr;
}

}  // namespace quorvale::ui
