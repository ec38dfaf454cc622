// Sends a finished backup to the FTP server of the job, so that whatever stands there under the
// backup's name is whole: it is sent as "<name>.part" and takes its name when all of it is there.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/account.h"
#include "core/program/session.h"
#include "platform/ftp_client.h"
#include "platform/system_info.h"

namespace quorvale {

// Closes the connection that is open, if there is one, and logs in to the server. The host may have
// "ftp://" before it. False on any failure; a port that is none fails without a call.
bool OpenServer(FtpClient& ftp, const FtpServer& server);

struct FtpDeliveryResult {
  bool sent = false;           // the server has the whole file, under its name
  bool told_complete = false;  // and said so in the words that are known
  bool no_folder = false;      // the server said in known words that the folder does not exist
  bool stopped = false;        // keep_going said so
  // The server took no other name than the file's own, or did not change it: the file was sent
  // under its name from the start.
  bool direct = false;
  std::string answer;  // the server's refusal that led to this end, without the password
  // Names on the server: of the whole file where it did not get its own, of a part of it that could
  // not be removed, and of an earlier file of the name that was put aside and could not be removed.
  std::string whole;
  std::string part;
  std::string aside;
};

class FtpDelivery {
 public:
  // The events are told while Send works; each may be empty.
  FtpDelivery(FtpClient& ftp, SystemInfo& system, FtpEvents events);

  bool Connect(const FtpServer& server);
  // Connects, goes to the server's folder, sends one file and disconnects. What arrived only in
  // part is removed, also where keep_going ended it: that takes a few seconds at the most, in which
  // keep_going is asked as before and its answer does not count. An earlier file of that name is
  // replaced when the new one is there as a whole, or where the server lets it be sent directly
  // only.
  FtpDeliveryResult Send(const FtpServer& server, const std::string& path,
                         const std::string& remote_name);

 private:
  void Listen();
  void Replied(const std::string& line);
  bool Enter(const FtpServer& server);
  bool SendFile(const std::string& path, const std::string& name);
  bool RefusedForGood() const;
  void SendSafely(const FtpServer& server, const std::string& path, const std::string& name);
  void SendDirectly(const FtpServer& server, const std::string& path, const std::string& name);
  bool TakeName(const std::string& part, const std::string& name);
  bool RemovePart(const FtpServer& server, const std::string& name);

  FtpClient& ftp_;
  SystemInfo& system_;
  FtpEvents events_;
  FtpDeliveryResult result_;
  bool has_begun_ = false;  // bytes of the present file went to the server
};

// Notes in the account what a person should know of a delivery: that it failed and why, and what
// the server has beside the backup. `archive` is the file that was to be sent.
void TellDelivery(const FtpDeliveryResult& delivery, const std::string& archive,
                  const std::string& remote_name, Account* account);

}  // namespace quorvale
