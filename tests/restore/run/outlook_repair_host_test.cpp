// The repair of a mail profile by itself: which values it rewrites, and to what.
#include "restore/run/outlook_repair.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"
#include "restore/mail_profile.h"

namespace quorvale::restore_test {
namespace {

// What the start of the program finds out.
void NameSystem(TestMachine& machine, const std::string& name = kWindows2000) {
  machine.session().gOSName = name;
}

TEST(OutlookRepair, EachVersionRewritesItsOwnFormOfThePath) {
  for (const char* version : {"9", "10", "11", "12"}) {
    TestMachine machine("xp");
    NameSystem(machine);
    UseOutlook(machine, version);
    SeedSection(machine, "P", "C:\\Anna\\mail.pst", "C:\\Anna\\mail.pst");
    RepairOutlookProfile(machine.app(), "P", "D:\\Data");
    const bool narrow = std::string(version) == "10";
    const bool wide = std::string(version) == "11" || std::string(version) == "12";
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8),
              narrow ? "D:\\Data\\mail.pst" : "C:\\Anna\\mail.pst")
        << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16),
              Wide(wide ? "D:\\Data\\mail.pst" : "C:\\Anna\\mail.pst"))
        << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId).has_value(), !narrow && !wide);
  }
}

TEST(OutlookRepair, ASectionWithoutTheNarrowPathStaysAsItWas) {
  for (const char* version : {"10", "11", "12"}) {
    TestMachine machine("xp");
    NameSystem(machine);
    UseOutlook(machine, version);
    SeedSection(machine, "P", "", "C:\\Anna\\mail.pst");
    RepairOutlookProfile(machine.app(), "P", "D:\\Data");
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("C:\\Anna\\mail.pst"));
    EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId), "entry");
  }
}

TEST(OutlookRepair, APathThatNamesNoFileTakesTheNameOfTheWideOne) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "10");
  SeedSection(machine, "P", "C:\\Anna\\", "C:\\Anna\\mail.pst");
  RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), "D:\\Data\\mail.pst");
}

TEST(OutlookRepair, ANewVersionWithoutTheWidePathForgetsTheEntryOnly) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "11");
  SeedSection(machine, "P", "C:\\Anna\\mail.pst", "");
  RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), "C:\\Anna\\mail.pst");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), std::nullopt);
  EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId), std::nullopt);
}

TEST(OutlookRepair, TheOfflineStoreIsRewrittenOncePerProfile) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "12");
  SeedSection(machine, "P", "C:\\Anna\\mail.pst", "C:\\Anna\\mail.pst");
  const std::string offline = std::string(kProfiles) + "P\\" + kOfflineStoreSection;
  machine.SetBinary(offline, kOfflinePath16, Wide("C:\\Anna\\off.ost"));
  RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(machine.GetValue(offline, kOfflinePath16), Wide("D:\\Data\\off.ost"));
  EXPECT_TRUE(machine.session().gOutlookProfileEdited);
  RepairOutlookProfile(machine.app(), "P", "D:\\Elsewhere");
  EXPECT_EQ(machine.GetValue(offline, kOfflinePath16), Wide("D:\\Data\\off.ost"));
}

TEST(OutlookRepair, BadValuesAreCarriedOrLeftOut) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "11");
  const std::string key = std::string(kProfiles) + "P";
  // One whole section, one that is missing, and the begin of a third.
  machine.SetBinary(key + "\\" + kStoreListSection, kStoreListValue,
                    std::string(kSectionId) + std::string(16, 'z') + "short");
  const std::string name = std::string(1990, 'n') + ".pst";
  machine.SetString(Section("P"), kStorePath8, "C:\\x\\" + name);
  machine.SetBinary(Section("P"), kStorePath16, Utf8ToUtf16Bytes("C:\\x\\" + name));
  RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("D:\\Data\\" + name));
  RepairOutlookProfile(machine.app(), "No such profile", "D:\\Data");
  EXPECT_FALSE(machine.KeyExists(std::string(kProfiles) + "No such profile"));
}

TEST(OutlookRepair, NamesOutsideTheCodePageSurviveInTheWideForm) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "12");
  SeedSection(machine, "P", "C:\\x\\????.pst", "C:\\x\\Почта.pst");
  RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("D:\\Data\\Почта.pst"));
}

TEST(OutlookRepair, SystemsKeepTheirProfilesInTheirOwnPlace) {
  const std::string old_root =
      "HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Windows Messaging Subsystem\\Profiles\\P";
  for (const char* name : {kWindowsNT, kWindows2000, kWindowsVista, kWindows98, kWindowsME}) {
    SCOPED_TRACE(name);
    TestMachine machine("xp");
    NameSystem(machine, name);
    UseOutlook(machine, "10");
    SeedSection(machine, "P", "C:\\Anna\\mail.pst", "");
    machine.SetBinary(old_root + "\\" + kStoreListSection, kStoreListValue, kSectionId);
    machine.SetString(old_root + "\\" + kSection, kStorePath8, "C:\\Anna\\mail.pst");
    RepairOutlookProfile(machine.app(), "P", "D:\\Data");
    const bool is_old = name == std::string(kWindows98) || name == std::string(kWindowsME);
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8),
              is_old ? "C:\\Anna\\mail.pst" : "D:\\Data\\mail.pst");
    EXPECT_EQ(machine.GetValue(old_root + "\\" + kSection, kStorePath8),
              is_old ? "D:\\Data\\mail.pst" : "C:\\Anna\\mail.pst");
  }
}

TEST(OutlookRepair, ARestoredFileIsNamedInEveryFormWhateverTheVersion) {
  for (const char* version : {"9", "10", "11", "12", "14"}) {
    TestMachine machine("xp");
    NameSystem(machine);
    UseOutlook(machine, version);
    SeedSection(machine, "P", "C:\\Anna\\mail.pst", "C:\\ANNA\\Mail.pst");
    RestoredFiles restored;
    restored.Add("c:\\anna\\mail.pst", "D:\\Home\\mail_1.pst", "D:\\Seen\\mail_1.pst");
    const PointedPaths pointed = RepairOutlookProfile(machine.app(), "P", "D:\\Data", restored);
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), "D:\\Seen\\mail_1.pst") << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("D:\\Seen\\mail_1.pst"))
        << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId), std::nullopt) << version;
    EXPECT_TRUE(pointed.empty());
  }
}

TEST(OutlookRepair, ARestoredFileOfAWideSectionAloneIsNamedThere) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "11");
  SeedSection(machine, "P", "", "C:\\Anna\\mail.pst");
  RestoredFiles restored;
  restored.Add("C:\\Anna\\mail.pst", "D:\\Home\\mail.pst", "D:\\Home\\mail.pst");
  RepairOutlookProfile(machine.app(), "P", "D:\\Data", restored);
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("D:\\Home\\mail.pst"));
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), std::nullopt);
}

TEST(OutlookRepair, WhatIsKeptStaysAsItWas) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "12");
  SeedSection(machine, "P", "C:\\Anna\\mail.pst", "C:\\Anna\\mail.pst");
  std::vector<std::string> asked;
  const PointedPaths pointed =
      RepairOutlookProfile(machine.app(), "P", "D:\\Data", {}, [&](const std::string& path) {
        asked.push_back(path);
        return true;
      });
  EXPECT_EQ(asked, std::vector<std::string>{"C:\\Anna\\mail.pst"});
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("C:\\Anna\\mail.pst"));
  EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId), "entry");
  EXPECT_TRUE(pointed.empty());
}

TEST(OutlookRepair, ItTellsWhereItPointedWhatWasNotRestored) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "11");
  SeedSection(machine, "P", "C:\\Anna\\mail.pst", "C:\\Anna\\Mail.pst");
  machine.SetBinary(std::string(kProfiles) + "P\\" + kOfflineStoreSection, kOfflinePath16,
                    Wide("C:\\Anna\\Off.ost"));
  const PointedPaths pointed = RepairOutlookProfile(machine.app(), "P", "D:\\Data");
  EXPECT_EQ(pointed, (PointedPaths{{"c:\\anna\\mail.pst", "D:\\Data\\Mail.pst"},
                                   {"c:\\anna\\off.ost", "D:\\Data\\Off.ost"}}));
}

TEST(OutlookRepair, ARestoredOfflineStoreIsNamedEvenWhereNoSectionWasRewritten) {
  TestMachine machine("xp");
  NameSystem(machine);
  UseOutlook(machine, "9");
  SeedSection(machine, "P", "C:\\Anna\\mail.pst", "");
  const std::string offline = std::string(kProfiles) + "P\\" + kOfflineStoreSection;
  machine.SetBinary(offline, kOfflinePath16, Wide("C:\\Anna\\off.ost"));
  RestoredFiles restored;
  restored.Add("C:\\Anna\\off.ost", "D:\\Home\\off.ost", "D:\\Home\\off.ost");
  RepairOutlookProfile(machine.app(), "P", "D:\\Data", restored);
  EXPECT_EQ(machine.GetValue(offline, kOfflinePath16), Wide("D:\\Home\\off.ost"));
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), "C:\\Anna\\mail.pst");
}

TEST(RestoredFiles, AreFoundByTheOldPathWithoutRegardToCase) {
  RestoredFiles files;
  EXPECT_EQ(files.Find("C:\\a.pst"), "");
  files.Add("C:\\Älter\\a.pst", "D:\\a_1.pst", "E:\\a_1.pst");
  EXPECT_EQ(files.Find("c:\\älter\\A.PST"), "D:\\a_1.pst");
  EXPECT_EQ(files.PathInProfile("C:\\ÄLTER\\a.pst"), "E:\\a_1.pst");
  EXPECT_EQ(files.PathInProfile("C:\\b.pst"), "");
  EXPECT_TRUE(files.Taken("d:\\A_1.pst"));
  EXPECT_FALSE(files.Taken("E:\\a_1.pst"));
  files.Clear();
  EXPECT_EQ(files.Find("C:\\Älter\\a.pst"), "");
  EXPECT_FALSE(files.Taken("D:\\a_1.pst"));
}

}  // namespace
}  // namespace quorvale::restore_test
