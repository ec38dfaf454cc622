// FTP on the running system.
#pragma once

#include "platform/ftp_client.h"

namespace quorvale::windows {

// A computer without a network: it never connects.
class WindowsFtpClient : public FtpClient {
 public:
  FtpState State() override { return FtpState::kIdle; }
  bool Connect(const std::string&, int, const std::string&, const std::string&) override {
    return false;
  }
  bool ChangeFolder(const std::string&) override { return false; }
  void Disconnect() override {}
};

}  // namespace quorvale::windows
