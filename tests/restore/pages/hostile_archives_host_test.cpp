// Archives that somebody made to do harm, or that a disk damaged, taken through the pages. The
// answer is a message or a row passed over; nothing is written that the user's choice does not
// name, and nothing crashes or hangs.
#include <sys/resource.h>

#include <ctime>
#include <set>

#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kGood[] = "C:\\Target\\good.txt";

// A computer whose owner presses every box away and restores all that is offered.
class HostileBench {
 public:
  explicit HostileBench(const std::string& like = "xp") : machine(like), wizard(machine) {
    machine.ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kOk; };
    machine.Do([this] { machine.app().Get<FrmWelcome>().Show(); });
    before_ = Everything();
  }

  // Takes an archive as far as the pages let it. True if the run took place.
  bool Play(const std::string& bytes, const std::string& path = "C:\\Backups\\Job.obk") {
    machine.WriteFile(path, bytes);
    wizard.Open(path);
    bool ran = false;
    if (wizard.Shown("frmRTwo")) {
      wizard.TickAll();
      machine.Click(wizard.two().cmdNext);
      ran = wizard.Shown("frmRfour");
      if (ran) wizard.Run();
    }
    machine.Do([this] { machine.app().Get<FrmWelcome>().CmdWC_Home.Click(); });
    return ran;
  }

  // What stands on the drives now and did not before, but for the program's own folders.
  std::vector<std::string> NewFiles() {
    std::vector<std::string> found;
    for (const std::string& path : Everything()) {
      if (before_.contains(path) || path.ends_with("\\")) continue;
      if (Contains(path, "\\Tarnwick\\Quorvale\\") || path.starts_with("C:\\Backups\\")) continue;
      found.push_back(path);
    }
    return found;
  }
  // The program's own folders hold nothing but the settings file that was taken out.
  std::vector<std::string> OwnFiles() {
    std::vector<std::string> found;
    for (const std::string& path : machine.AllBelow(machine.session().gAppDataPath)) {
      if (Contains(FoldCase(path), "\\logs\\accounts\\")) continue;
      if (!path.ends_with("\\") && !path.ends_with("\\Job\\Job.xml")) found.push_back(path);
    }
    return found;
  }

  TestMachine machine;
  RestoreWizard wizard;

 private:
  std::set<std::string> Everything() {
    std::set<std::string> all;
    for (const char* drive : {"C:\\", "D:\\"}) {
      for (std::string& path : machine.AllBelow(drive)) all.insert(std::move(path));
    }
    return all;
  }
  std::set<std::string> before_;
};

// Members of a folder that the user wants, one of which has a bad name.
std::string FolderArchive(const std::string& bad_name) {
  JobArchive archive;
  archive.Item("Add Other Folders\\C:\\Target", "C:\\Target");
  RawZip& zip = archive.zip();
  zip.Add("Job/Added Other Folders/Target/good.txt", "good");
  zip.Add(bad_name, "bad");
  zip.Add("Job/Job.xml", SettingsText(archive.items()));
  return zip.Bytes();
}

TEST(HostileArchive, MembersThatLeadAwayAreLeftOut) {
  const std::string below = "Job/Added Other Folders/Target/";
  for (const std::string& name :
       {below + "../../escape.txt", below + "..\\..\\..\\escape.txt", below + "a/../../escape.txt",
        std::string("../escape.txt"), below + "/escape.txt", below + "C:/escape.txt",
        below + "C:escape.txt", std::string("C:\\escape.txt"), std::string("/escape.txt"),
        std::string("\\\\server\\share\\escape.txt"), below + "./escape.txt",
        below + "file.txt:stream"}) {
    HostileBench bench;
    EXPECT_TRUE(bench.Play(FolderArchive(name))) << name;
    EXPECT_EQ(bench.NewFiles(), std::vector<std::string>{kGood}) << name;
    EXPECT_EQ(bench.OwnFiles(), std::vector<std::string>()) << name;
  }
}

TEST(HostileArchive, MembersThatNameADeviceAreLeftOut) {
  const std::string below = "Job/Added Other Folders/Target/";
  for (const char* name : {"CON", "nul.txt", "aux", "COM1", "lpt9.log", "CON/inner.txt"}) {
    HostileBench bench;
    EXPECT_TRUE(bench.Play(FolderArchive(below + name))) << name;
    EXPECT_EQ(bench.NewFiles(), std::vector<std::string>{kGood}) << name;
  }
}

TEST(HostileArchive, MembersThatEndInBlanksOrDotsAreLeftOut) {
  const std::string below = "Job/Added Other Folders/Target/";
  for (const char* name : {"good.txt ", "good.txt.", "dir./x.txt", "dir /x.txt", " "}) {
    HostileBench bench;
    EXPECT_TRUE(bench.Play(FolderArchive(below + name))) << name;
    EXPECT_EQ(bench.NewFiles(), std::vector<std::string>{kGood}) << name;
    EXPECT_EQ(bench.machine.ReadFile(kGood), "good");
  }
}

TEST(HostileArchive, OfTwoMembersWithOneNameTheLastOneCounts) {
  HostileBench bench;
  EXPECT_TRUE(bench.Play(FolderArchive("Job/Added Other Folders/Target/GOOD.TXT")));
  ASSERT_EQ(bench.NewFiles().size(), 1u);
  EXPECT_EQ(bench.machine.ReadFile(kGood), "bad");
}

TEST(HostileArchive, AMemberThatClaimsFourGigabytesIsRefused) {
  HostileBench bench;
  JobArchive archive;
  archive.Item("Add More Files\\C:\\Target\\good.txt", "C:\\Target\\good.txt");
  archive.zip().AddClaiming("Job/Added More Files/good.txt", "ten bytes!", 0xFFFFFFF0u);
  archive.zip().Add("Job/Job.xml", SettingsText(archive.items()));
  EXPECT_FALSE(bench.Play(archive.zip().Bytes()));
  EXPECT_EQ(bench.NewFiles(), std::vector<std::string>());
}

TEST(HostileArchive, ItemsThatNameOtherPlacesArePassedOver) {
  for (const char* key :
       {"C:\\Target\\..\\Windows\\evil.dll", "C:\\Target\\..\\..\\evil.txt", "..\\evil.txt",
        "\\evil.txt", "C:evil.txt", "C:\\Target\\CON\\evil.txt", "C:\\Target\\evil.txt:stream",
        "C:\\Target\\*", "C:\\Target\\ev?l.txt", "\\\\?\\C:\\evil.txt", "\\\\.\\C:\\evil.txt",
        "C:\\Target\\evil.txt.", "C:\\Target\\\\..\\evil.txt"}) {
    HostileBench bench;
    JobArchive archive;
    const std::string name = FileNameOf(key);
    archive.Item("Add More Files\\x", key)
        .Item("Add Other Folders\\y", key)
        .Item("Outlook Express\\Email Messages\\Inbox.dbx", key)
        .Item("Outlook Express\\Address Book\\a.wab", key)
        .Item("Outlook Express\\Stationery\\a.htm", key)
        .Item("Microsoft Outlook\\Signatures\\a.htm", key)
        .Item("Microsoft Outlook\\Identities\\P\\Account Emails-Files\\M",
              std::string(key) + ".pst");
    // The real members are all there, whatever the items say.
    for (const char* member :
         {"Added More Files/evil.txt", "Added More Files/evil.dll",
          "Added Other Folders/evil.txt/a", "Outlook Express/Email Messages/evil.txt",
          "Microsoft Outlook/Signatures/a.htm"}) {
      archive.zip().Add("Job/" + std::string(member), "evil");
    }
    archive.zip().Add("Job/Job.xml", SettingsText(archive.items()));
    bench.Play(archive.zip().Bytes());
    for (const std::string& path : bench.NewFiles()) {
      // A store or signature file goes to the user's own folder, under its bare name.
      EXPECT_TRUE(path.starts_with(bench.machine.Profile() + "\\") &&
                  FileNameOf(path).starts_with("evil"))
          << key << " wrote " << path;
    }
    EXPECT_FALSE(bench.machine.Exists("C:\\Windows\\evil.dll")) << key;
    EXPECT_FALSE(bench.machine.Exists("C:\\evil.txt")) << key;
  }
}

TEST(HostileArchive, RegistryItemsAreStagedBelowTheRestoreFolderOnly) {
  for (const char* path :
       {"Outlook Express\\..\\..\\..\\..\\x\\Signature", "Outlook Express\\Signature\\..",
        "Internet Explorer\\..\\..\\..\\..\\..\\escape", "Outlook Express\\Signature\\*",
        "Microsoft Outlook\\Identities\\..\\..\\Account Settings",
        "Outlook Express\\Signature\\a\\\\..\\..\\..\\b"}) {
    HostileBench bench;
    JobArchive archive;
    archive.Item(path, "HKEY_CURRENT_USER\\Software\\X");
    const std::string reg = RegText("HKEY_CURRENT_USER\\Software\\X", "evil", "yes");
    archive.zip().Add("Job/" + ReplaceAll(path, "\\", "/") + ".reg", reg);
    archive.zip().Add("Job/" + ReplaceAll(ParentFolder(path), "\\", "/") + "/Signature.reg", reg);
    archive.zip().Add("Job/Job.xml", SettingsText(archive.items()));
    bench.Play(archive.zip().Bytes());
    EXPECT_EQ(bench.NewFiles(), std::vector<std::string>()) << path;
    EXPECT_EQ(bench.OwnFiles(), std::vector<std::string>()) << path;
  }
}

// A small archive of all kinds of structures, with what it restores.
std::string SmallArchive() {
  JobArchive archive;
  archive.With("Add More Files\\C:\\Target\\a.txt", "C:\\Target\\a.txt", "Added More Files\\a.txt",
               "first content");
  archive.With("Add Other Folders\\C:\\Target\\dir", "C:\\Target\\dir",
               "Added Other Folders\\dir\\b.txt", "second content");
  archive.zip().Add("Job/Job.xml", SettingsText(archive.items()));
  return archive.zip().Bytes();
}

// Whatever was restored is whole.
void ExpectOnlyWholeFiles(HostileBench& bench, const std::string& what) {
  for (const std::string& path : bench.NewFiles()) {
    const std::string content = bench.machine.ReadFile(path);
    EXPECT_TRUE(path.starts_with("C:\\Target\\")) << what << " wrote " << path;
    EXPECT_TRUE(content == "first content" || content == "second content")
        << what << " wrote a part of " << path;
  }
}

TEST(HostileArchive, AnArchiveCutAtEvery512thByteIsToldAndRestoresNothing) {
  std::string bytes;
  {
    JobArchive archive;
    for (int i = 0; i < 12; ++i) {
      const std::string name = "f" + std::to_string(i) + ".txt";
      archive.With("Add More Files\\C:\\Target\\" + name, "C:\\Target\\" + name,
                   "Added More Files\\" + name, std::string(900, static_cast<char>('a' + i)));
    }
    archive.zip().Add("Job/Job.xml", SettingsText(archive.items()));
    bytes = archive.zip().Bytes();
  }
  HostileBench bench;
  for (size_t cut = 0; cut < bytes.size(); cut += 512) {
    EXPECT_FALSE(bench.Play(bytes.substr(0, cut))) << cut;
  }
  EXPECT_EQ(bench.NewFiles(), std::vector<std::string>());
  EXPECT_TRUE(bench.Play(bytes));
  EXPECT_EQ(bench.NewFiles().size(), 12u);
}

TEST(HostileArchive, AFlippedByteInAnyStructureWritesNothingWrong) {
  const std::string bytes = SmallArchive();
  HostileBench bench;
  // Every byte of the structures around the contents; of long contents some.
  for (size_t i = 0; i < bytes.size(); ++i) {
    const bool inside_settings = i > 300 && i + 400 < bytes.size();
    if (inside_settings && i % 16 != 0) continue;
    std::string damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x41);
    bench.Play(damaged);
    ExpectOnlyWholeFiles(bench, "flip at " + std::to_string(i));
    if (bench.machine.Exists("C:\\Target")) bench.machine.RemoveTree("C:\\Target");
    if (testing::Test::HasFailure()) break;
  }
}

TEST(HostileArchive, ASettingsFileCutAnywhereGivesATreeOrNone) {
  JobArchive archive;
  archive.Item("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\S\\Inbox.dbx")
      .Item("Microsoft Outlook\\Identities\\P\\Account Settings", "HKEY_CURRENT_USER\\X")
      .Item("Add More Files\\C:\\Target\\a.txt", "C:\\Target\\a.txt");
  const std::string xml = SettingsText(archive.items());
  HostileBench bench;
  for (size_t cut = 0; cut <= xml.size(); cut += 3) {
    RawZip zip;
    zip.Add("Job/Job.xml", xml.substr(0, cut)).Add("Job/Added More Files/a.txt", "first content");
    bench.Play(zip.Bytes());
    ExpectOnlyWholeFiles(bench, "cut at " + std::to_string(cut));
    if (testing::Test::HasFailure()) break;
  }
  EXPECT_EQ(bench.machine.ReadFile("C:\\Target\\a.txt"), "first content");
}

TEST(HostileArchive, ATreeThatIsEmptyLetsNobodyGoOn) {
  HostileBench bench;
  RawZip zip;
  zip.Add("Job/Job.xml", "this is no settings file");
  EXPECT_FALSE(bench.Play(zip.Bytes()));
  EXPECT_EQ(bench.machine.Boxes().back(),
            "No item is selected for Restore. Check the item to proceed");
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kCheckLimits = false;
#else
constexpr bool kCheckLimits = true;
#endif

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void ExpectLargeTree(const std::vector<Item>& items, int least_nodes) {
  TestMachine machine("xp");
  RawZip zip;
  zip.Add("Job/Job.xml", SettingsText(items));
  machine.WriteFile("C:\\Backups\\Job.obk", zip.Bytes());
  RestoreWizard wizard(machine);
  wizard.Choose("C:\\Backups\\Job.obk");
  const long before = PeakKilobytes();
  // Processor time: other work on the computer running the tests does not count.
  const std::clock_t start = std::clock();
  machine.Click(wizard.one().cmdNext);
  EXPECT_GE(wizard.two().tvwMain.Count(), least_nodes);
  const long tree_kilobytes = PeakKilobytes() - before;
  wizard.TickAll();
  machine.ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kYes; };
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRfour"));
  EXPECT_TRUE(wizard.review().ComputeRestoreSpace());
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  if (!kCheckLimits) return;
  EXPECT_LT(seconds, 5.0);
  EXPECT_LT(tree_kilobytes, 100L * 1024);
  EXPECT_LT(PeakKilobytes() - before, 200L * 1024);
}

TEST(HostileArchive, AHundredThousandItemsAreQuickAndSmall) {
  std::vector<Item> items;
  for (int i = 0; i < 100000; ++i) {
    const std::string name = "Mail folder " + std::to_string(i) + ".dbx";
    items.push_back({"Outlook Express\\Email Messages\\Other Mail Folders\\" + name,
                     "C:\\Mail\\Outlook Express\\" + name});
  }
  ExpectLargeTree(items, 100000);
}

TEST(HostileArchive, AHundredThousandGroupsOnAsManySharesAreQuickAndSmall) {
  std::vector<Item> items;
  for (int i = 0; i < 50000; ++i) {
    const std::string n = std::to_string(i);
    items.push_back({"Outlook Express\\Group number " + n + "\\x", "HKEY_CURRENT_USER\\X" + n});
  }
  for (int i = 0; i < 50000; ++i) {
    // The groups' second items come in another order: they interleave.
    const std::string n = std::to_string(49999 - i);
    items.push_back({"Outlook Express\\Group number " + n + "\\y", "HKEY_CURRENT_USER\\Y" + n});
  }
  ExpectLargeTree(items, 150000);
}

}  // namespace
}  // namespace quorvale::restore_test
