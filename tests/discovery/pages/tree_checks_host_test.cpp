// How ticks travel through the tree, and what a person does with it.
#include <gtest/gtest.h>

#include "core/main/frmSettings.h"
#include "core/program/ModGlobal.h"
#include "discovery/seed.h"

namespace quorvale::discovery_test {
namespace {

constexpr int kSpace = 32;
constexpr char kInbox[] = "Outlook Express\\Email Messages\\Inbox.dbx";
constexpr char kDrafts[] = "Outlook Express\\Email Messages\\Drafts.dbx";

TEST(UpdateNodeChecks, TickingANodeTicksAllBelowIt) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Outlook Express\\Email Messages");
  for (const char* path :
       {kInbox, kDrafts, "Outlook Express\\Email Messages\\Other Mail Folders\\Clients.dbx"}) {
    EXPECT_TRUE(NodeAt(page, path)->Checked()) << path;
  }
  EXPECT_TRUE(NodeAt(page, "Outlook Express")->Checked());
  EXPECT_FALSE(NodeAt(page, "Outlook Express\\Signature")->Checked());
}

TEST(UpdateNodeChecks, UntickingTheLastTickedChildUnticksUpToTheRoot) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, kInbox);
  machine.Tick(page.tvwMain, kDrafts);
  machine.Tick(page.tvwMain, kInbox, false);
  EXPECT_TRUE(NodeAt(page, "Outlook Express")->Checked());
  machine.Tick(page.tvwMain, kDrafts, false);
  EXPECT_FALSE(NodeAt(page, "Outlook Express\\Email Messages")->Checked());
  EXPECT_FALSE(NodeAt(page, "Outlook Express")->Checked());
}

TEST(UpdateNodeChecks, TickingOneChildTicksAllItsAncestors) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Outlook Express\\Email Messages\\Other Mail Folders\\Clients.dbx");
  EXPECT_EQ(TickedPaths(page.tvwMain),
            (std::vector<std::string>{
                "Outlook Express", "Outlook Express\\Email Messages",
                "Outlook Express\\Email Messages\\Other Mail Folders",
                "Outlook Express\\Email Messages\\Other Mail Folders\\Clients.dbx"}));
}

TEST(FrmTwoTree, TickOfAProfilesMailTicksItsAccountSettings) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal", "C:\\a.pst"}});
  FrmTwo& page = OpenPage(machine);
  const std::string identity = "Microsoft Outlook\\Identities\\Outlook";
  machine.Tick(page.tvwMain, identity + "\\Account Emails-Files\\Personal");
  EXPECT_TRUE(NodeAt(page, identity + "\\Account Settings")->Checked());

  // The same on unticking, also of the group itself.
  machine.Tick(page.tvwMain, identity + "\\Account Settings", false);
  machine.Tick(page.tvwMain, identity + "\\Account Emails-Files", false);
  EXPECT_TRUE(NodeAt(page, identity + "\\Account Settings")->Checked());
  EXPECT_TRUE(NodeAt(page, identity)->Checked());
  EXPECT_FALSE(NodeAt(page, identity + "\\Account Emails-Files\\Personal")->Checked());
}

TEST(FrmTwoTree, TickSelectsTheNodeAndIsRemembered) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  EXPECT_FALSE(machine.session().gBackupTreeChanged);
  machine.Tick(page.tvwMain, kInbox);
  EXPECT_TRUE(machine.session().gBackupTreeChanged);
  EXPECT_EQ(page.tvwMain.Selected(), NodeAt(page, kInbox));
}

TEST(FrmTwoTree, SelectAllLeavesTheTwoAddRootsAlone) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  page.selectall();
  EXPECT_EQ(TickedPaths(page.tvwMain).size(), static_cast<size_t>(page.tvwMain.Count() - 2));
  EXPECT_FALSE(NodeAt(page, "Add Other Folders")->Checked());
  EXPECT_FALSE(NodeAt(page, "Add More Files")->Checked());
  page.Deselectall();
  EXPECT_TRUE(TickedPaths(page.tvwMain).empty());
}

// A folder, a file and a folder, added one after the other.
FrmTwo& PageWithAddedItems(TestMachine& machine) {
  FrmTwo& page = OpenPage(machine);
  machine.MakeFolder("C:\\A");
  machine.WriteFile("C:\\F\\f.txt", "f");
  machine.MakeFolder("C:\\B");
  machine.ui().ExpectFolder("C:\\A");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add Other Folders")); });
  machine.ui().ExpectFile("C:\\F\\f.txt");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add More Files")); });
  machine.ui().ExpectFolder("C:\\B");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add Other Folders")); });
  return page;
}

TEST(FrmTwoTree, UntickingTheAddedFoldersLeavesAFileAddedBetweenThemTicked) {
  TestMachine machine("xp");
  FrmTwo& page = PageWithAddedItems(machine);
  machine.Tick(page.tvwMain, "Add Other Folders", false);
  EXPECT_EQ(TickedPaths(page.tvwMain),
            (std::vector<std::string>{"Add More Files", "Add More Files\\C:\\F\\f.txt"}));
}

TEST(FrmTwoTree, UntickingTheLastAddedFolderUnticksItsRoot) {
  TestMachine machine("xp");
  FrmTwo& page = PageWithAddedItems(machine);
  const std::string question = "Remove the folder/file: [C:\\";
  machine.Expect(ui::Answer::kNo, question + "A] ?");
  machine.Tick(page.tvwMain, "Add Other Folders\\C:\\A", false);
  EXPECT_TRUE(NodeAt(page, "Add Other Folders")->Checked());
  machine.Expect(ui::Answer::kNo, question + "B] ?");
  machine.Tick(page.tvwMain, "Add Other Folders\\C:\\B", false);
  EXPECT_FALSE(NodeAt(page, "Add Other Folders")->Checked());
}

TEST(FrmTwoTree, QuickBackupsTickAllLeavesAddedFoldersAndFilesOut) {
  TestMachine machine("xp");
  FrmTwo& page = PageWithAddedItems(machine);
  machine.Tick(page.tvwMain, "Other Files\\My Documents");
  page.TickAll();
  for (const char* added : {"Add Other Folders", "Add Other Folders\\C:\\A", "Add More Files",
                            "Add More Files\\C:\\F\\f.txt"}) {
    EXPECT_FALSE(NodeAt(page, added)->Checked()) << added;
  }
  EXPECT_TRUE(NodeAt(page, "Other Files\\My Documents")->Checked());
  EXPECT_TRUE(NodeAt(page, "Other Files\\My Desktop Files")->Checked());
}

TEST(FrmTwoTree, DetailsShowCaptionAndRawKey) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal", "C:\\a.pst"}});
  FrmTwo& page = OpenPage(machine);
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Internet Explorer\\IESettings")); });
  EXPECT_EQ(page.frmfor.text.get(), "Item: IESettings");
  EXPECT_EQ(page.lblDesc.text.get(), "Location: IESettings");
  machine.Do([&] {
    page.tvwMain.UserClicks(
        NodeAt(page, "Microsoft Outlook\\Identities\\Outlook\\Account Emails-Files\\Personal"));
  });
  EXPECT_EQ(page.frmfor.text.get(), "Item: Personal");
  EXPECT_EQ(page.lblDesc.text.get(), "Location: C:\\a.pst");
}

TEST(FrmTwoTree, FocusFillsAndEmptiesTheDetails) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  page.tvwMain.Select(NodeAt(page, "Other Files"));
  page.tvwMain.on_got_focus();
  EXPECT_EQ(page.frmfor.text.get(), "Item: Other Files");
  EXPECT_FALSE(page.Label5.visible);
  page.tvwMain.Click();
  EXPECT_TRUE(page.Label5.visible);
  page.tvwMain.on_lost_focus();
  EXPECT_EQ(page.frmfor.text.get(), "");
  EXPECT_EQ(page.lblDesc.text.get(), "");
  EXPECT_FALSE(page.Label5.visible);
}

TEST(FrmTwoTree, ExpandingSelectsTheNodeAndOpensItsFolderPicture) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  FrmTwo& page = OpenPage(machine);
  ui::TreeNode* before = page.tvwMain.Selected();
  page.tvwMain.on_expand(NodeAt(page, "Internet Explorer"));
  page.tvwMain.on_collapse(NodeAt(page, "Microsoft Outlook\\Identities\\Outlook"));
  EXPECT_EQ(page.tvwMain.Selected(), before);
  EXPECT_EQ(NodeAt(page, "Internet Explorer")->selected_image, "");

  ui::TreeNode* other_mail = NodeAt(page, "Outlook Express\\Email Messages\\Other Mail Folders");
  page.tvwMain.on_expand(other_mail);
  EXPECT_EQ(page.tvwMain.Selected(), other_mail);
  EXPECT_EQ(other_mail->selected_image, "fo");
}

TEST(FrmTwoTree, ExpandingTheRootOfWindowsMailIsLikeAnyOtherNode) {
  TestMachine machine("vista");
  FrmTwo& page = OpenPage(machine);
  ui::TreeNode* root = NodeAt(page, "Windows Mail");
  page.tvwMain.on_expand(root);
  EXPECT_EQ(page.tvwMain.Selected(), root);
  EXPECT_EQ(root->selected_image, "fo");
}

TEST(FrmTwoTree, SpaceOnATickedNodeUnticksItAndIsUsedUp) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Outlook Express\\Email Messages");
  EXPECT_TRUE(page.tvwMain.on_key_down(kSpace, 0));
  EXPECT_FALSE(NodeAt(page, kInbox)->Checked());
  EXPECT_FALSE(NodeAt(page, "Outlook Express")->Checked());
}

TEST(FrmTwoTree, SpaceOnAnUntickedNodeIsLeftToTheTree) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  page.tvwMain.Select(NodeAt(page, "Internet Explorer"));
  EXPECT_FALSE(page.tvwMain.on_key_down(kSpace, 0));
  EXPECT_FALSE(NodeAt(page, "Internet Explorer")->Checked());
}

TEST(FrmTwoTree, SpaceOnAnAddRootOpensItsDialogAndIsUsedUp) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.MakeFolder("C:\\Work");
  machine.ui().ExpectFolder("C:\\Work");
  page.tvwMain.Select(NodeAt(page, "Add Other Folders"));
  EXPECT_TRUE(page.tvwMain.on_key_down(kSpace, 0));
  EXPECT_TRUE(NodeAt(page, "Add Other Folders\\C:\\Work")->Checked());
}

TEST(FrmTwoTree, HelpKeyOpensTheBackupTopic) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  EXPECT_TRUE(page.on_key_down(112, 0));
  EXPECT_FALSE(page.on_key_down(113, 0));
}

// Added folders and files ------------------------------------------------------------------------

class AddedItems : public testing::Test {
 protected:
  void SetUp() override {
    machine.MakeFolder("C:\\Work\\Plans");
    machine.WriteFile("C:\\Work\\list.txt", "one");
  }
  ui::TreeNode* Folders() { return NodeAt(page(), "Add Other Folders"); }
  ui::TreeNode* Files() { return NodeAt(page(), "Add More Files"); }
  FrmTwo& page() { return OpenPage(machine); }
  void ClickFolders(const std::string& answer) {
    machine.ui().ExpectFolder(answer);
    machine.Do([&] { page().tvwMain.UserClicks(Folders()); });
  }
  void ClickFiles(const std::string& answer) {
    machine.ui().ExpectFile(answer);
    machine.Do([&] { page().tvwMain.UserClicks(Files()); });
  }
  TestMachine machine{"xp"};
};

TEST_F(AddedItems, ClickOnTheFolderRootAddsAFolder) {
  ClickFolders("C:\\Work");
  ui::TreeNode* node = NodeAt(page(), "Add Other Folders\\C:\\Work");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->Key(), "C:\\Work");
  EXPECT_EQ(node->Text(), "C:\\Work");
  EXPECT_EQ(node->image, "of");
  EXPECT_EQ(node->tag, "N");
  EXPECT_TRUE(node->Checked());
  EXPECT_TRUE(Folders()->Checked());
  EXPECT_TRUE(Folders()->Expanded());
}

TEST_F(AddedItems, TickOfTheFolderRootOpensTheDialogAtOnce) {
  machine.ui().ExpectFolder("C:\\Work");
  machine.Tick(page().tvwMain, "Add Other Folders");
  EXPECT_TRUE(NodeAt(page(), "Add Other Folders\\C:\\Work")->Checked());
}

TEST_F(AddedItems, CancelledFolderDialogLeavesAnEmptyRootUnticked) {
  machine.ui().ExpectFolder("");
  machine.Tick(page().tvwMain, "Add Other Folders");
  EXPECT_FALSE(Folders()->Checked());
  ClickFolders("");
  EXPECT_FALSE(Folders()->Checked());
}

TEST_F(AddedItems, CancelledFolderDialogKeepsTheTickOfARootWithFolders) {
  ClickFolders("C:\\Work");
  ClickFolders("");
  EXPECT_TRUE(Folders()->Checked());
}

TEST_F(AddedItems, ShortcutIsRefused) {
  machine.Expect(ui::Answer::kOk, "Selected path is a shortcut and will not be included in backup");
  ClickFolders("C:\\Work\\list.txt");
  EXPECT_EQ(Folders()->Children(), 0);
  EXPECT_FALSE(Folders()->Checked());
}

TEST_F(AddedItems, AFolderWhoseEntriesCannotBeReadIsRefused) {
  machine.faults().files.DenyList("C:\\Work");
  machine.Expect(ui::Answer::kOk, "Selected path is a shortcut and will not be included in backup");
  ClickFolders("C:\\Work");
  EXPECT_EQ(Folders()->Children(), 0);
  EXPECT_FALSE(Folders()->Checked());
}

TEST_F(AddedItems, ADestinationWhoseEntriesCannotBeReadIsRefused) {
  machine.faults().files.DenyList("C:\\Work");
  const std::string before = page().txtpath.text;
  machine.ui().ExpectFolder("C:\\Work");
  machine.Expect(ui::Answer::kOk,
                 "You do not have sufficient permissions on the selected folder or drive");
  machine.Click(page().cmdselectfolder);
  EXPECT_EQ(page().txtpath.text.get(), before);
}

TEST_F(AddedItems, FolderAddedTwiceIsToldAndStaysTicked) {
  ClickFolders("C:\\Work");
  machine.Expect(ui::Answer::kOk, "Folder: [C:\\Work] already exists");
  ClickFolders("C:\\Work");
  EXPECT_EQ(Folders()->Children(), 1);
  EXPECT_TRUE(Folders()->Child()->Checked());
}

TEST_F(AddedItems, FolderOfAnotherProductIsToldToExist) {
  machine.MakeFolder(machine.Favorites());
  machine.Expect(ui::Answer::kOk, "Folder: [" + machine.Favorites() + "] already exists");
  ClickFolders(machine.Favorites());
  EXPECT_EQ(Folders()->Children(), 0);
  EXPECT_FALSE(Folders()->Checked());
}

TEST_F(AddedItems, ParentOfAnAddedFolderCanBeAddedToo) {
  ClickFolders("C:\\Work\\Plans");
  ClickFolders("C:\\Work");
  EXPECT_EQ(Folders()->Children(), 2);
}

TEST_F(AddedItems, ClickOnTheFileRootAddsAFile) {
  ClickFiles("C:\\Work\\list.txt");
  ui::TreeNode* node = NodeAt(page(), "Add More Files\\C:\\Work\\list.txt");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->Key(), "C:\\Work\\list.txt");
  EXPECT_EQ(node->image, "dc1");
  EXPECT_TRUE(node->Checked());
  EXPECT_TRUE(Files()->Checked());
}

TEST_F(AddedItems, FileAddedTwiceIsTold) {
  ClickFiles("C:\\Work\\list.txt");
  machine.Expect(ui::Answer::kOk, "File: [C:\\Work\\list.txt] already exists");
  ClickFiles("C:\\Work\\list.txt");
  EXPECT_EQ(Files()->Children(), 1);
}

TEST_F(AddedItems, CancelledFileDialogLeavesAnEmptyRootUnticked) {
  machine.ui().ExpectFile("");
  machine.Tick(page().tvwMain, "Add More Files");
  EXPECT_FALSE(Files()->Checked());
}

TEST_F(AddedItems, RootWithoutChildrenIsUntickedWhenTheMouseIsReleased) {
  page().tvwMain.Select(Files());
  Files()->SetChecked(true);
  page().tvwMain.on_mouse_up(0, 0);
  EXPECT_FALSE(Files()->Checked());
}

TEST_F(AddedItems, UntickedItemIsRemovedOnYes) {
  ClickFolders("C:\\Work");
  machine.Expect(ui::Answer::kYes, "Remove the folder/file: [C:\\Work] ?");
  machine.Tick(page().tvwMain, "Add Other Folders\\C:\\Work", false);
  EXPECT_EQ(Folders()->Children(), 0);
  EXPECT_FALSE(Folders()->Checked());
}

TEST_F(AddedItems, UntickedItemStaysOnNo) {
  ClickFiles("C:\\Work\\list.txt");
  machine.Expect(ui::Answer::kNo, "Remove the folder/file: [C:\\Work\\list.txt] ?");
  machine.Tick(page().tvwMain, "Add More Files\\C:\\Work\\list.txt", false);
  ASSERT_EQ(Files()->Children(), 1);
  EXPECT_FALSE(Files()->Child()->Checked());
  EXPECT_FALSE(Files()->Checked());
}

TEST_F(AddedItems, SpaceOnATickedItemAsksToo) {
  ClickFolders("C:\\Work");
  page().tvwMain.Select(Folders()->Child());
  machine.Expect(ui::Answer::kYes, "Remove the folder/file: [C:\\Work] ?");
  EXPECT_TRUE(page().tvwMain.on_key_down(kSpace, 0));
  EXPECT_EQ(Folders()->Children(), 0);
}

TEST_F(AddedItems, TickOnARootWithFoldersTicksThemAll) {
  ClickFolders("C:\\Work");
  machine.Expect(ui::Answer::kNo, "Remove the folder/file: [C:\\Work] ?");
  machine.Tick(page().tvwMain, "Add Other Folders\\C:\\Work", false);
  machine.ui().ExpectFolder("");
  machine.Tick(page().tvwMain, "Add Other Folders");
  EXPECT_TRUE(Folders()->Child()->Checked());
}

TEST_F(AddedItems, FolderDialogStartsFromTheDestination) {
  std::string title;
  machine.ui().dialog_handler = [&](const std::string& asked) {
    title = asked;
    return std::optional<std::string>("");
  };
  machine.Do([&] { page().tvwMain.UserClicks(Folders()); });
  EXPECT_EQ(title, "&Select a Folder for Backup:");
}

// The destination --------------------------------------------------------------------------------

class Destination : public testing::Test {
 protected:
  void Choose(TestMachine& machine, const std::string& folder) {
    machine.ui().ExpectFolder(folder);
    machine.Click(OpenPage(machine).cmdselectfolder);
  }
};

TEST_F(Destination, StartsWithTheDefaultBackupFolder) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(page.txtpath.text.get(), machine.session().gAppDataPath + "\\Backup");
  EXPECT_TRUE(machine.Exists(page.txtpath.text.get()));
}

TEST_F(Destination, ChosenFolderBecomesTheDefaultOfTheProgram) {
  TestMachine machine("xp");
  machine.MakeFolder("C:\\Safe");
  Choose(machine, "C:\\Safe");
  EXPECT_EQ(OpenPage(machine).txtpath.text.get(), "C:\\Safe");
  EXPECT_EQ(machine.app().Get<frmSettings>().txtBackup.text.get(), "C:\\Safe");
  EXPECT_EQ(
      machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "txtBackup"),
      "C:\\Safe");
  EXPECT_FALSE(machine.Exists("C:\\Safe\\QVL.txt"));
}

TEST_F(Destination, CancelledDialogChangesNothing) {
  TestMachine machine("xp");
  const std::string before = OpenPage(machine).txtpath.text;
  Choose(machine, "");
  EXPECT_EQ(OpenPage(machine).txtpath.text.get(), before);
}

TEST_F(Destination, RecycleBinIsRefusedInAnyCase) {
  TestMachine machine("xp");
  const std::string before = OpenPage(machine).txtpath.text;
  for (const char* folder : {"C:\\RECYCLED", "C:\\$recycle.bin\\x", "C:\\Recycle Bin"}) {
    machine.Expect(ui::Answer::kOk, "You cannot select Recycle Bin.");
    Choose(machine, folder);
  }
  EXPECT_EQ(OpenPage(machine).txtpath.text.get(), before);
}

TEST_F(Destination, DriveThatIsNotFixedIsRefused) {
  TestMachine machine("xp");
  machine.computer().SetDrive("E", DriveKind::kCdRom);
  machine.computer().SetDrive("F", DriveKind::kRemovable);
  for (const char* folder : {"E:\\", "F:\\Safe", "Q:\\None"}) {
    machine.Expect(ui::Answer::kOk, "Please select a fixed drive.");
    Choose(machine, folder);
  }
}

TEST_F(Destination, NetworkFolderIsNotTestedForAFixedDrive) {
  TestMachine machine("xp");
  machine.Expect(ui::Answer::kOk,
                 "You do not have sufficient permissions on the selected folder or drive");
  Choose(machine, "\\\\server\\none");
}

TEST_F(Destination, ProgramFilesAreRefusedOnVistaOnly) {
  TestMachine vista("vista");
  vista.MakeFolder("C:\\program files\\Safe");
  vista.Expect(ui::Answer::kOk, "You cannot select Program Files.");
  Choose(vista, "C:\\program files\\Safe");

  TestMachine older("xp");
  older.MakeFolder("C:\\Program Files\\Safe");
  Choose(older, "C:\\Program Files\\Safe");
  EXPECT_EQ(OpenPage(older).txtpath.text.get(), "C:\\Program Files\\Safe");
}

TEST_F(Destination, FolderThatCannotBeWrittenIsRefused) {
  TestMachine machine("xp");
  machine.Expect(ui::Answer::kOk,
                 "You do not have sufficient permissions on the selected folder or drive");
  Choose(machine, "C:\\Not there");
}

TEST_F(Destination, TypedFolderIsSavedAsTheDefault) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  page.txtpath.text = "C:\\Typed";
  EXPECT_EQ(machine.app().Get<frmSettings>().txtBackup.text.get(), "C:\\Typed");
}

// The look of the page
// -----------------------------------------------------------------------------

bool Overlap(const ui::Bounds& a, const ui::Bounds& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

TEST(FrmTwoLook, ControlsStandOnThePageAndDoNotOverlap) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  std::vector<ui::Control*> placed;
  for (ui::Control* control : page.controls()) {
    if (control == &page.LvW || control->container != nullptr) continue;
    const ui::Bounds& bounds = control->bounds;
    EXPECT_GT(bounds.width, 0) << control->name();
    EXPECT_GT(bounds.height, 0) << control->name();
    EXPECT_GE(bounds.left, 0) << control->name();
    EXPECT_LE(bounds.left + bounds.width, page.Width()) << control->name();
    EXPECT_LE(bounds.top + bounds.height, page.Height()) << control->name();
    for (const ui::Control* other : placed) {
      EXPECT_FALSE(Overlap(bounds, other->bounds)) << control->name() << " and " << other->name();
    }
    placed.push_back(control);
  }
  EXPECT_FALSE(page.LvW.visible);
}

}  // namespace
}  // namespace quorvale::discovery_test
