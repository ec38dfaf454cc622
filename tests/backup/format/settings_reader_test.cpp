#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "backup/format/settings_file.h"

namespace quorvale {
namespace {

std::string File(const std::string& items,
                 const std::string& options =
                     "<LogDetails>True</LogDetails>\r\n"
                     "<UseCompression>False</UseCompression>\r\n"
                     "<SelfExtractingBackup>9</SelfExtractingBackup>\r\n"
                     "<VerifyArchive>abc</VerifyArchive>\r\n"
                     "<ProtectWithPassword>True</ProtectWithPassword>\r\n"
                     "<BackupSettingsFiles>x.obk</BackupSettingsFiles>\r\n") {
  return "<?xml version='1.0'?>\r\n<BackupSettings>\r\n<Main Process='Main Backup'>\r\n"
         "<ProcessDesc>d</ProcessDesc>\r\n<DateTime>7_14_11_2026_22_5</DateTime>\r\n"
         "<BackupFolder>C:\\Backup & more</BackupFolder>\r\n<ItemsForBackup>\r\n" +
         items + "</ItemsForBackup>\r\n<AdvancedSettings>\r\n" + options +
         "</AdvancedSettings>\r\n</Main>\r\n</BackupSettings>\r\n";
}

SettingsFile Parse(const std::string& text) {
  SettingsFile settings;
  EXPECT_TRUE(ParseSettings(text, &settings));
  return settings;
}

// The options that a file tells, up to the first that it does not.
std::vector<std::string> Told(const SettingsOptions& options) {
  std::vector<std::string> told;
  for (const auto* option : {&options.log, &options.compression, &options.level, &options.password,
                             &options.protection}) {
    if (!*option) break;
    told.push_back(**option);
  }
  return told;
}

TEST(SettingsReader, ReadsAllParts) {
  const SettingsFile settings =
      Parse(File("<OE Key='C:\\a.dbx' >Outlook Express\\Email Messages\\a.dbx\r\n</OE>\r\n"));
  EXPECT_EQ(settings.process_name, "Main Backup");
  EXPECT_EQ(settings.backup_folder, "C:\\Backup & more");
  ASSERT_EQ(settings.items.size(), 1u);
  EXPECT_EQ(settings.items[0].key, "C:\\a.dbx");
  EXPECT_EQ(settings.items[0].path, "Outlook Express\\Email Messages\\a.dbx");
  EXPECT_EQ(Told(settings.options),
            (std::vector<std::string>{"True", "False", "9", "abc", "True"}));
  EXPECT_FALSE(settings.backup_name);
  EXPECT_FALSE(settings.backup_type);
  EXPECT_FALSE(settings.backup_path);
}

TEST(SettingsReader, UnescapedAmpersandsLessThanSignsAndQuotesStand) {
  const SettingsFile settings =
      Parse(File("<AOF Key='C:\\R&D's <new>' >Add Other Folders\\C:\\R&D's <new>\r\n</AOF>\r\n"
                 "<MO Key='HKEY_CURRENT_USER\\Bob' >x' >Microsoft Outlook\\Bob' >x\r\n</MO>\r\n"));
  ASSERT_EQ(settings.items.size(), 2u);
  EXPECT_EQ(settings.items[0].key, "C:\\R&D's <new>");
  EXPECT_EQ(settings.items[0].path, "Add Other Folders\\C:\\R&D's <new>");
  EXPECT_EQ(settings.items[1].key, "HKEY_CURRENT_USER\\Bob' >x");
  EXPECT_EQ(settings.items[1].path, "Microsoft Outlook\\Bob' >x");
}

TEST(SettingsReader, OptionTextsMayHoldMarkUp) {
  const SettingsFile settings =
      Parse(File("",
                 "<LogDetails>True</LogDetails>\r\n<VerifyArchive>a<b>&'</VerifyArchive></"
                 "VerifyArchive>\r\n"));
  EXPECT_EQ(Told(settings.options), (std::vector<std::string>{"True", "a<b>&'</VerifyArchive>"}));
}

TEST(SettingsReader, AnEmptyOptionKeepsItsPlace) {
  const SettingsFile settings =
      Parse(File("", "<LogDetails></LogDetails>\r\n<UseCompression>True</UseCompression>\r\n"));
  EXPECT_EQ(Told(settings.options), (std::vector<std::string>{"", "True"}));
}

TEST(SettingsReader, HandOverFilesTellNameTypeAndPath) {
  const SettingsFile settings = Parse(
      "<?xml version='1.0'?>\r\n<BackupSettings>\r\n<Main Process=''>\r\n<ItemsForBackup>\r\n"
      "</ItemsForBackup>\r\n<BackupName>A & B</BackupName>\r\n<BackupPath>D:\\x</BackupPath>"
      "\r\n<BackupType>Custom</BackupType>\r\n</Main>\r\n</BackupSettings>\r\n");
  EXPECT_EQ(settings.backup_name, "A & B");
  EXPECT_EQ(settings.backup_path, "D:\\x");
  EXPECT_EQ(settings.backup_type, "Custom");
}

TEST(SettingsReader, AFileOfTheSchedulePageHasNoName) {
  const SettingsFile settings = Parse(
      "<Main Process=''>\r\n<ItemsForBackup>\r\n</ItemsForBackup>\r\n"
      "<BackupType>Schedule</BackupType>\r\n</Main>\r\n");
  EXPECT_FALSE(settings.backup_name);
  EXPECT_EQ(settings.backup_type, "Schedule");
}

TEST(SettingsReader, LineEndsWithoutCarriageReturnAreRead) {
  std::string text = File("<OE Key='k' >Outlook Express\\a\r\n</OE>\r\n");
  std::erase(text, '\r');
  EXPECT_EQ(Parse(text).items.at(0).path, "Outlook Express\\a");
}

TEST(SettingsReader, AnItemThatNeverClosesEndsAtTheNext) {
  const SettingsFile settings = Parse(
      File("<OE Key='k' >Outlook Express\\a\r\n<OE Key='l' >Outlook Express\\b\r\n</OE>\r\n"));
  ASSERT_EQ(settings.items.size(), 2u);
  EXPECT_EQ(settings.items[0].path, "Outlook Express\\a");
  EXPECT_EQ(settings.items[1].path, "Outlook Express\\b");
}

TEST(SettingsReader, TextWithoutMainIsNoSettingsFile) {
  SettingsFile settings;
  EXPECT_FALSE(ParseSettings("", &settings));
  EXPECT_FALSE(ParseSettings("PK\3\4 something else", &settings));
  EXPECT_FALSE(ParseSettings("<?xml version='1.0'?>\r\n<BackupSettings>\r\n", &settings));
}

TEST(SettingsReader, AFileCutAnywhereIsReadAsFarAsItGoes) {
  const std::string text = File(
      "<OE Key='C:\\a.dbx' >Outlook Express\\a.dbx\r\n</OE>\r\n"
      "<AOF Key='D:\\x' >Add Other Folders\\D:\\x\r\n</AOF>\r\n");
  size_t most = 0;
  for (size_t length = 0; length <= text.size(); ++length) {
    SettingsFile settings;
    const bool found = ParseSettings(std::string_view(text).substr(0, length), &settings);
    EXPECT_TRUE(found || settings.items.empty()) << length;
    const size_t read = settings.items.size() + Told(settings.options).size();
    EXPECT_GE(read, most) << length;
    most = read;
  }
  EXPECT_EQ(most, 7u);
}

TEST(SettingsReader, ReadsManyItemsInLinearTime) {
  const auto seconds_for = [](int count) {
    std::string items;
    for (int i = 0; i < count; ++i) {
      items += "<AMF Key='C:\\" + std::to_string(i) + "' >Add More Files\\C:\\" +
               std::to_string(i) + "\r\n</AMF>\r\n";
    }
    const std::string text = File(items);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Parse(text).items.size(), static_cast<size_t>(count));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  const double small = seconds_for(10000);
  const double large = seconds_for(100000);
  EXPECT_LT(large, 60 * small + 1.0) << "quadratic time would be a factor of 100";
}

}  // namespace
}  // namespace quorvale
