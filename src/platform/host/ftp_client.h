// FTP through the system's transfer library.
#pragma once

#include "platform/ftp_conversation.h"

namespace quorvale::host {

class HostFtpClient : public FtpConversation {
 public:
  explicit HostFtpClient(Files& files, FtpLimits limits = {});
};

}  // namespace quorvale::host
