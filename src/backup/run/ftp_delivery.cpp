#include "backup/run/ftp_delivery.h"

#include <utility>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr double kHighestPort = 65535;

// What one server says where the folder does not exist. Others have other words.
constexpr char kNoSuchFolder[] = "550 sdds: The system cannot find the file specified.";
constexpr char kTransferComplete[] = "226 Transfer complete.";

std::string WithoutScheme(const std::string& host) {
  const std::string start = FoldCase(host.substr(0, 6));
  return start == "ftp://" || start == "ftp:\\\\" ? host.substr(6) : host;
}

}  // namespace

bool OpenServer(FtpClient& ftp, const FtpServer& server) {
  if (ftp.State() == FtpState::kConnected) ftp.Disconnect();
  if (ftp.State() != FtpState::kIdle) return false;
  const double port = Val(server.port);
  if (port < 1 || port > kHighestPort) return false;
  return ftp.Connect(WithoutScheme(server.host), static_cast<int>(port),
                     server.anonymous ? "anonymous" : server.user,
                     server.anonymous ? "guest" : server.password);
}

FtpDelivery::FtpDelivery(FtpClient& ftp, FtpEvents events)
    : ftp_(ftp), events_(std::move(events)) {}

// Some servers only let a folder be changed after it was asked for; what they answer is of no use.
bool FtpDelivery::Connect(const FtpServer& server) {
  if (!OpenServer(ftp_, server)) return false;
  ftp_.CurrentFolder();
  return true;
}

FtpDeliveryResult FtpDelivery::Send(const FtpServer& server, const std::string& path,
                                    const std::string& remote_name) {
  result_ = {};
  ftp_.Listen({.progress = events_.progress,
               .reply = [this](const std::string& line) { Replied(line); },
               .keep_going = events_.keep_going});
  const std::string folder = Trim(server.folder).empty() ? "/" : server.folder;
  result_.sent = Connect(server) && ftp_.ChangeFolder(folder) && ftp_.Send(path, remote_name);
  ftp_.Listen({});
  ftp_.Disconnect();
  return result_;
}

void FtpDelivery::Replied(const std::string& line) {
  if (events_.reply) events_.reply(line);
  if (line == kNoSuchFolder) result_.no_folder = true;
  if (line == kTransferComplete) result_.told_complete = true;
}

}  // namespace quorvale
