#include "platform/host/ftp_client.h"

#include <curl/curl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/ftp_replies.h"

namespace quorvale::host {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kLibraryWait = 50;  // milliseconds in one wait of the library
constexpr milliseconds kFarewell = milliseconds(100);
constexpr long kUploadBuffer = 256 * 1024;
// The system's own buffer for what is on its way. Larger ones hide for too long that nothing moves.
constexpr int kSocketBuffer = 256 * 1024;
constexpr long kLongestIdle = 24 * 60 * 60;  // seconds that a connection may rest between two uses

// The library's own start and end belong to the whole program.
bool StartLibrary() {
  static const bool started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return started;
}

// "ftp://host:port/"; "" if no such server can be named.
std::string ServerUrl(const std::string& host, int port) {
  CURLU* url = curl_url();
  if (url == nullptr) return "";
  const bool bare_ipv6 = host.find(':') != std::string::npos && host.front() != '[';
  const std::string named = bare_ipv6 ? "[" + host + "]" : host;
  char* text = nullptr;
  std::string result;
  if (curl_url_set(url, CURLUPART_SCHEME, "ftp", 0) == CURLUE_OK &&
      curl_url_set(url, CURLUPART_HOST, named.c_str(), 0) == CURLUE_OK &&
      curl_url_set(url, CURLUPART_PORT, std::to_string(port).c_str(), 0) == CURLUE_OK &&
      curl_url_set(url, CURLUPART_PATH, "/", 0) == CURLUE_OK &&
      curl_url_get(url, CURLUPART_URL, &text, 0) == CURLUE_OK) {
    result = text;
  }
  curl_free(text);
  curl_url_cleanup(url);
  return result;
}

int PortOf(const curl_sockaddr& address) {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&address.addr);
  const bool internet = address.family == AF_INET || address.family == AF_INET6;
  return internet ? bytes[2] * 256 + bytes[3] : 0;  // both kinds have the port in the same place
}

// What is said word by word; a log-in and a file the library knows how to do.
std::vector<std::string> CommandsOf(const FtpTask& task) {
  switch (task.kind) {
    case FtpTask::Kind::kEnterFolder:
      return {"CWD " + task.name};
    case FtpTask::Kind::kAskFolder:
      return {"PWD"};
    case FtpTask::Kind::kRename:
      return {"RNFR " + task.name, "RNTO " + task.new_name};
    case FtpTask::Kind::kRemove:
      return {"DELE " + task.name};
    case FtpTask::Kind::kLogIn:
    case FtpTask::Kind::kSend:
      break;
  }
  return {};
}

// A control connection and what happens on it. Perform runs on a thread of its own, all else on the
// caller's; what both touch while a task is under way is under the lock or atomic. A thread is
// needed since the library waits for a server's last word without a way in between.
class CurlLine : public FtpLine {
 public:
  CurlLine(FtpAccount account, std::string url)
      : account_(std::move(account)), url_(std::move(url)), multi_(curl_multi_init()) {}
  ~CurlLine() override;
  CurlLine(const CurlLine&) = delete;
  CurlLine& operator=(const CurlLine&) = delete;

  bool Start(const FtpTask& task) override;
  bool Wait(int time) override;
  void Abort() override;
  FtpOutcome Finish() override;
  std::vector<std::string> TakeReplies() override;
  std::string Folder() override { return FtpFolderOfReply(answer_); }
  bool DataStarted() override { return data_started_; }
  std::uint64_t BytesSent() override { return sent_; }
  int Quiet() override;
  bool Lives() override;

 private:
  static size_t OnReply(char* bytes, size_t size, size_t count, void* self);
  static size_t OnRead(char* buffer, size_t size, size_t count, void* self);
  static size_t OnBody(char* bytes, size_t size, size_t count, void* self);
  static curl_socket_t OnOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int OnClose(void* self, curl_socket_t socket);
  static int OnOptions(void* self, curl_socket_t socket, curlsocktype purpose);

  CURLcode Perform();
  void SetUp(CURL* easy, curl_slist* commands);
  CURLcode Drive(CURL* easy);
  void Touch() { last_move_ = Clock::now().time_since_epoch().count(); }
  void HangUp();

  const FtpAccount account_;
  const std::string url_;  // the server, with "/" at the end
  CURLM* const multi_;
  FtpTask task_;
  std::thread thread_;
  CURLcode result_ = CURLE_OK;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> replies_;
  std::string answer_;                     // the last line that has a number
  std::map<curl_socket_t, bool> sockets_;  // true: the control connection
  bool done_ = false;
  std::atomic<bool> aborted_ = false;
  std::atomic<bool> data_started_ = false;
  std::atomic<std::uint64_t> sent_ = 0;
  std::atomic<Clock::rep> last_move_ = 0;
};

CurlLine::~CurlLine() {
  if (thread_.joinable()) {
    Abort();
    thread_.join();
  }
  if (multi_ == nullptr) return;
  // The library says goodbye and would wait long for an answer.
  std::atomic<bool> gone = false;
  std::thread farewell;
  try {
    farewell = std::thread([this, &gone] {
      curl_multi_cleanup(multi_);
      gone = true;
    });
  } catch (const std::system_error&) {
    HangUp();
    curl_multi_cleanup(multi_);
    return;
  }
  const Clock::time_point end = Clock::now() + kFarewell;
  while (!gone && Clock::now() < end) std::this_thread::sleep_for(milliseconds(1));
  if (!gone) HangUp();
  farewell.join();
}

bool CurlLine::Start(const FtpTask& task) {
  if (multi_ == nullptr || aborted_) return false;
  task_ = task;
  done_ = false;
  data_started_ = false;
  sent_ = 0;
  answer_.clear();
  Touch();
  try {
    thread_ = std::thread([this] {
      result_ = Perform();
      const std::lock_guard<std::mutex> lock(mutex_);
      done_ = true;
      changed_.notify_all();
    });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

bool CurlLine::Wait(int time) {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait_for(lock, milliseconds(time), [this] { return done_ || !replies_.empty(); });
  return done_;
}

void CurlLine::Abort() {
  aborted_ = true;
  HangUp();
  curl_multi_wakeup(multi_);
}

void CurlLine::HangUp() {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [socket, control] : sockets_) shutdown(socket, SHUT_RDWR);
}

FtpOutcome CurlLine::Finish() {
  thread_.join();
  const bool success = IsFtpSuccess(FtpReplyCode(answer_));
  task_.file.reset();
  switch (task_.kind) {
    case FtpTask::Kind::kLogIn:
      break;
    case FtpTask::Kind::kEnterFolder:
    case FtpTask::Kind::kRename:
    case FtpTask::Kind::kRemove:
      if (result_ == CURLE_OK && !success) return FtpOutcome::kRefused;
      break;
    case FtpTask::Kind::kAskFolder:
      if (result_ == CURLE_OK && Folder().empty()) return FtpOutcome::kRefused;
      break;
    case FtpTask::Kind::kSend:
      // Once the data connection stood, it is not sure what the server will say next.
      if (result_ != CURLE_OK && !data_started_ && Lives()) return FtpOutcome::kRefused;
      break;
  }
  return result_ == CURLE_OK ? FtpOutcome::kDone : FtpOutcome::kBroken;
}

std::vector<std::string> CurlLine::TakeReplies() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(replies_, {});
}

int CurlLine::Quiet() {
  const Clock::time_point last{Clock::duration(last_move_)};
  return static_cast<int>(std::chrono::duration_cast<milliseconds>(Clock::now() - last).count());
}

bool CurlLine::Lives() {
  if (aborted_) return false;
  const std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [socket, control] : sockets_) {
    if (!control) continue;
    pollfd look = {socket, POLLRDHUP, 0};
    return poll(&look, 1, 0) == 0;
  }
  return false;
}

CURLcode CurlLine::Perform() {
  CURL* easy = curl_easy_init();
  if (easy == nullptr) return CURLE_OUT_OF_MEMORY;
  curl_slist* commands = nullptr;
  // The star: a refusal is told by the reply line, the connection goes on.
  for (const std::string& command : CommandsOf(task_)) {
    commands = curl_slist_append(commands, ("*" + command).c_str());
  }
  SetUp(easy, commands);
  const CURLcode result = Drive(easy);
  curl_easy_cleanup(easy);
  curl_slist_free_all(commands);
  return result;
}

void CurlLine::SetUp(CURL* easy, curl_slist* commands) {
  std::string url = url_;
  if (task_.file != nullptr) {
    char* name = curl_easy_escape(easy, task_.name.c_str(), static_cast<int>(task_.name.size()));
    if (name != nullptr) url += name;
    curl_free(name);
  }
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "ftp");
  curl_easy_setopt(easy, CURLOPT_PROXY, "");  // whatever the environment says
  curl_easy_setopt(easy, CURLOPT_USERNAME, account_.user.c_str());
  curl_easy_setopt(easy, CURLOPT_PASSWORD, account_.password.c_str());
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, kLongestIdle);  // the caller watches the time
  curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, kLongestIdle);
  curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, kLongestIdle);
  curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  // The folder is what the commands before made it.
  curl_easy_setopt(easy, CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &OnReply);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &OnBody);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &OnOpen);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &OnClose);
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
  curl_easy_setopt(easy, CURLOPT_SOCKOPTFUNCTION, &OnOptions);
  curl_easy_setopt(easy, CURLOPT_SOCKOPTDATA, this);
  if (commands != nullptr) curl_easy_setopt(easy, CURLOPT_QUOTE, commands);
  if (task_.file == nullptr) {
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    return;
  }
  curl_easy_setopt(easy, CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(easy, CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  curl_easy_setopt(easy, CURLOPT_READFUNCTION, &OnRead);
  curl_easy_setopt(easy, CURLOPT_READDATA, this);
  curl_easy_setopt(easy, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(task_.size));
  if (!task_.passive) curl_easy_setopt(easy, CURLOPT_FTPPORT, "-");
}

CURLcode CurlLine::Drive(CURL* easy) {
  if (curl_multi_add_handle(multi_, easy) != CURLM_OK) return CURLE_FAILED_INIT;
  CURLcode result = CURLE_ABORTED_BY_CALLBACK;
  int running = 1;
  while (running > 0 && !aborted_) {
    if (curl_multi_perform(multi_, &running) != CURLM_OK) break;
    if (running > 0) curl_multi_poll(multi_, nullptr, 0, kLibraryWait, nullptr);
  }
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg == CURLMSG_DONE) result = message->data.result;
  }
  curl_multi_remove_handle(multi_, easy);
  return aborted_ ? CURLE_ABORTED_BY_CALLBACK : result;
}

size_t CurlLine::OnReply(char* bytes, size_t size, size_t count, void* self) {
  CurlLine& line = *static_cast<CurlLine*>(self);
  line.Touch();
  const std::lock_guard<std::mutex> lock(line.mutex_);
  for (std::string& text : FtpReplyLines(std::string_view(bytes, size * count))) {
    if (FtpReplyCode(text) != 0) line.answer_ = text;
    line.replies_.push_back(std::move(text));
  }
  line.changed_.notify_all();
  return size * count;
}

size_t CurlLine::OnRead(char* buffer, size_t size, size_t count, void* self) {
  CurlLine& line = *static_cast<CurlLine*>(self);
  if (line.aborted_) return CURL_READFUNC_ABORT;
  line.data_started_ = true;
  line.Touch();
  const std::ptrdiff_t read = line.task_.file->Read(buffer, size * count);
  if (read < 0) return CURL_READFUNC_ABORT;
  line.sent_ += static_cast<std::uint64_t>(read);
  // A file that grew meanwhile is not the one that was to be sent.
  if (line.sent_ > line.task_.size) return CURL_READFUNC_ABORT;
  return static_cast<size_t>(read);
}

size_t CurlLine::OnBody(char*, size_t size, size_t count, void*) { return size * count; }

curl_socket_t CurlLine::OnOpen(void* self, curlsocktype, curl_sockaddr* address) {
  CurlLine& line = *static_cast<CurlLine*>(self);
  const bool control = PortOf(*address) == line.account_.port;
  // A connection that broke is not made anew in silence: the server would be in another folder.
  if (line.aborted_ || (control && line.task_.kind != FtpTask::Kind::kLogIn))
    return CURL_SOCKET_BAD;
  const int made = socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  if (made < 0) return CURL_SOCKET_BAD;
  const std::lock_guard<std::mutex> lock(line.mutex_);
  line.sockets_[made] = control;
  return made;
}

int CurlLine::OnClose(void* self, curl_socket_t socket) {
  CurlLine& line = *static_cast<CurlLine*>(self);
  const std::lock_guard<std::mutex> lock(line.mutex_);
  line.sockets_.erase(socket);
  return close(socket);
}

int CurlLine::OnOptions(void* self, curl_socket_t socket, curlsocktype purpose) {
  CurlLine& line = *static_cast<CurlLine*>(self);
  const std::lock_guard<std::mutex> lock(line.mutex_);
  if (purpose == CURLSOCKTYPE_ACCEPT) line.sockets_[socket] = false;
  const auto found = line.sockets_.find(socket);
  if (found != line.sockets_.end() && !found->second) {
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kSocketBuffer, sizeof kSocketBuffer);
  }
  return CURL_SOCKOPT_OK;
}

}  // namespace

HostFtpClient::HostFtpClient(Files& files, FtpLimits limits)
    : FtpConversation(files, limits, [](const FtpAccount& account) -> std::unique_ptr<FtpLine> {
        const std::string url = ServerUrl(account.host, account.port);
        if (url.empty() || !StartLibrary()) return nullptr;
        return std::make_unique<CurlLine>(account, url);
      }) {}

}  // namespace quorvale::host
