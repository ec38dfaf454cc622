// Text files in the code page, and the full texts beside them.
#include "core/program/full_text.h"

#include <gtest/gtest.h>

#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kPath[] = "D:\\Place\\a.xml";
constexpr char kFullPath[] = "D:\\Place\\Full text\\a.xml";

class FullTextTest : public testing::Test {
 protected:
  FullTextTest() { machine_.MakeFolder("D:\\Place"); }
  FileStatus Write(const std::string& text) { return WriteTextFile(machine_.app(), kPath, text); }
  std::optional<std::string> Read() { return ReadTextFile(machine_.app(), kPath); }

  TestMachine machine_;
};

TEST_F(FullTextTest, ATextOfTheCodePageStandsAlone) {
  EXPECT_EQ(Write("M\xC3\xBCller\r\n"), FileStatus::kOk);
  EXPECT_EQ(machine_.ReadFile(kPath), "M\xFCller\r\n");
  EXPECT_FALSE(machine_.Exists("D:\\Place\\Full text"));
  EXPECT_EQ(Read(), "M\xC3\xBCller\r\n");
}

TEST_F(FullTextTest, WhatTheCodePageCannotHoldStandsBeside) {
  EXPECT_EQ(Write("Łukasz, Фото, 写真"), FileStatus::kOk);
  EXPECT_EQ(machine_.ReadFile(kPath), "?ukasz, ????, ??");
  EXPECT_EQ(machine_.ReadFile(kFullPath), "Łukasz, Фото, 写真");
  EXPECT_EQ(Read(), "Łukasz, Фото, 写真");
}

TEST_F(FullTextTest, AFullTextOfAnotherFileIsPassedOver) {
  Write("Фото");
  machine_.WriteFile(kPath, "Photo");
  EXPECT_EQ(Read(), "Photo");
  machine_.WriteFile(kPath, "????");
  machine_.WriteFile(kFullPath, "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Read(), "????");
}

TEST_F(FullTextTest, WritingAndRemovingTakeAnOldFullTextAway) {
  Write("Фото");
  EXPECT_EQ(Write("Photo"), FileStatus::kOk);
  EXPECT_FALSE(machine_.Exists(kFullPath));
  Write("Фото");
  EXPECT_EQ(RemoveTextFile(machine_.app(), kPath, false), FileStatus::kOk);
  EXPECT_FALSE(machine_.Exists(kPath));
  EXPECT_FALSE(machine_.Exists(kFullPath));
}

TEST_F(FullTextTest, AMissingFileHasNoText) {
  machine_.WriteFile(kFullPath, "Фото");
  EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(FullTextTest, AFullTextThatCannotBeWrittenIsAFailure) {
  machine_.WriteFile("D:\\Place\\Full text", "a file in the way");
  EXPECT_NE(Write("Фото"), FileStatus::kOk);
  EXPECT_EQ(Read(), "????");
}

}  // namespace
}  // namespace quorvale
