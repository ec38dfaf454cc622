#include "backup/run/ftp_delivery.h"

#include <utility>

#include "base/text.h"
#include "platform/ftp_replies.h"

namespace quorvale {
namespace {

// Of a file that is not whole yet, and of an earlier one that makes room for it.
constexpr char kPartEnd[] = ".part";
constexpr char kAsideEnd[] = ".old";

constexpr std::uint64_t kCleanUpTime = 5000;  // milliseconds
// A server may need a moment before it lets go of a file whose sender is gone.
constexpr int kRemoveAttempts = 3;
constexpr int kRemovePause = 200;

constexpr int kOutOfOrder = 503;  // RFC 959, 4.2
constexpr int kLowestRefusal = 400;
constexpr int kLowestFinalRefusal = 500;
constexpr int kNoRoomRefusal = 552;

constexpr double kHighestPort = 65535;

// What one server says where the folder does not exist. Others have other words.
constexpr char kNoSuchFolder[] = "550 sdds: The system cannot find the file specified.";
constexpr char kTransferComplete[] = "226 Transfer complete.";

std::string WithoutScheme(const std::string& host) {
  const std::string start = FoldCase(host.substr(0, 6));
  return start == "ftp://" || start == "ftp:\\\\" ? host.substr(6) : host;
}

std::string WithoutPassword(const std::string& text, const FtpServer& server) {
  return server.password.empty() ? text : ReplaceAll(text, server.password, "***");
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

FtpDelivery::FtpDelivery(FtpClient& ftp, SystemInfo& system, FtpEvents events)
    : ftp_(ftp), system_(system), events_(std::move(events)) {}

// Some servers only let a folder be changed after it was asked for; what they answer is of no use.
bool FtpDelivery::Connect(const FtpServer& server) {
  if (!OpenServer(ftp_, server)) return false;
  ftp_.CurrentFolder();
  return true;
}

FtpDeliveryResult FtpDelivery::Send(const FtpServer& server, const std::string& path,
                                    const std::string& remote_name) {
  result_ = {};
  Listen();
  if (Enter(server)) SendSafely(server, path, remote_name);
  ftp_.Listen({});
  ftp_.Disconnect();
  if (result_.sent && !result_.direct) result_.answer.clear();
  result_.answer = WithoutPassword(result_.answer, server);
  return result_;
}

void FtpDelivery::Listen() {
  ftp_.Listen({.progress =
                   [this](int percent) {
                     has_begun_ = true;
                     if (events_.progress) events_.progress(percent);
                   },
               .reply = [this](const std::string& line) { Replied(line); },
               .keep_going =
                   [this] {
                     const bool goes_on = !events_.keep_going || events_.keep_going();
                     if (!goes_on) result_.stopped = true;
                     return goes_on;
                   }});
}

void FtpDelivery::Replied(const std::string& line) {
  if (events_.reply) events_.reply(line);
  const int code = FtpReplyCode(line);
  // Commands out of their order are what a refused first half of a renaming comes to: what was
  // answered to that says more.
  if (code == kOutOfOrder && !result_.answer.empty()) return;
  if (code >= kLowestRefusal) result_.answer = line;
  if (line == kNoSuchFolder) result_.no_folder = true;
  if (line == kTransferComplete) result_.told_complete = true;
}

bool FtpDelivery::Enter(const FtpServer& server) {
  const std::string folder = Trim(server.folder).empty() ? "/" : server.folder;
  return Connect(server) && ftp_.ChangeFolder(folder);
}

bool FtpDelivery::SendFile(const std::string& path, const std::string& name) {
  has_begun_ = false;
  result_.answer.clear();
  result_.told_complete = false;
  return ftp_.Send(path, name);
}

// The server said no before a byte was sent, and not for want of room: another name may do.
bool FtpDelivery::RefusedForGood() const {
  const int code = FtpReplyCode(result_.answer);
  return !has_begun_ && !result_.stopped && ftp_.State() == FtpState::kConnected &&
         code >= kLowestFinalRefusal && code != kNoRoomRefusal;
}

void FtpDelivery::SendSafely(const FtpServer& server, const std::string& path,
                             const std::string& name) {
  const std::string part = name + kPartEnd;
  if (!SendFile(path, part)) {
    if (RefusedForGood()) return SendDirectly(server, path, name);
    if (has_begun_ && !RemovePart(server, part)) result_.part = part;
    return;
  }
  result_.sent = TakeName(part, name);
  if (result_.sent) return;
  if (result_.stopped || ftp_.State() != FtpState::kConnected) {
    result_.whole = part;
    return;
  }
  SendDirectly(server, path, name);
  // Until then it was the only whole file.
  if (!result_.sent) {
    result_.whole = part;
  } else if (!RemovePart(server, part)) {
    result_.part = part;
  }
}

void FtpDelivery::SendDirectly(const FtpServer& server, const std::string& path,
                               const std::string& name) {
  const std::string why = result_.answer;
  result_.direct = true;
  result_.sent = SendFile(path, name);
  if (result_.sent) {
    result_.answer = why;
  } else if (has_begun_ && !RemovePart(server, name)) {
    result_.part = name;
  }
}

bool FtpDelivery::TakeName(const std::string& part, const std::string& name) {
  if (ftp_.Rename(part, name)) return true;
  const std::string why = result_.answer;
  // Some servers rename over no file: the earlier one makes room.
  const std::string aside = name + kAsideEnd;
  bool named = false;
  if (ftp_.Rename(name, aside)) {
    named = ftp_.Rename(part, name);
    if (named ? !ftp_.Remove(aside) : !ftp_.Rename(aside, name)) result_.aside = aside;
  }
  result_.answer = why;
  return named;
}

bool FtpDelivery::RemovePart(const FtpServer& server, const std::string& name) {
  const std::uint64_t end = system_.Ticks() + kCleanUpTime;
  // What failed stays to be read: these replies are nobody's.
  ftp_.Listen({.progress = nullptr, .reply = nullptr, .keep_going = [this, end] {
                 if (events_.keep_going) events_.keep_going();
                 return system_.Ticks() < end;
               }});
  bool removed = false;
  if (ftp_.State() == FtpState::kConnected || Enter(server)) {
    removed = ftp_.Remove(name);
    for (int i = 1; i < kRemoveAttempts && !removed && system_.Ticks() < end; ++i) {
      system_.Sleep(kRemovePause);
      removed = ftp_.Remove(name);
    }
  }
  Listen();
  return removed;
}

void TellDelivery(const FtpDeliveryResult& delivery, const std::string& archive,
                  const std::string& remote_name, Account* account) {
  const auto note = [account](const std::string& text, const std::string& answer = "") {
    account->Note(AccountReason::kServerRefused, text, answer);
  };
  if (!delivery.sent) {
    account->Note(delivery.stopped ? AccountReason::kStopped : AccountReason::kServerRefused,
                  "The server did not get the backup. It is at " + archive + ".", delivery.answer);
  } else if (delivery.direct) {
    note(
        "The backup was sent to the server directly under its name, since the server let it have "
        "no other one meanwhile.",
        delivery.answer);
  }
  if (!delivery.whole.empty()) {
    note("The whole backup may be on the server as " + delivery.whole + ".");
  }
  if (!delivery.part.empty()) {
    note("The server could not be made to remove " + delivery.part +
         (delivery.sent ? ", a second copy." : ", a part of the backup."));
  }
  if (!delivery.aside.empty()) {
    note("The earlier " + remote_name + " is on the server as " + delivery.aside + ".");
  }
}

}  // namespace quorvale
