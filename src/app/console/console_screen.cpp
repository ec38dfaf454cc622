#include "app/console/console_screen.h"

#include <csignal>
#include <istream>
#include <ostream>

#include "base/text.h"

namespace quorvale {
namespace {

// How often in a row one question gets the answer Yes that was given beforehand.
constexpr int kMostRepeats = 20;

// Set from a signal handler, which may touch nothing else.
volatile std::sig_atomic_t g_stop_requested = 0;

const char* KindWord(ui::Icon icon) {
  switch (icon) {
    case ui::Icon::kQuestion:
      return "question";
    case ui::Icon::kExclamation:
      return "warning";
    case ui::Icon::kCritical:
      return "critical";
    case ui::Icon::kNone:
    case ui::Icon::kInformation:
      break;
  }
  return "information";
}

}  // namespace

void RequestStop() { g_stop_requested = 1; }

ConsoleScreen::ConsoleScreen(RunningMachine& computer, Terminal& terminal,
                             std::optional<bool> answer)
    : computer_(computer), terminal_(terminal), answer_(answer), progress_(terminal.error) {
  computer_.ui().box_handler = [this](const ui::MessageBoxRequest& request) {
    return AnswerBox(request);
  };
  computer_.ui().on_pump = [this] { OnPump(); };
}

ConsoleScreen::~ConsoleScreen() {
  progress_.Clear();
  computer_.ui().box_handler = nullptr;
  computer_.ui().on_pump = nullptr;
}

ui::Answer ConsoleScreen::AnswerBox(const ui::MessageBoxRequest& request) {
  progress_.Clear();
  const std::string text = ReplaceAll(request.text, "\r\n", "\n");
  terminal_.out << "[" << KindWord(request.icon) << "] " << text << "\n" << std::flush;
  if (request.buttons == ui::Buttons::kOk) return ui::Answer::kOk;
  if (stopping_) return ui::Answer::kYes;
  if (answer_) return FixedAnswer(text);
  return Ask();
}

// Yes to "try again?" without end would be a run without end.
ui::Answer ConsoleScreen::FixedAnswer(const std::string& question) {
  repeats_ = question == last_question_ ? repeats_ + 1 : 0;
  last_question_ = question;
  return *answer_ && repeats_ < kMostRepeats ? ui::Answer::kYes : ui::Answer::kNo;
}

ui::Answer ConsoleScreen::Ask() {
  if (!terminal_.asks) {
    terminal_.out << "No (give --yes or --no to answer questions)\n";
    return ui::Answer::kNo;
  }
  std::string line;
  while (true) {
    terminal_.out << "Yes or No? " << std::flush;
    if (!std::getline(terminal_.in, line)) return ui::Answer::kNo;
    const std::string word = FoldCase(Trim(line));
    if (word == "yes" || word == "y") return ui::Answer::kYes;
    if (word == "no" || word == "n") return ui::Answer::kNo;
  }
}

void ConsoleScreen::OnPump() {
  if (computer_.app() == nullptr) return;
  if (g_stop_requested != 0 && !stopping_) StopRun();
  if (terminal_.shows_progress) progress_.Draw(*computer_.app());
}

void ConsoleScreen::StopRun() {
  RunPage* run = computer_.app()->CurrentRun();
  if (run == nullptr) return;
  stopping_ = true;
  if (run->StopRun()) g_stop_requested = 0;
  stopping_ = false;
}

}  // namespace quorvale
