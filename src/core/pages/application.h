// One run of the program: the computer it runs on, the session, and the forms.
//
// Every form is a lazily made singleton: naming it creates and loads it, unloading it forgets its
// control states. A test makes as many applications as it likes.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/program/session.h"
#include "platform/file_toolkit.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/registry_editor.h"
#include "platform/ui/form.h"

namespace quorvale {

inline constexpr char kApplicationTitle[] = "Quorvale";

class Application {
 public:
  explicit Application(Platform& platform);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  Platform& platform() const { return platform_; }
  ui::Ui& ui() const { return platform_.ui; }
  Session& session() { return session_; }
  const Session& session() const { return session_; }
  Registry& registry() { return registry_; }
  FileToolkit& files() { return files_; }
  RegistryEditor& registry_editor() { return registry_editor_; }

  // The whole argument text of this process.
  std::string CommandLine() const { return platform_.system.CommandLine(); }
  void Pump() { platform_.ui.Pump(); }

  // The form of a page class T, made and loaded on first use. T has `static constexpr char
  // kName[]` and a constructor that takes the application.
  template <class T>
  T& Get() {
    auto found = forms_.find(T::kName);
    if (found == forms_.end()) {
      found = forms_.emplace(T::kName, std::make_unique<T>(*this)).first;
      order_.push_back(T::kName);
      // Its load may unload it again: the object outlives that.
      T& made = static_cast<T&>(*found->second);
      made.Load();
      return made;
    }
    return static_cast<T&>(*found->second);
  }
  // Null if it is not loaded.
  template <class T>
  T* Loaded() {
    auto found = forms_.find(T::kName);
    return found == forms_.end() ? nullptr : static_cast<T*>(found->second.get());
  }
  ui::Form* FindLoaded(const std::string& name);
  // All loaded forms in the order of their loading.
  std::vector<ui::Form*> LoadedForms();

  // Hides and forgets a form. Its object stays valid until control is back at the outermost
  // message loop, since one of its own handlers may be running.
  void Unload(const std::string& name);
  template <class T>
  void Unload() {
    Unload(T::kName);
  }
  // Frees forms that were unloaded. Called by the outermost message loop between messages.
  void CollectUnloaded();

  // Message boxes with the program's title.
  void Inform(const std::string& text);
  void Warn(const std::string& text);  // the critical icon
  // Yes and No, with the information or the question icon.
  bool Ask(const std::string& text, ui::Icon icon = ui::Icon::kQuestion,
           bool no_is_default = false);

  // Ends the run: the message loop stops after the present message.
  void End();
  bool Ended() const { return ended_; }

 private:
  Platform& platform_;
  Session session_;
  Registry registry_;
  FileToolkit files_;
  RegistryEditor registry_editor_;
  std::map<std::string, std::unique_ptr<ui::Form>> forms_;
  std::vector<std::string> order_;
  std::vector<std::unique_ptr<ui::Form>> unloaded_;
  bool ended_ = false;
};

}  // namespace quorvale
