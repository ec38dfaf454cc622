// Sends a finished backup to the FTP server of the job.
#pragma once

#include <string>

#include "core/program/session.h"
#include "platform/ftp_client.h"

namespace quorvale {

// Closes the connection that is open, if there is one, and logs in to the server. The host may have
// "ftp://" before it. False on any failure; a port that is none fails without a call.
bool OpenServer(FtpClient& ftp, const FtpServer& server);

struct FtpDeliveryResult {
  bool sent = false;           // the server has the whole file
  bool told_complete = false;  // and said so in the words that are known
  bool no_folder = false;      // the server said in known words that the folder does not exist
};

class FtpDelivery {
 public:
  // The events are told while Send works; each may be empty.
  FtpDelivery(FtpClient& ftp, FtpEvents events);

  bool Connect(const FtpServer& server);
  // Connects, goes to the server's folder, sends one file and disconnects.
  FtpDeliveryResult Send(const FtpServer& server, const std::string& path,
                         const std::string& remote_name);

 private:
  void Replied(const std::string& line);

  FtpClient& ftp_;
  FtpEvents events_;
  FtpDeliveryResult result_;
};

}  // namespace quorvale
