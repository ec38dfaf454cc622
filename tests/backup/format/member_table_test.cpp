// The member table as text: what is written is read, and what is no whole table is refused.
#include "backup/format/member_table.h"

#include <gtest/gtest.h>

#include "support/memory_platform.h"

namespace quorvale {
namespace {

MemberTable Sample() {
  MemberTable table;
  table.stem = "Anna's mail";
  table.items = {
      {"Add Other Folders\\D:\\Работа", "D:\\Работа"},
      {"Microsoft Outlook\\Identities\\A, 1\\Account Settings", "HKEY_CURRENT_USER\\x\\A, 1"},
      {"Odd\tname\r\nwith 100 %", "C:\\a"}};
  table.members = {
      {TableMember::Kind::kFolder, 0, 0, 0, "Anna's mail\\Added Other Folders\\Работа\\sub", "sub"},
      {TableMember::Kind::kFile, 0, 5'000'000'000, 0xCBF43926,
       "Anna's mail\\Added Other Folders\\Работа\\sub\\письмо.txt", "sub\\письмо.txt"},
      {TableMember::Kind::kRegistry, 1, 9, 7, "Anna's mail\\x.reg", ""}};
  table.gaps = {{2, gap_reason::kMissing, ""}};
  return table;
}

class MemberTableTest : public testing::Test {
 protected:
  std::string Written(const MemberTable& table) {
    FileStatus status = FileStatus::kOk;
    const auto file = files_.Create("C:\\table", &status);
    MemberTableWriter writer(*file);
    EXPECT_EQ(writer.Begin(table.stem), FileStatus::kOk);
    for (const SettingsItem& item : table.items) writer.Item(item);
    for (const TableMember& member : table.members) writer.Member(member);
    for (const TableGap& gap : table.gaps) writer.Gap(gap);
    EXPECT_EQ(writer.End(), FileStatus::kOk);
    EXPECT_EQ(file->Close(), FileStatus::kOk);
    return files_.Bytes("C:\\table");
  }
  std::shared_ptr<const MemberTable> Read(const std::string& text, size_t piece = 7) {
    MemberTableReader reader;
    for (size_t at = 0; at < text.size(); at += piece) reader.Feed(text.substr(at, piece));
    return reader.Finish();
  }
  MemoryFiles files_;
};

TEST_F(MemberTableTest, WhatIsWrittenIsRead) {
  const MemberTable sample = Sample();
  for (const size_t piece : {1, 2, 100, 100000}) {
    const auto table = Read(Written(sample), piece);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->stem, sample.stem);
    ASSERT_EQ(table->items.size(), 3u);
    EXPECT_EQ(table->items[0].path, sample.items[0].path);
    EXPECT_EQ(table->items[2].path, sample.items[2].path);
    ASSERT_EQ(table->members.size(), 3u);
    EXPECT_EQ(table->members[1].entry, sample.members[1].entry);
    EXPECT_EQ(table->members[1].inner, "sub\\письмо.txt");
    EXPECT_EQ(table->members[1].size, 5'000'000'000u);
    EXPECT_EQ(table->members[1].crc, 0xCBF43926u);
    EXPECT_EQ(table->members[2].kind, TableMember::Kind::kRegistry);
    EXPECT_EQ(table->members[2].item, 1u);
    ASSERT_EQ(table->gaps.size(), 1u);
    EXPECT_EQ(table->gaps[0].reason, "missing");
    EXPECT_EQ(table->gaps[0].item, 2u);
  }
}

TEST_F(MemberTableTest, EachLineIsOneRowWhateverItsNames) {
  const std::string text = Written(Sample());
  EXPECT_EQ(text.substr(0, text.find('\n') + 1), "Quorvale members\t1\r\n");
  EXPECT_NE(text.find("item\tOdd%09name%0D%0Awith 100 %25\tC:\\a\r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("end\t9\r\n"));
}

TEST_F(MemberTableTest, ATableThatIsCutIsNone) {
  const std::string text = Written(Sample());
  for (size_t length = 0; length < text.size() - 1; ++length) {
    EXPECT_EQ(Read(text.substr(0, length)), nullptr) << length;
  }
}

TEST_F(MemberTableTest, LinesOfALaterReleaseArePassedOver) {
  EXPECT_NE(Read("Quorvale members\t1\r\nstem\tJob\r\nseal\tabc\tdef\r\nend\t3\r\n"), nullptr);
}

TEST_F(MemberTableTest, WhatContradictsItselfIsNone) {
  const std::string head = "Quorvale members\t1\r\nstem\tJob\r\n";
  EXPECT_NE(Read(head + "end\t2\r\n"), nullptr);
  for (const char* lines :
       {"end\t3\r\n", "end\tx\r\n", "end\t2\r\nitem\ta\tb\r\n", "stem\tOther\r\nend\t3\r\n",
        "item\ta\r\nend\t3\r\n", "member\tf\t1\t0\t0\tx\t\r\nend\t3\r\n",
        "item\ta\tb\r\nmember\tf\t0\t0\t0\tx\t\r\nend\t4\r\n",
        "item\ta\tb\r\nmember\tf\t2\t0\t0\tx\t\r\nend\t4\r\n",
        "item\ta\tb\r\nmember\tz\t1\t0\t0\tx\t\r\nend\t4\r\n",
        "item\ta\tb\r\nmember\tf\t1\t-1\t0\tx\t\r\nend\t4\r\n",
        "item\ta\tb\r\nmember\tf\t1\t0\tcbf439261\tx\t\r\nend\t4\r\n",
        "item\ta\tb\r\nmember\tf\t1\t0\t0\t\t\r\nend\t4\r\n", "item\ta%\tb\r\nend\t3\r\n",
        "item\ta%4\tb\r\nend\t3\r\n", "item\ta%FF\tb\r\nend\t3\r\n",
        "gap\t1\tmissing\t\r\nend\t3\r\n"}) {
    EXPECT_EQ(Read(head + lines), nullptr) << lines;
  }
  EXPECT_EQ(Read("Quorvale members\t2\r\nstem\tJob\r\nend\t2\r\n"), nullptr);
  EXPECT_EQ(Read("Quorvale members\t1\r\nend\t1\r\n"), nullptr);
  EXPECT_EQ(Read(head + std::string(2'000'000, 'x') + "\r\nend\t3\r\n"), nullptr);
}

TEST_F(MemberTableTest, StandsBesideTheSettingsFile) {
  EXPECT_EQ(TableEntryName("Job_1"), "Job_1\\Members.txt");
  EXPECT_EQ(StemOfTableEntry("Job_1\\members.TXT"), "Job_1");
  EXPECT_EQ(StemOfTableEntry("Job\\Added More Files\\Members.txt"), "");
  EXPECT_EQ(StemOfTableEntry("Members.txt"), "");
}

}  // namespace
}  // namespace quorvale
