// The FTP client of a computer that reaches no server.
#pragma once

#include "platform/ftp_client.h"

namespace quorvale::host {

class HostFtpClient : public FtpClient {
 public:
  FtpState State() override { return FtpState::kIdle; }
  bool Connect(const std::string&, int, const std::string&, const std::string&) override {
    return false;
  }
  bool ChangeFolder(const std::string&) override { return false; }
  void Disconnect() override {}
};

}  // namespace quorvale::host
