#include "backup/run/ftp_delivery.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "backup/fake_media.h"
#include "core/program/account.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

using backup_test::FakeFtp;
using Strings = std::vector<std::string>;

constexpr char kSendPart[] = "send C:\\Out\\Job_1.obk as Job.obk.part";
constexpr char kSendDirectly[] = "send C:\\Out\\Job_1.obk as Job.obk";
constexpr char kTakeName[] = "rename Job.obk.part to Job.obk";
constexpr char kPutAside[] = "rename Job.obk to Job.obk.old";

class FtpDeliveryTest : public testing::Test {
 protected:
  FtpDeliveryResult Send() {
    FtpDelivery delivery(ftp_, system_,
                         {.progress = nullptr,
                          .reply = [this](const std::string& line) { told_.push_back(line); },
                          .keep_going = [this] { return going_; }});
    return delivery.Send(server_, "C:\\Out\\Job_1.obk", "Job.obk");
  }
  // What was asked of the server between the folder and the farewell.
  Strings CallsInFolder() const {
    const auto folder = std::find(ftp_.calls.begin(), ftp_.calls.end(), "cd /in");
    if (folder == ftp_.calls.end()) return {};
    return {folder + 1, ftp_.calls.end() - 1};
  }
  static Account AccountOf(const FtpDeliveryResult& result) {
    Account account;
    TellDelivery(result, "C:\\Out\\Job_1.obk", "Job.obk", &account);
    return account;
  }

  FakeFtp ftp_;
  MemorySystem system_;
  FtpServer server_{
      .host = "FTP://host", .port = "2121", .user = "u", .password = "p", .folder = "/in"};
  Strings told_;
  bool going_ = true;
};

TEST_F(FtpDeliveryTest, LogsInSendsAndLeaves) {
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.sent);
  EXPECT_FALSE(result.told_complete);
  EXPECT_EQ(ftp_.calls, (Strings{"host:2121 u/p", "pwd", "cd /in", kSendPart, kTakeName, "bye"}));
  EXPECT_FALSE(ftp_.has_listener());
}

TEST_F(FtpDeliveryTest, KnowsTheWordsOfTheEndAndOfAMissingFolder) {
  ftp_.send_reply = "226 Transfer complete.";
  EXPECT_TRUE(Send().told_complete);
  ftp_.has_folder = false;
  ftp_.folder_reply = "550 sdds: The system cannot find the file specified.";
  const FtpDeliveryResult result = Send();
  EXPECT_FALSE(result.sent);
  EXPECT_TRUE(result.no_folder);
  EXPECT_FALSE(result.told_complete);  // of the transfer before
  EXPECT_EQ(told_, (Strings{ftp_.send_reply, ftp_.folder_reply}));
}

TEST_F(FtpDeliveryTest, WithoutAFolderItGoesToTheRoot) {
  server_.folder = "  ";
  Send();
  EXPECT_EQ(ftp_.calls.at(2), "cd /");
}

TEST_F(FtpDeliveryTest, AnAnonymousUserIsAGuest) {
  server_.anonymous = true;
  Send();
  EXPECT_EQ(ftp_.calls.at(0), "host:2121 anonymous/guest");
}

TEST_F(FtpDeliveryTest, APortThatIsNoneIsNotTried) {
  for (const char* port : {"0", "65536", ""}) {
    server_.port = port;
    EXPECT_FALSE(Send().sent) << port;
  }
  EXPECT_EQ(ftp_.calls, (Strings{"bye", "bye", "bye"}));
}

TEST_F(FtpDeliveryTest, EndsAsSoonAsItMayNotGoOn) {
  ftp_.during_send = [this](int percent) { going_ = percent < 50; };
  EXPECT_FALSE(Send().sent);
  EXPECT_EQ(ftp_.calls.back(), "bye");
}

// --- A name only for what is whole --------------------------------------------------------------

TEST_F(FtpDeliveryTest, WhatBrokeOffIsRemovedOverANewConnection) {
  ftp_.sends = false;
  ftp_.send_reply = "552 No room for anna, whose secret is p4ss";
  server_.password = "p4ss";
  const FtpDeliveryResult result = Send();
  EXPECT_FALSE(result.sent);
  EXPECT_EQ(result.part, "");
  EXPECT_EQ(CallsInFolder(),
            (Strings{kSendPart, "host:2121 u/p4ss", "pwd", "cd /in", "remove Job.obk.part"}));
  const Account account = AccountOf(result);
  ASSERT_EQ(account.entries().size(), 1u);
  EXPECT_EQ(account.entries()[0].fate, AccountFate::kNote);
  EXPECT_EQ(account.entries()[0].reason, AccountReason::kServerRefused);
  EXPECT_EQ(account.entries()[0].source,
            "The server did not get the backup. It is at C:\\Out\\Job_1.obk.");
  EXPECT_EQ(account.entries()[0].detail, "552 No room for anna, whose secret is ***");
  EXPECT_EQ(told_, Strings{ftp_.send_reply});  // of removing nothing is told
}

TEST_F(FtpDeliveryTest, AStoppedUploadIsRemovedToo) {
  ftp_.during_send = [this](int percent) { going_ = percent < 50; };
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(result.part, "");
  EXPECT_EQ(CallsInFolder().back(), "remove Job.obk.part");
  EXPECT_EQ(AccountOf(result).entries().at(0).reason, AccountReason::kStopped);
}

TEST_F(FtpDeliveryTest, APartThatTheServerKeepsIsTold) {
  ftp_.sends = false;
  ftp_.removes = false;
  const FtpDeliveryResult result = Send();
  EXPECT_EQ(result.part, "Job.obk.part");
  const Account account = AccountOf(result);
  ASSERT_EQ(account.entries().size(), 2u);
  EXPECT_EQ(account.entries()[1].source,
            "The server could not be made to remove Job.obk.part, a part of the backup.");
}

TEST_F(FtpDeliveryTest, AServerThatIsNotThereAnyMoreIsNotWaitedForForEver) {
  ftp_.sends = false;
  ftp_.during_send = [this](int) {
    ftp_.during_connect = [this] {
      for (int i = 0; i < 1000 && ftp_.KeepGoing(); ++i) system_.Sleep(100);
    };
  };
  const std::uint64_t start = system_.Ticks();
  EXPECT_EQ(Send().part, "Job.obk.part");
  EXPECT_LE(system_.Ticks() - start, 6000u);
}

TEST_F(FtpDeliveryTest, NothingIsRemovedOfAFileThatNeverLeft) {
  ftp_.refuses = [](const std::string&) { return true; };
  ftp_.send_reply = "452 Not now";
  const FtpDeliveryResult result = Send();
  EXPECT_FALSE(result.sent);
  EXPECT_FALSE(result.direct);
  EXPECT_EQ(CallsInFolder(), Strings{kSendPart});
  EXPECT_EQ(result.answer, "452 Not now");
}

TEST_F(FtpDeliveryTest, WhereAFileStandsInTheWayItIsPutAsideMeanwhile) {
  bool stands = true;
  ftp_.on_rename = [&](const std::string& name, const std::string& new_name) {
    if (name == "Job.obk") stands = false;
    return new_name != "Job.obk" || !stands;
  };
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.sent);
  EXPECT_FALSE(result.direct);
  EXPECT_EQ(CallsInFolder(),
            (Strings{kSendPart, kTakeName, kPutAside, kTakeName, "remove Job.obk.old"}));
  EXPECT_TRUE(AccountOf(result).entries().empty());
}

TEST_F(FtpDeliveryTest, AServerThatRenamesNothingGetsItDirectlyAndTheAccountSaysSo) {
  ftp_.on_rename = [](const std::string&, const std::string&) { return false; };
  ftp_.rename_reply = "502 Names stay";
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.sent);
  EXPECT_TRUE(result.direct);
  EXPECT_EQ(CallsInFolder(),
            (Strings{kSendPart, kTakeName, kPutAside, kSendDirectly, "remove Job.obk.part"}));
  const Account account = AccountOf(result);
  ASSERT_EQ(account.entries().size(), 1u);
  EXPECT_EQ(account.entries()[0].detail, "502 Names stay");
  ftp_.removes = false;
  EXPECT_EQ(Send().part, "Job.obk.part");
}

TEST_F(FtpDeliveryTest, WhereDirectSendingBreaksOffTheWholePartStaysAndTheHalfBackupGoes) {
  ftp_.on_rename = [](const std::string&, const std::string&) { return false; };
  int sendings = 0;
  ftp_.during_send = [&](int percent) {
    if (percent == 0 && ++sendings == 2) ftp_.sends = false;
  };
  const FtpDeliveryResult result = Send();
  EXPECT_FALSE(result.sent);
  EXPECT_EQ(result.whole, "Job.obk.part");
  EXPECT_EQ(CallsInFolder().back(), "remove Job.obk");
}

TEST_F(FtpDeliveryTest, AServerThatTakesNoOtherNameGetsItDirectly) {
  ftp_.refuses = [this](const std::string& name) {
    ftp_.send_reply = name == "Job.obk" ? "226 Transfer complete." : "553 Not under that name";
    return name != "Job.obk";
  };
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.sent);
  EXPECT_TRUE(result.direct);
  EXPECT_TRUE(result.told_complete);
  EXPECT_EQ(result.answer, "553 Not under that name");
  EXPECT_EQ(CallsInFolder(), (Strings{kSendPart, kSendDirectly}));
}

TEST_F(FtpDeliveryTest, AConnectionThatBreaksAtTheNamingLeavesTheWholeFile) {
  ftp_.on_rename = [this](const std::string&, const std::string&) {
    ftp_.state = FtpState::kIdle;
    return false;
  };
  const FtpDeliveryResult result = Send();
  EXPECT_FALSE(result.sent);
  EXPECT_EQ(result.whole, "Job.obk.part");
  EXPECT_EQ(AccountOf(result).entries().back().source,
            "The whole backup may be on the server as Job.obk.part.");
}

}  // namespace
}  // namespace quorvale
