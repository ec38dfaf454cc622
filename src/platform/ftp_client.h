// A connection to an FTP server.
#pragma once

#include <functional>
#include <string>

namespace quorvale {

enum class FtpState { kIdle = 0, kBusy = 1, kConnected = 2 };

class FtpClient {
 public:
  virtual ~FtpClient() = default;
  virtual FtpState State() = 0;
  // Connects and reads the current folder. False on any failure.
  virtual bool Connect(const std::string& host, int port, const std::string& user,
                       const std::string& password) = 0;
  virtual bool ChangeFolder(const std::string& folder) = 0;
  virtual void Disconnect() = 0;
};

}  // namespace quorvale
