// Every call of an upload fails once: it does nothing, it breaks off with half of the file on the
// server, or the connection goes with it. Under the backup's name the server has nothing, the
// earlier file or the new one, each whole, and what else is there, the account names.
#include <gtest/gtest.h>

#include <ostream>

#include "backup/run/ftp_delivery.h"
#include "faults/fault_computer.h"
#include "faults/fault_walk.h"

namespace quorvale::fault_test {
namespace {

constexpr char kArchivePath[] = "C:\\Backups\\Job.obk";
constexpr char kRemoteName[] = "Job.obk";
constexpr char kFolder[] = "/in/";

enum class Break {
  kNothingDone,
  kHalfSent,  // of a file that is sent; the connection stays
  kLost,      // half is sent as well, and then the server is gone
};

// A server in memory of which the Nth call fails.
class BreakingServer : public FtpClient {
 public:
  BreakingServer(MemoryFtp& real, Files& files, Break how, bool renames_over)
      : real_(real), files_(files), how_(how), renames_over_(renames_over) {}

  CallCount count;

  FtpState State() override { return real_.State(); }
  void Listen(FtpEvents events) override {
    events_ = events;
    real_.Listen(std::move(events));
  }
  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password) override {
    return !Fails("Connect", host) && real_.Connect(host, port, user, password);
  }
  std::string CurrentFolder() override {
    return Fails("CurrentFolder", "") ? "" : real_.CurrentFolder();
  }
  bool ChangeFolder(const std::string& folder) override {
    return !Fails("ChangeFolder", folder) && real_.ChangeFolder(folder);
  }
  bool Send(const std::string& path, const std::string& remote_name) override {
    if (!count.Fails("Send", remote_name)) return real_.Send(path, remote_name);
    if (how_ != Break::kNothingDone) {
      const std::string whole = FileToolkit(files_, [] {}).ReadWhole(path).value_or("");
      real_.received[kFolder + remote_name] = whole.substr(0, whole.size() / 2);
      if (events_.progress) events_.progress(50);
    }
    Refuse();
    return false;
  }
  bool Rename(const std::string& name, const std::string& new_name) override {
    if (Fails("Rename", name + " " + new_name)) return false;
    if (!renames_over_ && real_.received.contains(kFolder + new_name)) {
      Reply("550 It exists.");
      return false;
    }
    return real_.Rename(name, new_name);
  }
  bool Remove(const std::string& name) override {
    return !Fails("Remove", name) && real_.Remove(name);
  }
  void Disconnect() override { real_.Disconnect(); }

 private:
  bool Fails(const char* call, const std::string& about) {
    if (!count.Fails(call, about)) return false;
    Refuse();
    return true;
  }
  void Refuse() {
    if (how_ == Break::kLost) return real_.Disconnect();
    Reply("550 No.");
  }
  void Reply(const std::string& line) {
    if (events_.reply) events_.reply(line);
  }

  MemoryFtp& real_;
  Files& files_;
  FtpEvents events_;
  const Break how_;
  const bool renames_over_;
};

struct Case {
  const char* what;
  Break how;
  bool has_earlier;
  bool renames_over;
};

void PrintTo(const Case& upload, std::ostream* out) { *out << upload.what; }

bool Tells(const Account& account, const std::string& name) {
  for (const AccountEntry& entry : account.entries()) {
    for (const std::string& text : {entry.item, entry.source, entry.place, entry.detail}) {
      if (text.find(name) != std::string::npos) return true;
    }
  }
  return false;
}

std::vector<std::string> CheckServer(const std::map<std::string, std::string>& server,
                                     const FtpDeliveryResult& result, const Account& account,
                                     const std::string& earlier, const std::string& whole) {
  std::vector<std::string> problems;
  const std::string final_name = std::string(kFolder) + kRemoteName;
  const bool is_there = server.contains(final_name);
  const std::string bytes = is_there ? server.at(final_name) : "";
  if (is_there && bytes != whole && bytes != earlier) {
    problems.push_back("a part has the backup's name");
  }
  if (result.sent && bytes != whole) problems.push_back("called sent, and is not there");
  if (!result.sent && account.entries().empty()) problems.push_back("failed without a word");
  bool has_earlier = earlier.empty() || bytes == earlier || bytes == whole;
  for (const auto& [path, content] : server) {
    if (path == final_name) continue;
    if (content == earlier) has_earlier = true;
    if (!Tells(account, path.substr(path.rfind('/') + 1))) {
      problems.push_back("left on the server without a word: " + path);
    }
  }
  if (!has_earlier) problems.push_back("neither the earlier backup nor the new one");
  return problems;
}

FaultOutcome UploadWithFault(std::uint64_t number, const Case& upload) {
  const std::string whole = Noise(3000, 5);
  const std::string earlier = upload.has_earlier ? Noise(1000, 6) : "";
  MemoryPlatform computer;
  computer.files.Put(kArchivePath, whole);
  if (upload.has_earlier) computer.ftp.received[std::string(kFolder) + kRemoteName] = earlier;
  BreakingServer server(computer.ftp, computer.files, upload.how, upload.renames_over);
  FtpDelivery delivery(server, computer.system, {});
  server.count.FailCall(number);
  const FtpDeliveryResult result = delivery.Send(
      {.host = "host", .port = "21", .user = "u", .password = "secret", .folder = "/in"},
      kArchivePath, kRemoteName);
  Account account;
  account.Begin(AccountRun::kBackup, "Job", "2026-11-22 05:08:12");
  TellDelivery(result, kArchivePath, kRemoteName, &account);
  FaultOutcome outcome;
  outcome.failed_call = server.count.failed_call();
  outcome.problems = CheckServer(computer.ftp.received, result, account, earlier, whole);
  if (computer.files.Bytes(kArchivePath) != whole) outcome.problems.push_back("backup touched");
  if (number == 0 && (!result.sent || !account.entries().empty())) {
    outcome.problems.push_back("a sound upload is not sent, or has something to tell");
  }
  return outcome;
}

class UploadFaults : public testing::TestWithParam<Case> {};

TEST_P(UploadFaults, LeaveNoPartUnderTheNameOfTheBackup) {
  TryEveryFault(GetParam().what,
                [](std::uint64_t number) { return UploadWithFault(number, GetParam()); });
}

INSTANTIATE_TEST_SUITE_P(
    Ways, UploadFaults,
    testing::Values(
        Case{"an upload", Break::kNothingDone, false, true},
        Case{"an upload that breaks", Break::kHalfSent, false, true},
        Case{"an upload that loses the server", Break::kLost, false, true},
        Case{"an upload over an earlier file", Break::kNothingDone, true, true},
        Case{"an upload over an earlier file that breaks", Break::kHalfSent, true, true},
        Case{"an upload over an earlier file that loses the server", Break::kLost, true, true},
        Case{"an upload where nothing is renamed over", Break::kNothingDone, true, false},
        Case{"an upload that breaks where nothing is renamed over", Break::kHalfSent, true, false},
        Case{"an upload that loses the server where nothing is renamed over", Break::kLost, true,
             false}));

}  // namespace
}  // namespace quorvale::fault_test
