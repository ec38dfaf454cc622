// A user interface without a screen: boxes and dialogs are answered from queues, timers fire from
// the message loop, and prepared acts stand in for a person. The console edition, the scenario
// player and the tests use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/ui.h"

namespace quorvale::ui {

class Timer;

class HeadlessUi : public Ui {
 public:
  // Milliseconds of the computer's clock; never goes back. Without one only skipped waits count.
  std::function<std::uint64_t()> ticks;
  // The forms whose timers fire, in their order (Application::LoadedForms).
  std::function<std::vector<Form*>()> loaded_forms;
  // Runs after each outermost step (Application::CollectUnloaded).
  std::function<void()> after_step;
  // Runs in each Pump, outermost or not: progress bars are drawn from here.
  std::function<void()> on_pump;
  // Runs while a box is up, before its answer.
  std::function<void(const MessageBoxRequest&)> on_box;
  // Answers a box that the queue does not expect. Nothing answered: the box counts as a failure.
  std::function<std::optional<Answer>(const MessageBoxRequest&)> box_handler;
  // Answers a folder or file dialog that the queues do not expect.
  std::function<std::optional<std::string>(const std::string& title)> dialog_handler;
  // Works a form that was shown modally when nothing else is left to do. False: nothing was done,
  // and the form is hidden and counted as a failure.
  std::function<bool(Form&)> modal_handler;

  // The next box must have this text (a line end or tab counts as a blank, blanks at both ends do
  // not count; "" stands for any) and gets this answer. Boxes come in the order of these calls.
  void ExpectBox(Answer answer, std::string text);
  // The next folder or file dialog gives this path; "" cancels it.
  void ExpectFolder(std::string path) { folders_.push_back(std::move(path)); }
  void ExpectFile(std::string path) { files_.push_back(std::move(path)); }

  // An act that runs once, from inside a Pump, as soon as its condition holds.
  void When(std::function<bool()> condition, std::function<void()> act);
  std::size_t WaitingActs() const { return watchers_.size(); }

  // All boxes so far, with the answers they got.
  struct ShownBox {
    MessageBoxRequest request;
    Answer answer = Answer::kOk;
  };
  std::vector<ShownBox> boxes;
  // What went otherwise than foreseen: a box or dialog nobody expected, a modal form nobody
  // closes. A sentence each.
  std::vector<std::string> failures;
  // Expected boxes that did not come yet.
  std::vector<std::string> ExpectedBoxes() const;

  // Runs `act` as one message of the outermost loop, then lets timers fire until idle.
  void Step(const std::function<void()>& act);
  // Lets timers fire and watchers act until nothing is left. A timer that is not due yet fires at
  // once, as if the time had passed, as long as no more than `longest_wait` milliseconds are
  // skipped in all.
  void RunUntilIdle(int longest_wait = 10000);
  // Forgets what a run that has ended left: for the next run before the same screen.
  void NewRun();
  // False after Quit.
  bool Running() const { return !quit_; }
  bool caps_lock() const { return caps_lock_; }
  bool keyboard_guarded() const { return keyboard_guarded_; }
  Pointer pointer() const { return pointer_; }
  // What was put onto the clipboard last; `clipboard_refuses`: nothing more is put there.
  const std::string& clipboard() const { return clipboard_; }
  bool clipboard_refuses = false;
  // What the mouse is over; null: none of the controls.
  const Control* mouse_over = nullptr;

  void Attach(Form& form) override;
  Answer MessageBox(const MessageBoxRequest& request) override;
  std::string BrowseForFolder(const std::string& title, const std::string& start) override;
  std::string OpenFileDialog(const std::string& filter, const std::string& initial_folder) override;
  void Pump() override;
  void RunModal(Form& form) override;
  void SetPointer(Pointer pointer) override { pointer_ = pointer; }
  Pointer CurrentPointer() const override { return pointer_; }
  bool MouseIsOver(const Control& control) override { return mouse_over == &control; }
  TextSize SizeOfText(const Control& control, const std::string& text) override;
  bool SetClipboardText(const std::string& text) override;
  void Quit() override { quit_ = true; }
  void SetCapsLock(bool on) override { caps_lock_ = on; }
  void GuardKeyboard(bool on) override { keyboard_guarded_ = on; }

 private:
  struct Expected {
    Answer answer = Answer::kOk;
    std::string text;
  };
  struct TimerState {
    std::uint64_t due = 0;
    bool running = false;
  };
  struct Watcher {
    std::function<bool()> condition;
    std::function<void()> act;
  };
  std::uint64_t Now() const;
  std::vector<Form*> Forms() const;
  std::vector<Timer*> EnabledTimers() const;
  // The enabled timers of all loaded forms, each with its next moment set.
  std::vector<Timer*> ArmTimers();
  bool FireDueTimer(const std::vector<Timer*>& enabled);
  bool SkipToNextTimer(const std::vector<Timer*>& enabled, std::uint64_t* may_skip);
  bool RunWatchers();
  bool Turn(std::uint64_t* may_skip);
  std::string AnswerDialog(std::deque<std::string>* queue, const std::string& title,
                           const char* kind);

  std::deque<Expected> expected_;
  std::deque<std::string> folders_, files_;
  std::vector<Watcher> watchers_;
  std::map<Timer*, TimerState> timers_;
  std::uint64_t skipped_ = 0;  // milliseconds that loops did not wait
  int depth_ = 0;
  bool quit_ = false;
  bool caps_lock_ = false;
  std::string clipboard_;
  bool keyboard_guarded_ = false;
  Pointer pointer_ = Pointer::kDefault;
};

}  // namespace quorvale::ui
