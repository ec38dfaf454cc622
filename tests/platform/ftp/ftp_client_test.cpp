#include "platform/ftp_client.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "ftp_bench.h"

namespace quorvale::ftp_test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kHere[] = "127.0.0.1";
constexpr int kAtOnce = 250;  // milliseconds
constexpr std::uint64_t kMegabyte = 1048576;
// More than the buffers between the two ends hold.
constexpr std::uint64_t kLargeFile = 30 * kMegabyte;

int MillisecondsSince(Clock::time_point start) {
  return static_cast<int>(
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

// A client that writes down what it is told.
class FtpTest : public testing::Test {
 protected:
  FtpTest() { Make({}); }

  void Make(FtpLimits limits) {
    bench_ = MakeBench(limits);
    FtpEvents events;
    events.progress = [this](int percent) { percents_.push_back(percent); };
    events.reply = [this](const std::string& line) { replies_.push_back(line); };
    events.keep_going = [this] { return KeepGoing(); };
    ftp().Listen(events);
  }
  FtpClient& ftp() { return bench_->ftp(); }

  bool Connect(const std::string& server, const std::string& user, const std::string& password) {
    return ftp().Connect(kHere, PortOf(server), user, password);
  }
  bool ConnectOdd(const std::string& manners) { return Connect("ODD", manners, "x"); }

  bool Heard(const std::string& line) const {
    return std::find(replies_.begin(), replies_.end(), line) != replies_.end();
  }
  bool HeardNumber(const std::string& number) const {
    return std::any_of(replies_.begin(), replies_.end(),
                       [&](const std::string& line) { return line.compare(0, 3, number) == 0; });
  }

  void ExpectArrived(const LocalFile& file, const std::string& server, const std::string& path) {
    EXPECT_EQ(Difference(file.host_path(), HostPathOf(server, path)), "");
  }

  void StartAsking() {
    asked_ = 0;
    longest_pause_ = 0;
    asked_since_ = Clock::now();
  }
  // Ten times a second and more, as far as the computer that runs the test gives it the time.
  void ExpectAskedOften() {
    EXPECT_GE(asked_, MillisecondsSince(asked_since_) / 100);
    EXPECT_LE(longest_pause_, kAtOnce);
  }

  bool KeepGoing() {
    const Clock::time_point now = Clock::now();
    if (asked_ > 0) longest_pause_ = std::max(longest_pause_, MillisecondsSince(last_asked_));
    last_asked_ = now;
    ++asked_;
    if (stop_when_ && stop_when_()) {
      if (stopped_at_ == Clock::time_point()) stopped_at_ = now;
      return false;
    }
    return true;
  }

  std::unique_ptr<Bench> bench_;
  std::vector<int> percents_;
  std::vector<std::string> replies_;
  int asked_ = 0;
  int longest_pause_ = 0;  // milliseconds between two questions
  Clock::time_point last_asked_;
  Clock::time_point asked_since_;
  std::function<bool()> stop_when_;
  Clock::time_point stopped_at_;
};

struct Server {
  const char* name;
  const char* user;
  const char* password;
};

class EachServer : public FtpTest, public testing::WithParamInterface<Server> {
 protected:
  static void SetUpTestSuite() { large_file_ = new LocalFile(100 * kMegabyte); }
  static void TearDownTestSuite() {
    delete large_file_;
    large_file_ = nullptr;
  }
  bool Connect() { return FtpTest::Connect(GetParam().name, GetParam().user, GetParam().password); }
  void ExpectArrived(const LocalFile& file, const std::string& path) {
    FtpTest::ExpectArrived(file, GetParam().name, path);
  }

  static inline LocalFile* large_file_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Servers, EachServer,
                         testing::Values(Server{"PYFTPDLIB", "anna", "secret"},
                                         Server{"PUREFTPD", "anna", "secret"},
                                         Server{"VSFTPD", "anonymous", "secret"}),
                         [](const auto& server) { return std::string(server.param.name); });

TEST_P(EachServer, HundredMegabytesArriveByteForByte) {
  const LocalFile& file = *large_file_;
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
  ASSERT_TRUE(Connect());
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  StartAsking();
  ASSERT_TRUE(ftp().Send(file.path(), "My mail.obk"));
  ExpectArrived(file, "/upload/My mail.obk");
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  EXPECT_TRUE(HeardNumber("226"));
  ASSERT_FALSE(percents_.empty());
  EXPECT_TRUE(std::is_sorted(percents_.begin(), percents_.end()));
  EXPECT_GE(percents_.front(), 0);
  EXPECT_EQ(percents_.back(), 100);
  EXPECT_GT(percents_.size(), 3u);
  ExpectAskedOften();
  ftp().Disconnect();
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_P(EachServer, FoldersThatExistCanBeEntered) {
  ASSERT_TRUE(Connect());
  EXPECT_EQ(ftp().CurrentFolder(), "/");
  EXPECT_TRUE(ftp().ChangeFolder("/upload"));
  EXPECT_EQ(ftp().CurrentFolder(), "/upload");
  EXPECT_TRUE(ftp().ChangeFolder("../with blank"));
  EXPECT_EQ(ftp().CurrentFolder(), "/with blank");
  const LocalFile file(1000);
  EXPECT_TRUE(ftp().Send(file.path(), "a.obk"));
  ExpectArrived(file, "/with blank/a.obk");
  EXPECT_TRUE(ftp().ChangeFolder("/"));
  EXPECT_EQ(ftp().CurrentFolder(), "/");
}

TEST_P(EachServer, AFolderThatDoesNotExistIsRefusedInTheServersOwnWords) {
  ASSERT_TRUE(Connect());
  EXPECT_FALSE(ftp().ChangeFolder("/nowhere"));
  EXPECT_TRUE(HeardNumber("550"));
  EXPECT_FALSE(Heard("550 sdds: The system cannot find the file specified."));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  EXPECT_EQ(ftp().CurrentFolder(), "/");
  replies_.clear();
  EXPECT_FALSE(ftp().ChangeFolder("/nowhere"));
  EXPECT_TRUE(HeardNumber("550"));
  EXPECT_TRUE(ftp().ChangeFolder("/upload"));
}

TEST_P(EachServer, AWrongPasswordIsRefused) {
  EXPECT_FALSE(FtpTest::Connect(GetParam().name, GetParam().user, "wrong"));
  EXPECT_TRUE(HeardNumber("530"));
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
  EXPECT_FALSE(ftp().ChangeFolder("/upload"));
  EXPECT_EQ(ftp().CurrentFolder(), "");
  EXPECT_TRUE(Connect());
}

TEST_P(EachServer, AFileOfThatNameIsOverwritten) {
  const std::string there = HostPathOf(GetParam().name, "/upload/again.obk");
  const LocalFile longer(5000), shorter(3000);
  ASSERT_TRUE(Connect());
  ASSERT_TRUE(ftp().ChangeFolder("upload"));
  ASSERT_TRUE(ftp().Send(longer.path(), "again.obk"));
  ExpectArrived(longer, "/upload/again.obk");
  ASSERT_TRUE(ftp().Send(shorter.path(), "again.obk"));
  ExpectArrived(shorter, "/upload/again.obk");
}

TEST_P(EachServer, AFileTakesAnotherNameAlsoOneThatIsTakenAndCanBeRemoved) {
  const LocalFile earlier(5000), file(3000);
  ASSERT_TRUE(Connect());
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  ASSERT_TRUE(ftp().Send(earlier.path(), "named.obk"));
  ASSERT_TRUE(ftp().Send(file.path(), "named.obk.part"));
  ASSERT_TRUE(ftp().Rename("named.obk.part", "named.obk"));
  ExpectArrived(file, "/upload/named.obk");
  EXPECT_FALSE(ftp().Rename("named.obk.part", "other.obk"));  // there is none any more
  EXPECT_TRUE(HeardNumber("550"));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  EXPECT_TRUE(ftp().Remove("named.obk"));
  EXPECT_NE(Difference(file.host_path(), HostPathOf(GetParam().name, "/upload/named.obk")), "");
  EXPECT_FALSE(ftp().Remove("named.obk"));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  EXPECT_EQ(ftp().CurrentFolder(), "/upload");
}

TEST_P(EachServer, AnEmptyFileArrives) {
  const LocalFile file(0);
  ASSERT_TRUE(Connect());
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  ASSERT_TRUE(ftp().Send(file.path(), "empty.obk"));
  ExpectArrived(file, "/upload/empty.obk");
}

TEST_P(EachServer, ACancelInTheMiddleTakesEffectAtOnce) {
  const LocalFile& file = *large_file_;
  ASSERT_TRUE(Connect());
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  stop_when_ = [this] { return !percents_.empty() && percents_.back() >= 5; };
  EXPECT_FALSE(ftp().Send(file.path(), "cancelled.obk"));
  ASSERT_NE(stopped_at_, Clock::time_point());
  EXPECT_LE(MillisecondsSince(stopped_at_), kAtOnce);
  EXPECT_LT(percents_.back(), 100);
  EXPECT_FALSE(HeardNumber("226"));
  stop_when_ = nullptr;
  EXPECT_TRUE(Connect());
}

TEST_F(FtpTest, AnonymousIsLetIn) {
  const LocalFile file(2000);
  for (const std::string server : {"PYFTPDLIB", "VSFTPD"}) {
    ASSERT_TRUE(Connect(server, "anonymous", "guest")) << server;
    ASSERT_TRUE(ftp().ChangeFolder("/upload"));
    ASSERT_TRUE(ftp().Send(file.path(), "anonymous.obk"));
    ExpectArrived(file, server, "/upload/anonymous.obk");
    ftp().Disconnect();
  }
}

TEST_F(FtpTest, NothingListensOnAClosedPort) {
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(Connect("CLOSED", "anna", "secret"));
  EXPECT_LE(MillisecondsSince(start), 5000);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, NoSuchHostOrPortIsNoServer) {
  EXPECT_FALSE(ftp().Connect("", 21, "anna", "secret"));
  EXPECT_FALSE(ftp().Connect("no such/host", 21, "anna", "secret"));
  EXPECT_FALSE(ftp().Connect(kHere, 0, "anna", "secret"));
  EXPECT_FALSE(ftp().Connect(kHere, 65536 + PortOf("ODD"), "plain", "x"));
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, ReplyLinesAreAsTheServerWroteThem) {
  ASSERT_TRUE(ConnectOdd("sdds"));
  EXPECT_TRUE(Heard("230 Come in"));
  EXPECT_FALSE(ftp().ChangeFolder("/nowhere"));
  EXPECT_TRUE(Heard("550 sdds: The system cannot find the file specified."));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  const LocalFile file(2000);
  ASSERT_TRUE(ftp().Send(file.path(), "a.obk"));
  EXPECT_TRUE(Heard("226 Transfer complete."));
}

TEST_F(FtpTest, WhereActiveModeIsRefusedTheFileGoesPassively) {
  const LocalFile file(3 * kMegabyte);
  ASSERT_TRUE(Connect("VSFTPD_PASSIVE", "anonymous", "guest"));
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  ASSERT_TRUE(ftp().Send(file.path(), "passive.obk"));
  ExpectArrived(file, "VSFTPD_PASSIVE", "/upload/passive.obk");
  ftp().Disconnect();
  for (const std::string manners : {"active_refused", "active_denied"}) {
    ASSERT_TRUE(ConnectOdd(manners));
    ASSERT_TRUE(ftp().ChangeFolder("/upload"));
    ASSERT_TRUE(ftp().Send(file.path(), manners + ".obk")) << manners;
    ExpectArrived(file, "ODD", "/upload/" + manners + ".obk");
    EXPECT_EQ(ftp().CurrentFolder(), "/upload");
  }
}

TEST_F(FtpTest, WhereTheServersConnectionDoesNotComeThroughTheFileGoesPassively) {
  FtpLimits limits;
  limits.data_connection = 500;
  Make(limits);
  const LocalFile file(3 * kMegabyte);
  ASSERT_TRUE(ConnectOdd("active_silent"));
  ASSERT_TRUE(ftp().ChangeFolder("/with blank"));
  StartAsking();
  const Clock::time_point start = Clock::now();
  ASSERT_TRUE(ftp().Send(file.path(), "late.obk"));
  EXPECT_GE(MillisecondsSince(start), 500);
  EXPECT_LE(MillisecondsSince(start), 5000);
  ExpectAskedOften();
  ExpectArrived(file, "ODD", "/with blank/late.obk");
}

TEST_F(FtpTest, AServerWithoutPassiveModeGetsTheFileActively) {
  const LocalFile file(3 * kMegabyte);
  ASSERT_TRUE(ConnectOdd("passive_refused"));
  ASSERT_TRUE(ftp().Send(file.path(), "active.obk"));
  ExpectArrived(file, "ODD", "/active.obk");
}

TEST_F(FtpTest, WhereBothModesAreRefusedTheTransferFails) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("both_refused"));
  EXPECT_FALSE(ftp().Send(file.path(), "never.obk"));
  EXPECT_NE(ftp().State(), FtpState::kBusy);
  EXPECT_NE(Difference(file.host_path(), HostPathOf("ODD", "/never.obk")), "");
}

TEST_F(FtpTest, AServerThatStopsReadingEndsByTheTimeLimit) {
  FtpLimits limits;
  limits.stall = 700;
  Make(limits);
  const LocalFile file(kLargeFile);
  ASSERT_TRUE(ConnectOdd("stall"));
  StartAsking();
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(ftp().Send(file.path(), "stalled.obk"));
  EXPECT_GE(MillisecondsSince(start), 700);
  EXPECT_LE(MillisecondsSince(start), 5000);
  ExpectAskedOften();
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, AServerThatStopsReadingCanBeLeftAtOnce) {
  const LocalFile file(kLargeFile);
  ASSERT_TRUE(ConnectOdd("stall"));
  const Clock::time_point start = Clock::now();
  stop_when_ = [&] { return MillisecondsSince(start) > 600; };
  EXPECT_FALSE(ftp().Send(file.path(), "left.obk"));
  ASSERT_NE(stopped_at_, Clock::time_point());
  EXPECT_LE(MillisecondsSince(stopped_at_), kAtOnce);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, AFileThatTheServerNeverConfirmsIsNotComplete) {
  FtpLimits limits;
  limits.stall = 700;
  Make(limits);
  const LocalFile file(200000);
  ASSERT_TRUE(ConnectOdd("mute_end"));
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(ftp().Send(file.path(), "unconfirmed.obk"));
  EXPECT_LE(MillisecondsSince(start), 5000);
}

TEST_F(FtpTest, WaitingForTheConfirmationCanBeLeftAtOnce) {
  const LocalFile file(200000);
  ASSERT_TRUE(ConnectOdd("mute_end"));
  const Clock::time_point start = Clock::now();
  stop_when_ = [&] { return MillisecondsSince(start) > 600; };
  EXPECT_FALSE(ftp().Send(file.path(), "unconfirmed.obk"));
  ASSERT_NE(stopped_at_, Clock::time_point());
  EXPECT_LE(MillisecondsSince(stopped_at_), kAtOnce);
}

TEST_F(FtpTest, KeepsAskingWhileTheServerTakesItsTimeToConfirm) {
  const LocalFile file(200000);
  ASSERT_TRUE(ConnectOdd("slow_end"));
  StartAsking();
  EXPECT_TRUE(ftp().Send(file.path(), "slow.obk"));
  EXPECT_GE(asked_, 20);
  ExpectAskedOften();
}

TEST_F(FtpTest, AServerThatDoesNotAnswerTheLoginEndsByTheTimeLimit) {
  FtpLimits limits;
  limits.answer = 700;
  Make(limits);
  StartAsking();
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(ConnectOdd("mute_login"));
  EXPECT_GE(MillisecondsSince(start), 700);
  EXPECT_LE(MillisecondsSince(start), 5000);
  ExpectAskedOften();
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, ALoginWithoutAnAnswerCanBeLeftAtOnce) {
  const Clock::time_point start = Clock::now();
  stop_when_ = [&] { return MillisecondsSince(start) > 300; };
  EXPECT_FALSE(ConnectOdd("mute_login"));
  ASSERT_NE(stopped_at_, Clock::time_point());
  EXPECT_LE(MillisecondsSince(stopped_at_), kAtOnce);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, AFullDiskInTheMiddleIsAFailure) {
  const LocalFile file(kLargeFile);
  ASSERT_TRUE(ConnectOdd("full"));
  EXPECT_FALSE(ftp().Send(file.path(), "full.obk"));
  EXPECT_NE(ftp().State(), FtpState::kBusy);
}

TEST_F(FtpTest, AFullDiskToldAtTheEndIsAFailure) {
  const LocalFile file(2 * kMegabyte);
  ASSERT_TRUE(ConnectOdd("swallow"));
  EXPECT_FALSE(ftp().Send(file.path(), "swallowed.obk"));
  EXPECT_TRUE(Heard("552 There was no room for that"));
  ASSERT_TRUE(Connect("PUREFTPD", "small", "secret"));
  EXPECT_FALSE(ftp().Send(file.path(), "too large.obk"));
}

TEST_F(FtpTest, AServerThatHangsUpInTheMiddleIsAFailure) {
  const LocalFile file(kLargeFile);
  ASSERT_TRUE(ConnectOdd("hangup"));
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(ftp().Send(file.path(), "broken.obk"));
  EXPECT_LE(MillisecondsSince(start), 5000);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, AConnectionThatTheServerEndedIsNotUsed) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("last_words"));
  ftp().ChangeFolder("/upload");
  EXPECT_FALSE(ftp().Send(file.path(), "gone.obk"));
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
  for (const char* place : {"/gone.obk", "/upload/gone.obk"}) {
    EXPECT_NE(Difference(file.host_path(), HostPathOf("ODD", place)), "") << place;
  }
}

TEST_F(FtpTest, AFileThatIsMissingHereIsAFailure) {
  ASSERT_TRUE(ConnectOdd("plain"));
  EXPECT_FALSE(ftp().Send(MachinePath("/no/such/file.obk"), "missing.obk"));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
}

TEST_F(FtpTest, AServerThatRefusesAnotherNameOrARemovalKeepsTheConnection) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("write_only"));
  ASSERT_TRUE(ftp().Send(file.path(), "stays.obk"));
  EXPECT_FALSE(ftp().Rename("stays.obk", "gone.obk"));
  EXPECT_TRUE(Heard("502 Names stay"));
  EXPECT_FALSE(ftp().Remove("stays.obk"));
  EXPECT_TRUE(Heard("550 What is here stays here"));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  ExpectArrived(file, "ODD", "/stays.obk");
}

TEST_F(FtpTest, ANameThatTheServerDoesNotTakeKeepsTheConnection) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("no_part"));
  EXPECT_FALSE(ftp().Send(file.path(), "a.obk.part"));
  EXPECT_TRUE(Heard("553 Not under that name"));
  EXPECT_EQ(ftp().State(), FtpState::kConnected);
  EXPECT_TRUE(percents_.empty());  // no byte has left
  ASSERT_TRUE(ftp().Send(file.path(), "taken.obk"));
  ExpectArrived(file, "ODD", "/taken.obk");
}

TEST_F(FtpTest, ANameCannotCarryACommandOrAnotherFolder) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("plain"));
  ASSERT_TRUE(ftp().Send(file.path(), "kept.obk"));
  for (const char* name : {"", "a.obk\r\nDELE b.obk", "upload/a.obk"}) {
    EXPECT_FALSE(ftp().Rename("kept.obk", name)) << name;
    EXPECT_FALSE(ftp().Rename(name, "kept.obk")) << name;
    EXPECT_FALSE(ftp().Remove(name)) << name;
  }
  ExpectArrived(file, "ODD", "/kept.obk");
  EXPECT_FALSE(ftp().Send(file.path(), ""));
  EXPECT_FALSE(ftp().Send(file.path(), "a.obk\r\nDELE b.obk"));
  EXPECT_FALSE(ftp().Send(file.path(), "upload/a.obk"));
  EXPECT_FALSE(ftp().ChangeFolder("/upload\r\nDELE b.obk"));
  EXPECT_EQ(ftp().CurrentFolder(), "/");
}

TEST_F(FtpTest, NamesWithSignsThatMeanSomethingElsewhereArrive) {
  const LocalFile file(2000);
  ASSERT_TRUE(ConnectOdd("plain"));
  for (const std::string name : {"100% #1.obk", "a;type=a", "it's [here] & there.obk"}) {
    EXPECT_TRUE(ftp().Send(file.path(), name)) << name;
    ExpectArrived(file, "ODD", "/" + name);
  }
}

TEST_F(FtpTest, AnEventCanDisconnect) {
  ASSERT_TRUE(ConnectOdd("sdds"));
  FtpEvents events;
  FtpState state_inside = FtpState::kIdle;
  bool connected_inside = true;
  events.reply = [&](const std::string&) {
    state_inside = ftp().State();
    connected_inside = ConnectOdd("plain");
    ftp().Disconnect();
    ftp().Listen({});  // this very function goes with it
  };
  ftp().Listen(events);
  EXPECT_FALSE(ftp().ChangeFolder("/nowhere"));
  EXPECT_EQ(state_inside, FtpState::kBusy);
  EXPECT_FALSE(connected_inside);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
  EXPECT_TRUE(ConnectOdd("plain"));
}

TEST_F(FtpTest, ADisconnectDuringATransferEndsIt) {
  const LocalFile file(kLargeFile);
  ASSERT_TRUE(ConnectOdd("stall"));
  FtpEvents events;
  Clock::time_point asked;
  events.progress = [&](int) {
    if (asked == Clock::time_point()) asked = Clock::now();
    ftp().Disconnect();
  };
  ftp().Listen(events);
  EXPECT_FALSE(ftp().Send(file.path(), "left.obk"));
  ASSERT_NE(asked, Clock::time_point());
  EXPECT_LE(MillisecondsSince(asked), kAtOnce);
  EXPECT_EQ(ftp().State(), FtpState::kIdle);
}

TEST_F(FtpTest, WithoutEventsItWorksAsWell) {
  const LocalFile file(200000);
  ftp().Listen({});
  ASSERT_TRUE(ConnectOdd("plain"));
  ASSERT_TRUE(ftp().Send(file.path(), "quiet.obk"));
  ExpectArrived(file, "ODD", "/quiet.obk");
}

TEST_F(FtpTest, ASecondConnectTakesThePlaceOfTheFirst) {
  ASSERT_TRUE(ConnectOdd("plain"));
  ASSERT_TRUE(ftp().ChangeFolder("/upload"));
  ASSERT_TRUE(Connect("PYFTPDLIB", "anna", "secret"));
  EXPECT_EQ(ftp().CurrentFolder(), "/");
}

}  // namespace
}  // namespace quorvale::ftp_test
