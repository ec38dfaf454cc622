// The FTP client of both bindings: what is said to a server, in which order, and when it is given
// up. A binding supplies the line: a control connection that works beside the caller's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/ftp_client.h"

namespace quorvale {

struct FtpAccount {
  std::string host;
  int port = 0;
  std::string user;
  std::string password;
};

// One thing to do on a line.
struct FtpTask {
  enum class Kind { kLogIn, kEnterFolder, kAskFolder, kSend, kRename, kRemove };
  Kind kind = Kind::kLogIn;
  std::string name;                 // the folder, or the file's name on the server
  std::string new_name;             // of kRename
  std::shared_ptr<InputFile> file;  // what to send, from its start
  std::uint64_t size = 0;           // bytes of the file
  bool passive = false;             // opens data connections to the server, not the other way
};

enum class FtpOutcome {
  kDone,
  kRefused,  // the server said no; the line is as it was
  kBroken,   // the line is of no use any more
};

// A control connection. One task at a time goes on beside the caller's thread; every method is
// called on the caller's thread and returns at once, but for Wait and Finish. The destructor ends
// what is under way and hangs up, within a tenth of a second.
class FtpLine {
 public:
  virtual ~FtpLine() = default;
  // Begins a task; the first one is kLogIn. False if the computer cannot do it.
  virtual bool Start(const FtpTask& task) = 0;
  // Waits for replies or the task's end, at most this long. True once the task has ended.
  virtual bool Wait(int milliseconds) = 0;
  // Ends the task under way at once; Wait says so soon.
  virtual void Abort() = 0;
  // After the end of a task: how it went.
  virtual FtpOutcome Finish() = 0;
  // The reply lines that came since the last call.
  virtual std::vector<std::string> TakeReplies() = 0;
  // After kAskFolder was done: the folder.
  virtual std::string Folder() = 0;
  // True once the data connection takes the file's bytes.
  virtual bool DataStarted() = 0;
  // Bytes of the file that were handed over.
  virtual std::uint64_t BytesSent() = 0;
  // How long nothing has come from or gone to the server, in milliseconds.
  virtual int Quiet() = 0;
  // False if the server is known to have hung up.
  virtual bool Lives() = 0;
};

class FtpConversation : public FtpClient {
 public:
  // Null if the computer has no FTP, or no such server can be named.
  using MakeLine = std::function<std::unique_ptr<FtpLine>(const FtpAccount&)>;
  // `files`: where the paths of Send lead; it must outlive this object.
  FtpConversation(Files& files, FtpLimits limits, MakeLine make_line);

  FtpState State() override;
  void Listen(FtpEvents events) override;
  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password) override;
  std::string CurrentFolder() override;
  bool ChangeFolder(const std::string& folder) override;
  bool Send(const std::string& path, const std::string& remote_name) override;
  bool Rename(const std::string& name, const std::string& new_name) override;
  bool Remove(const std::string& name) override;
  // From inside an event: ends the operation that is under way, and then the connection.
  void Disconnect() override;

 private:
  class Operation;
  enum class Sent { kDone, kFailed, kNothing };  // kNothing: no byte left this computer

  // Carries a task out and tells the events meanwhile. After a broken line there is none.
  FtpOutcome Run(const FtpTask& task);
  FtpOutcome Run(FtpTask::Kind kind, const std::string& name = "");
  bool OpenLine(bool passive);
  // A new line that is in the same folder.
  bool OpenPassiveLine();
  Sent SendOnce(const std::string& path, const std::string& remote_name, bool passive);
  int LongestQuiet(const FtpTask& task);
  void Tell(const FtpTask& task);
  bool KeepGoing();

  Files& files_;
  const FtpLimits limits_;
  const MakeLine make_line_;
  FtpAccount account_;
  std::string folder_;  // where ChangeFolder led to
  std::shared_ptr<const FtpEvents> events_;
  std::unique_ptr<FtpLine> line_;
  bool busy_ = false;
  bool leaving_ = false;  // Disconnect was called while an operation was under way
  bool stopped_ = false;  // keep_going said so
  bool data_started_ = false;
  int told_percent_ = -1;
};

}  // namespace quorvale
