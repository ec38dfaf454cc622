// FTP through the system's own Internet library, which is looked up at the first connection: the
// program starts where it is missing, and then no server is reached.
#pragma once

#include "platform/ftp_conversation.h"

namespace quorvale::windows {

class WindowsFtpClient : public FtpConversation {
 public:
  explicit WindowsFtpClient(Files& files, FtpLimits limits = {});
};

}  // namespace quorvale::windows
