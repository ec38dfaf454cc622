#include "platform/ui/headless/headless_ui.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace quorvale::ui {
namespace {

// What is compared of a box: a line of a script carries neither line ends nor tabs, nor blanks at
// its ends.
std::string OneLine(std::string_view text) {
  std::string line = ReplaceAll(std::string(text), "\r\n", " ");
  for (char& byte : line) {
    if (byte == '\n' || byte == '\t') byte = ' ';
  }
  return Trim(line);
}

}  // namespace

void HeadlessUi::ExpectBox(Answer answer, std::string text) {
  expected_.push_back({answer, std::move(text)});
}

void HeadlessUi::When(std::function<bool()> condition, std::function<void()> act) {
  watchers_.push_back({std::move(condition), std::move(act)});
}

std::vector<std::string> HeadlessUi::ExpectedBoxes() const {
  std::vector<std::string> texts;
  for (const Expected& expected : expected_) texts.push_back(expected.text);
  return texts;
}

void HeadlessUi::NewRun() {
  quit_ = false;
  timers_.clear();
  pointer_ = Pointer::kDefault;
}

void HeadlessUi::Step(const std::function<void()>& act) {
  ++depth_;
  act();
  --depth_;
  RunUntilIdle();
}

void HeadlessUi::RunUntilIdle(int longest_wait) {
  std::uint64_t may_skip = static_cast<std::uint64_t>(std::max(longest_wait, 0));
  ++depth_;
  while (Turn(&may_skip)) {
    if (depth_ == 1 && after_step) after_step();
  }
  --depth_;
  if (depth_ == 0 && after_step) after_step();
}

// One turn of a message loop that skips its waits. False when there is nothing to do.
bool HeadlessUi::Turn(std::uint64_t* may_skip) {
  if (quit_) return false;
  if (on_pump) on_pump();
  const std::vector<Timer*> enabled = ArmTimers();
  return RunWatchers() || FireDueTimer(enabled) || SkipToNextTimer(enabled, may_skip);
}

void HeadlessUi::Attach(Form&) {}

Answer HeadlessUi::MessageBox(const MessageBoxRequest& request) {
  const Answer fallback = request.buttons == Buttons::kOk ? Answer::kOk : Answer::kNo;
  if (on_box) on_box(request);
  ShownBox shown{request, fallback};
  const bool foreseen =
      !expected_.empty() && (OneLine(expected_.front().text).empty() ||
                             OneLine(expected_.front().text) == OneLine(request.text));
  if (foreseen) {
    shown.answer = expected_.front().answer;
    expected_.pop_front();
    const bool fits = (shown.answer == Answer::kOk) == (request.buttons == Buttons::kOk) &&
                      (shown.answer != Answer::kCancel || request.buttons == Buttons::kYesNoCancel);
    if (!fits) {
      failures.push_back("a message box has no such button as its answer: " + request.text);
      shown.answer = fallback;
    }
  } else {
    std::optional<Answer> handled;
    if (box_handler) handled = box_handler(request);
    if (handled) {
      shown.answer = *handled;
    } else {
      std::string sentence = "unexpected message box: " + request.text;
      if (!expected_.empty()) sentence += "\n  expected: " + expected_.front().text;
      failures.push_back(std::move(sentence));
    }
  }
  boxes.push_back(shown);
  return shown.answer;
}

std::string HeadlessUi::AnswerDialog(std::deque<std::string>* queue, const std::string& title,
                                     const char* kind) {
  if (!queue->empty()) {
    std::string path = std::move(queue->front());
    queue->pop_front();
    return path;
  }
  if (dialog_handler) {
    if (std::optional<std::string> path = dialog_handler(title)) return *path;
  }
  failures.push_back(std::string("unexpected ") + kind + " dialog: " + title);
  return "";
}

std::string HeadlessUi::BrowseForFolder(const std::string& title, const std::string&) {
  return AnswerDialog(&folders_, title, "folder");
}

std::string HeadlessUi::OpenFileDialog(const std::string& filter, const std::string&) {
  return AnswerDialog(&files_, filter, "file");
}

void HeadlessUi::Pump() {
  if (on_pump) on_pump();
  if (quit_) return;
  ++depth_;
  RunWatchers();
  while (!quit_ && FireDueTimer(ArmTimers())) {
  }
  --depth_;
}

// Letters of the usual font are about as wide as its points are many.
TextSize HeadlessUi::SizeOfText(const Control& control, const std::string& text) {
  const int points = control.font_size;
  return {static_cast<int>(CountCharacters(text)) * points * 3 / 4, points * 2};
}

bool HeadlessUi::SetClipboardText(const std::string& text) {
  if (!clipboard_refuses) clipboard_ = text;
  return !clipboard_refuses;
}

void HeadlessUi::RunModal(Form& form) {
  const auto open = [&] {
    const std::vector<Form*> forms = Forms();
    const bool loaded =
        !loaded_forms || std::find(forms.begin(), forms.end(), &form) != forms.end();
    return !quit_ && loaded && form.Visible();
  };
  ++depth_;
  while (open()) {
    std::uint64_t may_skip = 10000;
    if (Turn(&may_skip)) continue;
    if (modal_handler && modal_handler(form)) continue;
    if (!open()) break;
    failures.push_back("nobody closes the modal form " + form.name());
    form.Hide();
  }
  --depth_;
}

std::uint64_t HeadlessUi::Now() const { return (ticks ? ticks() : 0) + skipped_; }

std::vector<Form*> HeadlessUi::Forms() const {
  return loaded_forms ? loaded_forms() : std::vector<Form*>();
}

std::vector<Timer*> HeadlessUi::EnabledTimers() const {
  std::vector<Timer*> timers;
  for (Form* form : Forms()) {
    for (Control* control : form->controls()) {
      if (control->kind() == ControlKind::kTimer && control->enabled) {
        timers.push_back(static_cast<Timer*>(control));
      }
    }
  }
  return timers;
}

// A timer counts from the first look of the loop at it; one that was disabled or is gone starts
// anew.
std::vector<Timer*> HeadlessUi::ArmTimers() {
  std::vector<Timer*> enabled = EnabledTimers();
  for (auto it = timers_.begin(); it != timers_.end();) {
    const bool keep =
        it->second.running || std::find(enabled.begin(), enabled.end(), it->first) != enabled.end();
    it = keep ? std::next(it) : timers_.erase(it);
  }
  for (Timer* timer : enabled) {
    const std::uint64_t interval = static_cast<std::uint64_t>(std::max(timer->interval.get(), 0));
    timers_.try_emplace(timer, TimerState{Now() + interval, false});
  }
  return enabled;
}

bool HeadlessUi::FireDueTimer(const std::vector<Timer*>& enabled) {
  const std::uint64_t now = Now();
  for (Timer* timer : enabled) {
    const auto state = timers_.find(timer);
    if (state == timers_.end() || state->second.running || state->second.due > now) continue;
    // A timer whose handler still runs fires again only after it has returned.
    state->second.running = true;
    const std::function<void()> handler = timer->on_timer;
    const std::uint64_t interval = static_cast<std::uint64_t>(std::max(timer->interval.get(), 1));
    if (handler) handler();
    const auto after = timers_.find(timer);
    if (after != timers_.end()) after->second = TimerState{Now() + interval, false};
    return true;
  }
  return false;
}

bool HeadlessUi::SkipToNextTimer(const std::vector<Timer*>& enabled, std::uint64_t* may_skip) {
  const std::uint64_t now = Now();
  std::optional<std::uint64_t> nearest;
  for (Timer* timer : enabled) {
    const auto state = timers_.find(timer);
    if (state == timers_.end() || state->second.running) continue;
    const std::uint64_t wait = state->second.due > now ? state->second.due - now : 0;
    if (!nearest || wait < *nearest) nearest = wait;
  }
  if (!nearest || *nearest > *may_skip) return false;
  *may_skip -= *nearest;
  skipped_ += *nearest;
  return true;
}

bool HeadlessUi::RunWatchers() {
  for (size_t i = 0; i < watchers_.size(); ++i) {
    if (!watchers_[i].condition()) continue;
    // Taken out first: the act may pump.
    const std::function<void()> act = std::move(watchers_[i].act);
    watchers_.erase(watchers_.begin() + static_cast<std::ptrdiff_t>(i));
    act();
    return true;
  }
  return false;
}

}  // namespace quorvale::ui
