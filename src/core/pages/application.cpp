#include "core/pages/application.h"

#include <algorithm>

#include "core/pages/page_procedures.h"

namespace quorvale {

Application::Application(Platform& platform, const PageTable& pages)
    : Program(platform), pages_(pages) {
  settings().on_folder_not_made = [this](const std::string& path) {
    TellFolderRefused(*this, path);
  };
}

Application::~Application() {
  CollectUnloaded();
  // A view knows its form's controls, so it goes first.
  for (auto& [name, form] : forms_) form->view.reset();
}

void Application::CollectUnloaded() {
  for (auto& form : unloaded_) form->view.reset();
  unloaded_.clear();
}

ui::Form* Application::FindLoaded(const std::string& name) {
  auto found = forms_.find(name);
  return found == forms_.end() ? nullptr : found->second.get();
}

std::vector<ui::Form*> Application::LoadedForms() {
  std::vector<ui::Form*> loaded;
  for (const std::string& name : order_) loaded.push_back(forms_.at(name).get());
  return loaded;
}

void Application::Unload(const std::string& name) {
  auto found = forms_.find(name);
  if (found == forms_.end()) return;
  ui::Form& form = *found->second;
  form.Unload();
  for (ui::Control* control : form.controls()) {
    if (control->kind() == ui::ControlKind::kTimer) control->enabled = false;
  }
  form.Hide();
  std::erase(order_, name);
  unloaded_.push_back(std::move(found->second));
  forms_.erase(found);
}

void Application::BeginRun(RunPage& page) {
  std::erase(runs_, &page);
  runs_.push_back(&page);
}

void Application::EndRun(RunPage& page) { std::erase(runs_, &page); }

void Application::EndRun(RunPage& page, RunEnd end) {
  EndRun(page);
  last_run_end_ = end;
}

void Application::Inform(const std::string& text) {
  ui().MessageBox({.text = text, .title = kApplicationTitle});
}

void Application::Warn(const std::string& text) {
  ui().MessageBox({.text = text, .title = kApplicationTitle, .icon = ui::Icon::kCritical});
}

bool Application::Ask(const std::string& text, ui::Icon icon, bool no_is_default) {
  return ui().MessageBox({.text = text,
                          .title = kApplicationTitle,
                          .icon = icon,
                          .buttons = ui::Buttons::kYesNo,
                          .second_is_default = no_is_default}) == ui::Answer::kYes;
}

}  // namespace quorvale
