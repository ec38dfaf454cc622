#include "platform/ftp_replies.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(FtpReplies, OnlyTheLastLineOfAReplyHasANumber) {
  EXPECT_EQ(FtpReplyCode("226 Transfer complete."), 226);
  EXPECT_EQ(FtpReplyCode("421"), 421);
  EXPECT_EQ(FtpReplyCode("226-More follows"), 0);
  EXPECT_EQ(FtpReplyCode(" 226 indented"), 0);
  EXPECT_EQ(FtpReplyCode("22"), 0);
  EXPECT_EQ(FtpReplyCode("2261 files"), 0);
  EXPECT_EQ(FtpReplyCode(""), 0);
}

TEST(FtpReplies, TwoHundredsAreSuccess) {
  EXPECT_TRUE(IsFtpSuccess(200));
  EXPECT_TRUE(IsFtpSuccess(299));
  EXPECT_FALSE(IsFtpSuccess(150));
  EXPECT_FALSE(IsFtpSuccess(331));
  EXPECT_FALSE(IsFtpSuccess(0));
}

TEST(FtpReplies, LinesComeWithoutTheirEnds) {
  EXPECT_EQ(FtpReplyLines("220-Hello\r\n220 Ready\r\n"),
            (std::vector<std::string>{"220-Hello", "220 Ready"}));
  EXPECT_EQ(FtpReplyLines("226 Done"), (std::vector<std::string>{"226 Done"}));
  EXPECT_EQ(FtpReplyLines("a\n\nb\n"), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_TRUE(FtpReplyLines("").empty());
}

TEST(FtpReplies, TheCurrentFolderStandsBetweenQuotes) {
  EXPECT_EQ(FtpFolderOfReply("257 \"/upload\" is the current directory"), "/upload");
  EXPECT_EQ(FtpFolderOfReply("257 \"/a \"\"b\"\" c\""), "/a \"b\" c");
  EXPECT_EQ(FtpFolderOfReply("257 no quotes"), "");
  EXPECT_EQ(FtpFolderOfReply("257 \"/open"), "");
  EXPECT_EQ(FtpFolderOfReply("550 \"/upload\" is not there"), "");
  EXPECT_EQ(FtpFolderOfReply(""), "");
}

TEST(FtpReplies, AnArgumentCannotEndItsCommand) {
  EXPECT_TRUE(IsFtpArgument("My mail.obk"));
  EXPECT_TRUE(IsFtpArgument("\xC3\xA4"));
  EXPECT_FALSE(IsFtpArgument(""));
  EXPECT_FALSE(IsFtpArgument("a\r\nDELE b"));
  EXPECT_FALSE(IsFtpArgument(std::string("a\0b", 3)));
  EXPECT_FALSE(IsFtpArgument("a\x7F"));
}

}  // namespace
}  // namespace quorvale
