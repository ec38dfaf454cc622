#include "platform/ftp_conversation.h"

#include <utility>

#include "platform/ftp_replies.h"

namespace quorvale {
namespace {

constexpr int kLookMilliseconds = 20;  // how often the caller's thread looks up from waiting
constexpr int kLastPort = 65535;

// A name with "/" would be one of another folder.
bool IsFileName(const std::string& name) {
  return IsFtpArgument(name) && name.find('/') == std::string::npos;
}

}  // namespace

// Marks the client as busy while an operation is under way.
class FtpConversation::Operation {
 public:
  explicit Operation(FtpConversation& client) : client_(client) {
    client_.busy_ = true;
    client_.leaving_ = false;
    client_.stopped_ = false;
  }
  ~Operation() {
    if (client_.leaving_) client_.line_.reset();
    client_.busy_ = false;
  }
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

 private:
  FtpConversation& client_;
};

FtpConversation::FtpConversation(Files& files, FtpLimits limits, MakeLine make_line)
    : files_(files), limits_(limits), make_line_(std::move(make_line)) {}

FtpState FtpConversation::State() {
  if (busy_) return FtpState::kBusy;
  if (line_ != nullptr && !line_->Lives()) line_.reset();
  return line_ != nullptr ? FtpState::kConnected : FtpState::kIdle;
}

void FtpConversation::Listen(FtpEvents events) {
  events_ = std::make_shared<const FtpEvents>(std::move(events));
}

bool FtpConversation::KeepGoing() {
  const std::shared_ptr<const FtpEvents> events = events_;  // an event may put others in its place
  if (events != nullptr && events->keep_going && !events->keep_going()) stopped_ = true;
  return !stopped_ && !leaving_;
}

void FtpConversation::Tell(const FtpTask& task) {
  for (const std::string& line : line_->TakeReplies()) {
    const std::shared_ptr<const FtpEvents> events = events_;
    if (events != nullptr && events->reply) events->reply(line);
  }
  if (!line_->DataStarted()) return;
  const int percent = task.size == 0 ? 100 : static_cast<int>(line_->BytesSent() * 100 / task.size);
  if (percent <= told_percent_) return;
  told_percent_ = percent;
  const std::shared_ptr<const FtpEvents> events = events_;
  if (events != nullptr && events->progress) events->progress(percent);
}

int FtpConversation::LongestQuiet(const FtpTask& task) {
  if (task.kind != FtpTask::Kind::kSend) return limits_.answer;
  if (line_->DataStarted()) return limits_.stall;
  return task.passive ? limits_.answer : limits_.data_connection;
}

FtpOutcome FtpConversation::Run(const FtpTask& task) {
  told_percent_ = -1;
  data_started_ = false;
  if (line_ == nullptr || !line_->Start(task)) {
    line_.reset();
    return FtpOutcome::kBroken;
  }
  bool given_up = false;
  while (!line_->Wait(kLookMilliseconds)) {
    Tell(task);
    if (given_up || (KeepGoing() && line_->Quiet() < LongestQuiet(task))) continue;
    given_up = true;
    line_->Abort();
  }
  const FtpOutcome outcome = line_->Finish();
  Tell(task);
  data_started_ = line_->DataStarted();
  if (!given_up && outcome != FtpOutcome::kBroken) return outcome;
  line_.reset();
  return FtpOutcome::kBroken;
}

FtpOutcome FtpConversation::Run(FtpTask::Kind kind, const std::string& name) {
  FtpTask task;
  task.kind = kind;
  task.name = name;
  return Run(task);
}

bool FtpConversation::OpenLine(bool passive) {
  line_.reset();  // says goodbye before the next one says hello
  line_ = make_line_(account_);
  FtpTask task;
  task.passive = passive;
  if (Run(task) == FtpOutcome::kDone && !leaving_) return true;
  line_.reset();
  return false;
}

bool FtpConversation::Connect(const std::string& host, int port, const std::string& user,
                              const std::string& password) {
  if (busy_) return false;
  const Operation operation(*this);
  line_.reset();
  folder_.clear();
  if (!IsFtpArgument(host) || !IsFtpArgument(user) || port < 1 || port > kLastPort) return false;
  account_ = {host, port, user, password};
  return OpenLine(false);
}

std::string FtpConversation::CurrentFolder() {
  if (State() != FtpState::kConnected) return "";
  const Operation operation(*this);
  return Run(FtpTask::Kind::kAskFolder) == FtpOutcome::kDone ? line_->Folder() : "";
}

bool FtpConversation::ChangeFolder(const std::string& folder) {
  if (State() != FtpState::kConnected || !IsFtpArgument(folder)) return false;
  const Operation operation(*this);
  if (Run(FtpTask::Kind::kEnterFolder, folder) != FtpOutcome::kDone || leaving_) return false;
  // The server's own word for it, for the case that the way there has to be gone again.
  const bool known = Run(FtpTask::Kind::kAskFolder) == FtpOutcome::kDone;
  folder_ = known ? line_->Folder() : folder;
  return line_ != nullptr && !leaving_;
}

bool FtpConversation::Send(const std::string& path, const std::string& remote_name) {
  if (State() != FtpState::kConnected || !IsFileName(remote_name)) return false;
  const Operation operation(*this);
  Sent sent = SendOnce(path, remote_name, false);
  if (sent == Sent::kNothing && OpenPassiveLine()) sent = SendOnce(path, remote_name, true);
  return sent == Sent::kDone;
}

FtpConversation::Sent FtpConversation::SendOnce(const std::string& path,
                                                const std::string& remote_name, bool passive) {
  FtpTask task;
  task.kind = FtpTask::Kind::kSend;
  task.name = remote_name;
  task.passive = passive;
  task.file = files_.OpenRead(path);
  if (task.file == nullptr) return Sent::kFailed;
  task.size = task.file->Size();
  if (Run(task) == FtpOutcome::kDone) return Sent::kDone;
  return data_started_ || stopped_ || leaving_ ? Sent::kFailed : Sent::kNothing;
}

bool FtpConversation::OpenPassiveLine() {
  if (!OpenLine(true)) return false;
  return folder_.empty() || Run(FtpTask::Kind::kEnterFolder, folder_) == FtpOutcome::kDone;
}

bool FtpConversation::Rename(const std::string& name, const std::string& new_name) {
  if (State() != FtpState::kConnected || !IsFileName(name) || !IsFileName(new_name)) return false;
  const Operation operation(*this);
  FtpTask task;
  task.kind = FtpTask::Kind::kRename;
  task.name = name;
  task.new_name = new_name;
  return Run(task) == FtpOutcome::kDone;
}

bool FtpConversation::Remove(const std::string& name) {
  if (State() != FtpState::kConnected || !IsFileName(name)) return false;
  const Operation operation(*this);
  return Run(FtpTask::Kind::kRemove, name) == FtpOutcome::kDone;
}

void FtpConversation::Disconnect() {
  if (busy_) {
    leaving_ = true;
  } else {
    line_.reset();
  }
}

}  // namespace quorvale
