#include "backup/run/ftp_delivery.h"

#include <gtest/gtest.h>

#include "backup/fake_media.h"

namespace quorvale {
namespace {

using backup_test::FakeFtp;
using Strings = std::vector<std::string>;

class FtpDeliveryTest : public testing::Test {
 protected:
  FtpDeliveryResult Send() {
    FtpDelivery delivery(ftp_, {.progress = nullptr,
                                .reply = [this](const std::string& line) { told_.push_back(line); },
                                .keep_going = [this] { return going_; }});
    return delivery.Send(server_, "C:\\Out\\Job_1.obk", "Job.obk");
  }

  FakeFtp ftp_;
  FtpServer server_{
      .host = "FTP://host", .port = "2121", .user = "u", .password = "p", .folder = "/in"};
  Strings told_;
  bool going_ = true;
};

TEST_F(FtpDeliveryTest, LogsInSendsAndLeaves) {
  const FtpDeliveryResult result = Send();
  EXPECT_TRUE(result.sent);
  EXPECT_FALSE(result.told_complete);
  EXPECT_EQ(ftp_.calls, (Strings{"host:2121 u/p", "pwd", "cd /in",
                                 "send C:\\Out\\Job_1.obk as Job.obk", "bye"}));
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

}  // namespace
}  // namespace quorvale
