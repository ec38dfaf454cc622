#include "platform/host/child_process.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr int kPollPause = 50;         // milliseconds
constexpr int kPatience = 40;          // pauses in which a program that was told to end may do so
constexpr size_t kLongestLine = 4096;  // of a program without line ends, bytes

// This program's environment, but for the language of messages.
std::vector<std::string> ChildEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (!text.starts_with("LC_") && !text.starts_with("LANG")) variables.push_back(text);
  }
  variables.push_back("LC_ALL=C.UTF-8");
  return variables;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Starts a program whose outputs both go to `output`. Its process id, or -1.
pid_t Start(std::vector<std::string> words, int output) {
  std::vector<std::string> environment = ChildEnvironment();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
  pid_t child = -1;
  const int failure = posix_spawnp(&child, words.front().c_str(), &actions, nullptr,
                                   Pointers(words).data(), Pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? child : -1;
}

// Cuts the whole lines off the start of a text.
void TakeLines(std::string* text, const std::function<void(const std::string&)>& on_line) {
  size_t start = 0;
  for (size_t end = text->find_first_of("\r\n"); end != std::string::npos;
       end = text->find_first_of("\r\n", start)) {
    if (on_line && end > start) on_line(text->substr(start, end - start));
    start = end + 1;
  }
  text->erase(0, start);
  if (text->size() > kLongestLine) text->clear();
}

// False at the end of the output.
bool ReadSome(int input, std::string* text) {
  char buffer[4096];
  const ssize_t count = read(input, buffer, sizeof(buffer));
  if (count > 0) text->append(buffer, static_cast<size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void End(pid_t child) {
  kill(child, SIGTERM);
  int status = 0;
  for (int i = 0; i < kPatience; ++i) {
    if (waitpid(child, &status, WNOHANG) != 0) return;
    poll(nullptr, 0, kPollPause);
  }
  kill(child, SIGKILL);
  WaitFor(child);
}

}  // namespace

int RunChild(const std::vector<std::string>& words,
             const std::function<void(const std::string& line)>& on_line,
             const std::function<bool()>& keep_going) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return -1;
  const pid_t child = Start(words, ends[1]);
  close(ends[1]);
  bool open = child >= 0;
  bool going = true;
  std::string text;
  while (open && going) {
    struct pollfd input = {ends[0], POLLIN, 0};
    if (poll(&input, 1, kPollPause) > 0) open = ReadSome(ends[0], &text);
    TakeLines(&text, on_line);
    going = !keep_going || keep_going();
  }
  close(ends[0]);
  if (child < 0) return -1;
  if (!going) {
    End(child);
    return -1;
  }
  if (on_line && !text.empty()) on_line(text);
  return WaitFor(child);
}

bool ProgramExists(const std::string& name) {
  const char* path = getenv("PATH");
  for (const std::string& folder : Split(path == nullptr ? "" : path, ":")) {
    if (access((folder + "/" + name).c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace quorvale::host
