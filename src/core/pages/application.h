// One run of the program with its windows: a Program, its forms and its message boxes.
//
// Every form is a lazily made singleton: naming it creates and loads it, unloading it forgets its
// control states. A test makes as many applications as it likes.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/pages/page_host.h"
#include "core/pages/run_page.h"
#include "core/program/program.h"
#include "platform/ui/form.h"
#include "platform/ui/ui.h"

namespace quorvale {

class Application : public Program {
 public:
  // `pages` is what the main room tells the pages; it outlives the application.
  Application(Platform& platform, const PageTable& pages);
  ~Application();

  ui::Ui& ui() const { return platform().ui; }
  // The window that pages stand in.
  PageHost& page_host() { return pages_.host(*this); }
  // Where the pages stand.
  const PageTable& pages() const { return pages_; }

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

  // A run page has work to do from BeginRun to EndRun; what it ended as stays readable. Each may be
  // called again. The last one to begin is the one on top.
  void BeginRun(RunPage& page);
  void EndRun(RunPage& page);
  void EndRun(RunPage& page, RunEnd end);
  // Null if there is no work.
  RunPage* CurrentRun() const { return runs_.empty() ? nullptr : runs_.back(); }
  RunEnd last_run_end() const { return last_run_end_; }

  // Message boxes with the program's title.
  void Inform(const std::string& text);
  void Warn(const std::string& text);  // the critical icon
  // Yes and No, with the information or the question icon.
  bool Ask(const std::string& text, ui::Icon icon = ui::Icon::kQuestion,
           bool no_is_default = false);

 private:
  const PageTable& pages_;
  std::vector<RunPage*> runs_;
  RunEnd last_run_end_ = RunEnd::kNone;
  std::map<std::string, std::unique_ptr<ui::Form>> forms_;
  std::vector<std::string> order_;
  std::vector<std::unique_ptr<ui::Form>> unloaded_;
};

}  // namespace quorvale
