// A connection to an FTP server, for sending one file at a time and giving it its name.
#pragma once

#include <functional>
#include <string>

namespace quorvale {

enum class FtpState { kIdle = 0, kBusy = 1, kConnected = 2 };

// What a connection tells while it works; all on the caller's thread, from inside the operation
// that is under way. Each may be empty.
struct FtpEvents {
  // Part of the file that was sent, 0 to 100.
  std::function<void(int percent)> progress;
  // A line of the server's reply as it was sent, with its number, without the line's end.
  std::function<void(const std::string& line)> reply;
  // Called at least ten times a second while an operation waits or works: the place to pump
  // messages. False ends the operation at once.
  std::function<bool()> keep_going;
};

// How long a client waits, in milliseconds. Tests shorten them.
struct FtpLimits {
  int answer = 30000;  // for a server's answer, also while connecting
  int stall = 60000;   // while a file is sent and no byte of it moves
  int data_connection =
      5000;  // for the server's connection in active mode, before passive is tried
};

class FtpClient {
 public:
  virtual ~FtpClient() = default;
  virtual FtpState State() = 0;
  // Takes the place of the former events; {} for none.
  virtual void Listen(FtpEvents events) = 0;
  // Connects and logs in. A server that does not answer counts as a failure after 30 seconds. False
  // on any failure, with the state idle.
  virtual bool Connect(const std::string& host, int port, const std::string& user,
                       const std::string& password) = 0;
  // The server's current folder; "" on failure.
  virtual std::string CurrentFolder() = 0;
  virtual bool ChangeFolder(const std::string& folder) = 0;
  // Sends a whole file (a path as the program sees it) into the server's current folder, over a
  // file of that name. In active mode, and in passive mode where that is refused or does not come
  // through. False on any failure or when keep_going said so; no half a file is called complete.
  virtual bool Send(const std::string& path, const std::string& remote_name) = 0;
  // Gives a file of the current folder another name. Whether it may take the place of a file of
  // that name is the server's choice. False on any failure.
  virtual bool Rename(const std::string& name, const std::string& new_name) = 0;
  // Removes a file of the current folder. False on any failure, also if there is none.
  virtual bool Remove(const std::string& name) = 0;
  virtual void Disconnect() = 0;
};

}  // namespace quorvale
