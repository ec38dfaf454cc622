#include "platform/windows/ftp_client.h"

#include "platform/windows/windows_headers.h"
// windows.h first
#include <process.h>
#include <wininet.h>

#include <atomic>
#include <utility>

#include "platform/ftp_replies.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr char kLibrary[] = "wininet.dll";
constexpr size_t kPart = 32 * 1024;  // bytes of a file in one call

// The library's functions. The "A" ones, since only they exist everywhere.
struct InternetLibrary {
  decltype(&InternetOpenA) open = LookUp<decltype(&InternetOpenA)>(kLibrary, "InternetOpenA");
  decltype(&InternetConnectA) connect =
      LookUp<decltype(&InternetConnectA)>(kLibrary, "InternetConnectA");
  decltype(&InternetCloseHandle) close =
      LookUp<decltype(&InternetCloseHandle)>(kLibrary, "InternetCloseHandle");
  decltype(&InternetGetLastResponseInfoA) last_response =
      LookUp<decltype(&InternetGetLastResponseInfoA)>(kLibrary, "InternetGetLastResponseInfoA");
  decltype(&InternetWriteFile) write =
      LookUp<decltype(&InternetWriteFile)>(kLibrary, "InternetWriteFile");
  decltype(&FtpSetCurrentDirectoryA) set_folder =
      LookUp<decltype(&FtpSetCurrentDirectoryA)>(kLibrary, "FtpSetCurrentDirectoryA");
  decltype(&FtpGetCurrentDirectoryA) get_folder =
      LookUp<decltype(&FtpGetCurrentDirectoryA)>(kLibrary, "FtpGetCurrentDirectoryA");
  decltype(&FtpOpenFileA) open_file = LookUp<decltype(&FtpOpenFileA)>(kLibrary, "FtpOpenFileA");
  decltype(&FtpRenameFileA) rename = LookUp<decltype(&FtpRenameFileA)>(kLibrary, "FtpRenameFileA");
  decltype(&FtpDeleteFileA) remove = LookUp<decltype(&FtpDeleteFileA)>(kLibrary, "FtpDeleteFileA");
  // Only since version 5.
  decltype(&FtpCommandA) command = LookUp<decltype(&FtpCommandA)>(kLibrary, "FtpCommandA");

  bool Complete() const {
    return open != nullptr && connect != nullptr && close != nullptr && last_response != nullptr &&
           write != nullptr && set_folder != nullptr && get_folder != nullptr &&
           open_file != nullptr && rename != nullptr && remove != nullptr;
  }
};

const InternetLibrary& Library() {
  static const InternetLibrary library;
  return library;
}

// How a call went that the server answered with this number, 0 if not at all: after 421 it hangs
// up.
FtpOutcome OutcomeOf(bool done, int code) {
  if (done) return FtpOutcome::kDone;
  return code != 0 && code != 421 ? FtpOutcome::kRefused : FtpOutcome::kBroken;
}

class CriticalSection {
 public:
  CriticalSection() { InitializeCriticalSection(&section_); }
  ~CriticalSection() { DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  void Enter() { EnterCriticalSection(&section_); }
  void Leave() { LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
};

class Lock {
 public:
  explicit Lock(CriticalSection& section) : section_(section) { section_.Enter(); }
  ~Lock() { section_.Leave(); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  CriticalSection& section_;
};

// A connection and the task that goes on on it, in the hands of two threads: the caller's, and one
// that waits in the library's calls. Some of those calls can't be ended from outside on every
// system. The caller then goes away, and the other thread finds that out when its call returns,
// tidies up and ends. It holds no file by then.
class Session : public std::enable_shared_from_this<Session> {
 public:
  explicit Session(FtpAccount account)
      : account_(std::move(account)), happened_(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {}
  ~Session() {
    CloseConnection();
    CloseHandle(happened_);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The caller's side.
  bool Start(const FtpTask& task);
  bool Wait(int milliseconds);
  // Lets the other thread go its way. Nothing more is heard of it.
  void Leave();
  FtpOutcome outcome() const { return outcome_; }
  const std::string& folder() const { return folder_; }
  std::vector<std::string> TakeReplies();
  bool DataStarted() const { return data_started_; }
  std::uint64_t BytesSent();
  int Quiet() const { return static_cast<int>(GetTickCount() - last_move_); }
  bool left() const { return left_; }

 private:
  struct Start_ {
    std::shared_ptr<Session> session;
    bool closes;  // the thread has only to close the connection
  };
  static unsigned __stdcall Thread(void* start);
  bool StartThread(bool closes);

  // The other thread's side.
  FtpOutcome Perform();
  FtpOutcome LogIn();
  FtpOutcome EnterFolder();
  FtpOutcome AskFolder();
  FtpOutcome Send();
  FtpOutcome Rename();
  FtpOutcome Remove();
  bool SendContents(HINTERNET remote);
  // Bytes of the next part; 0 at the end, -1 if it can't be read or nobody wants it any more.
  std::ptrdiff_t ReadPart(char* buffer);
  bool ServerHasWholeFile();
  // Notes what the server said to the last call; the number of its last line, 0 if it said nothing.
  int NoteReply();
  std::string LastResponse();
  void CloseConnection();
  HINTERNET connection();

  const FtpAccount account_;
  const HANDLE happened_;  // set with each reply and at the end
  FtpTask task_;           // its file is under the lock
  std::string folder_;
  FtpOutcome outcome_ = FtpOutcome::kBroken;
  std::string noted_;  // the reply that was noted last, as it was sent

  CriticalSection lock_;
  HINTERNET root_ = nullptr;
  HINTERNET connection_ = nullptr;
  std::vector<std::string> replies_;
  std::uint64_t sent_ = 0;
  std::atomic<bool> done_ = false;
  std::atomic<bool> left_ = false;
  std::atomic<bool> data_started_ = false;
  std::atomic<DWORD> last_move_ = 0;
};

bool Session::StartThread(bool closes) {
  auto* start = new Start_{shared_from_this(), closes};
  const auto thread =
      reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Thread, start, 0, nullptr));
  if (thread == nullptr) {
    delete start;
    return false;
  }
  CloseHandle(thread);
  return true;
}

#if defined(__i386__)
// The system aligns a thread's stack to 4 bytes, compiled code expects 16.
__attribute__((force_align_arg_pointer))
#endif
unsigned __stdcall Session::Thread(void* argument) {
  const std::unique_ptr<Start_> start(static_cast<Start_*>(argument));
  Session& session = *start->session;
  if (start->closes) {
    session.CloseConnection();
    return 0;
  }
  session.outcome_ = session.Perform();
  session.done_ = true;
  SetEvent(session.happened_);
  return 0;
}

bool Session::Start(const FtpTask& task) {
  if (left_) return false;
  task_ = task;
  sent_ = 0;
  done_ = false;
  data_started_ = false;
  outcome_ = FtpOutcome::kBroken;
  last_move_ = GetTickCount();
  return StartThread(false);
}

bool Session::Wait(int milliseconds) {
  if (!done_ && !left_) WaitForSingleObject(happened_, static_cast<DWORD>(milliseconds));
  return done_ || left_;
}

void Session::Leave() {
  if (left_.exchange(true)) return;
  {
    const Lock lock(lock_);
    task_.file.reset();
  }
  // Where the system allows it, this ends the call that the other thread is in. It may itself wait.
  // A log-in is left to itself: a library may not bear that what it still opens is closed under it.
  if (connection() != nullptr) StartThread(true);
}

std::vector<std::string> Session::TakeReplies() {
  const Lock lock(lock_);
  return std::exchange(replies_, {});
}

std::uint64_t Session::BytesSent() {
  const Lock lock(lock_);
  return sent_;
}

HINTERNET Session::connection() {
  const Lock lock(lock_);
  return connection_;
}

void Session::CloseConnection() {
  HINTERNET connection = nullptr;
  HINTERNET root = nullptr;
  {
    const Lock lock(lock_);
    connection = std::exchange(connection_, nullptr);
    root = std::exchange(root_, nullptr);
  }
  if (connection != nullptr) Library().close(connection);
  if (root != nullptr) Library().close(root);
}

FtpOutcome Session::Perform() {
  noted_.clear();  // the library keeps what it heard by thread
  FtpOutcome outcome = FtpOutcome::kBroken;
  switch (task_.kind) {
    case FtpTask::Kind::kLogIn:
      outcome = LogIn();
      break;
    case FtpTask::Kind::kEnterFolder:
      outcome = EnterFolder();
      break;
    case FtpTask::Kind::kAskFolder:
      outcome = AskFolder();
      break;
    case FtpTask::Kind::kSend:
      outcome = Send();
      break;
    case FtpTask::Kind::kRename:
      outcome = Rename();
      break;
    case FtpTask::Kind::kRemove:
      outcome = Remove();
      break;
  }
  const Lock lock(lock_);
  task_.file.reset();
  return outcome;
}

std::string Session::LastResponse() {
  DWORD error = 0;
  DWORD length = 0;
  Library().last_response(&error, nullptr, &length);
  if (length == 0) return "";
  std::string text(length + 1, '\0');
  length = static_cast<DWORD>(text.size());
  if (!Library().last_response(&error, text.data(), &length)) return "";
  text.resize(length);
  return text;
}

int Session::NoteReply() {
  last_move_ = GetTickCount();
  std::string text = LastResponse();
  while (!text.empty() && text.back() == '\0') text.pop_back();
  // A call that heard nothing leaves what the call before it heard.
  if (text.empty() || text == noted_) return 0;
  noted_ = text;
  const std::vector<std::string> lines = FtpReplyLines(text);
  {
    const Lock lock(lock_);
    for (const std::string& line : lines) replies_.push_back(FromAnsi(line));
  }
  SetEvent(happened_);
  return lines.empty() ? 0 : FtpReplyCode(lines.back());
}

FtpOutcome Session::LogIn() {
  // No proxy: those that the system knows of take no uploads.
  HINTERNET root = Library().open("Quorvale", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0);
  if (root == nullptr) return FtpOutcome::kBroken;
  {
    const Lock lock(lock_);
    root_ = root;
  }
  HINTERNET connection = Library().connect(
      root, Ansi(account_.host).c_str(), static_cast<INTERNET_PORT>(account_.port),
      Ansi(account_.user).c_str(), Ansi(account_.password).c_str(), INTERNET_SERVICE_FTP,
      task_.passive ? INTERNET_FLAG_PASSIVE : 0, 0);
  NoteReply();
  {
    const Lock lock(lock_);
    connection_ = connection;
  }
  if (left_) CloseConnection();
  return connection != nullptr && !left_ ? FtpOutcome::kDone : FtpOutcome::kBroken;
}

FtpOutcome Session::EnterFolder() {
  const bool entered = Library().set_folder(connection(), Ansi(task_.name).c_str());
  return OutcomeOf(entered, NoteReply());
}

FtpOutcome Session::AskFolder() {
  char folder[MAX_PATH * 4] = "";
  DWORD length = sizeof folder;
  const bool told = Library().get_folder(connection(), folder, &length);
  folder_ = FromAnsi(folder);
  return OutcomeOf(told, NoteReply());
}

FtpOutcome Session::Send() {
  HINTERNET remote = Library().open_file(connection(), Ansi(task_.name).c_str(), GENERIC_WRITE,
                                         FTP_TRANSFER_TYPE_BINARY | INTERNET_FLAG_RELOAD, 0);
  const int answer = NoteReply();
  if (remote == nullptr) return OutcomeOf(false, answer);
  data_started_ = true;
  const bool written = SendContents(remote);
  Library().close(remote);  // waits for the server's last word
  const int last_word = NoteReply();
  if (!written || left_) return FtpOutcome::kBroken;
  if (IsFtpSuccess(last_word)) return FtpOutcome::kDone;
  // Not every version of the library passes the last word on.
  return last_word == 0 && ServerHasWholeFile() ? FtpOutcome::kDone : FtpOutcome::kBroken;
}

FtpOutcome Session::Rename() {
  const bool renamed =
      Library().rename(connection(), Ansi(task_.name).c_str(), Ansi(task_.new_name).c_str());
  return OutcomeOf(renamed, NoteReply());
}

FtpOutcome Session::Remove() {
  const bool removed = Library().remove(connection(), Ansi(task_.name).c_str());
  return OutcomeOf(removed, NoteReply());
}

std::ptrdiff_t Session::ReadPart(char* buffer) {
  const Lock lock(lock_);
  return task_.file == nullptr ? -1 : task_.file->Read(buffer, kPart);
}

bool Session::SendContents(HINTERNET remote) {
  std::string buffer(kPart, '\0');
  for (;;) {
    const std::ptrdiff_t read = ReadPart(buffer.data());
    if (read < 0) return false;
    if (read == 0) return sent_ == task_.size;
    for (std::ptrdiff_t at = 0; at < read;) {
      DWORD written = 0;
      if (!Library().write(remote, buffer.data() + at, static_cast<DWORD>(read - at), &written) ||
          written == 0 || left_) {
        return false;
      }
      at += static_cast<std::ptrdiff_t>(written);
      last_move_ = GetTickCount();
      const Lock lock(lock_);
      sent_ += written;
    }
  }
}

bool Session::ServerHasWholeFile() {
  if (Library().command == nullptr) return false;
  Library().command(connection(), FALSE, FTP_TRANSFER_TYPE_BINARY,
                    Ansi("SIZE " + task_.name).c_str(), 0, nullptr);
  const int code = NoteReply();
  return code == 213 && FtpReplyLines(noted_).back() == "213 " + std::to_string(task_.size);
}

class InternetLine : public FtpLine {
 public:
  explicit InternetLine(const FtpAccount& account) : session_(std::make_shared<Session>(account)) {}
  ~InternetLine() override { session_->Leave(); }
  InternetLine(const InternetLine&) = delete;
  InternetLine& operator=(const InternetLine&) = delete;

  bool Start(const FtpTask& task) override { return session_->Start(task); }
  bool Wait(int milliseconds) override { return session_->Wait(milliseconds); }
  void Abort() override { session_->Leave(); }
  FtpOutcome Finish() override {
    return session_->left() ? FtpOutcome::kBroken : session_->outcome();
  }
  std::vector<std::string> TakeReplies() override { return session_->TakeReplies(); }
  std::string Folder() override { return session_->folder(); }
  bool DataStarted() override { return session_->DataStarted(); }
  std::uint64_t BytesSent() override { return session_->BytesSent(); }
  int Quiet() override { return session_->Quiet(); }
  // The library does not tell before the next call.
  bool Lives() override { return !session_->left(); }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace

WindowsFtpClient::WindowsFtpClient(Files& files, FtpLimits limits)
    : FtpConversation(files, limits, [](const FtpAccount& account) -> std::unique_ptr<FtpLine> {
        if (!Library().Complete()) return nullptr;
        return std::make_unique<InternetLine>(account);
      }) {}

}  // namespace quorvale::windows
