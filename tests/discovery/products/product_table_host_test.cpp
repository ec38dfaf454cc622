// Each row of the table leads to what its product does.
#include "discovery/products/product_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "backup/format/archive_layout.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ImgExplore.h"
#include "discovery/products/outlook_places.h"
#include "discovery/products/watched_programs.h"
#include "discovery/seed.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale::discovery_test {
namespace {

// A tree that stands on no page.
struct LooseTree {
  explicit LooseTree(TestMachine& machine) : form(machine.ui(), "Loose") {}
  ui::Form form;
  ui::TreeView tree{form, "tree"};

  std::vector<std::string> Roots() const {
    std::vector<std::string> roots;
    for (int index = 1; index <= tree.Count(); ++index) {
      const ui::TreeNode* node = tree.Node(index);
      if (node->Parent() == nullptr) roots.push_back(node->Key());
    }
    return roots;
  }
};

TEST(ProductTable, RowsStandAtTheirIds) {
  ASSERT_EQ(7u, Products().size());
  for (size_t i = 0; i < Products().size(); ++i) {
    EXPECT_EQ(static_cast<size_t>(Products()[i].id), i);
    EXPECT_EQ(&ProductOf(Products()[i].id), &Products()[i]);
  }
}

TEST(ProductTable, NoTwoProductsShareACaptionOrAnElement) {
  std::set<std::string> captions, elements;
  for (const Product& product : Products()) {
    captions.insert(product.caption);
    elements.insert(product.settings_element);
  }
  EXPECT_EQ(captions.size(), Products().size());
  EXPECT_EQ(elements.size(), Products().size());
}

TEST(ProductTable, EveryPictureIsInThePictureList) {
  for (const Product& product : Products()) {
    for (const char* picture : {product.picture, product.restore_picture}) {
      EXPECT_NE(std::find(kImgExplore.begin(), kImgExplore.end(), picture), kImgExplore.end())
          << product.caption << " " << picture;
    }
  }
}

TEST(ProductTable, AFillMakesItsOwnRoot) {
  for (const Product& product : Products()) {
    if (product.fill == nullptr) continue;
    TestMachine machine("xp");
    SeedOutlook(machine);
    OpenPage(machine);
    LooseTree loose(machine);
    product.fill(machine.app(), loose.tree);
    ASSERT_GT(loose.tree.Count(), 0) << product.caption;
    const ui::TreeNode* root = loose.tree.Node(1);
    EXPECT_EQ(root->Key(), product.caption);
    EXPECT_EQ(root->Text(), product.caption);
    EXPECT_EQ(root->image, product.picture);
  }
}

TEST(ProductTable, TheTreeOfAnOldSystemOffersOutlookExpress) {
  TestMachine machine("xp");
  OpenPage(machine);
  LooseTree loose(machine);
  FillProducts(machine.app(), loose.tree);
  EXPECT_EQ(loose.Roots(),
            (std::vector<std::string>{"Outlook Express", "Internet Explorer", "Other Files",
                                      "Add Other Folders", "Add More Files"}));
}

TEST(ProductTable, TheTreeOfVistaOffersWindowsMailInItsPlace) {
  TestMachine machine("vista");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  OpenPage(machine);
  LooseTree loose(machine);
  FillProducts(machine.app(), loose.tree);
  EXPECT_EQ(loose.Roots(),
            (std::vector<std::string>{"Windows Mail", "Microsoft Outlook", "Internet Explorer",
                                      "Other Files", "Add Other Folders", "Add More Files"}));
}

TEST(ProductTable, AnItemBelongsToTheProductOfItsRoot) {
  for (const Product& product : Products()) {
    EXPECT_EQ(ProductOfItem(PathPrefix(product.id) + "x"), &product);
    EXPECT_EQ(ProductOfItem(product.caption), nullptr) << "a root is no item";
    EXPECT_EQ(ProductOfItem(std::string(product.caption) + " 2\\x"), nullptr);
  }
  EXPECT_EQ(ProductOfItem(""), nullptr);
  EXPECT_EQ(ProductOfItem("x\\Outlook Express\\x"), nullptr);
}

// Every product's items have a place in the archive; added ones stand under the captions of the
// restore tree.
TEST(ProductTable, EveryProductHasEntryNames) {
  const struct {
    ProductId id;
    const char* below;
    const char* key;
    const char* entry;
  } cases[] = {
      {ProductId::kOutlookExpress, "Email Messages\\a.dbx", "C:\\m\\a.dbx",
       "Outlook Express\\Email Messages\\a.dbx"},
      {ProductId::kMicrosoftOutlook, "Signatures\\a.htm", "C:\\s\\a.htm",
       "Microsoft Outlook\\Signatures\\a.htm"},
      {ProductId::kInternetExplorer, "Favorites", "C:\\f", "Internet Explorer\\Favorites"},
      {ProductId::kWindowsMail, "Contacts", "C:\\u\\Contacts", "Windows Mail\\Contacts"},
      {ProductId::kOtherFiles, "My Documents", "C:\\d\\", "Other Files\\My Documents"},
      {ProductId::kAddedFolders, "D:\\Work", "D:\\Work", "Added Other Folders\\Work"},
      {ProductId::kAddedFiles, "D:\\a.txt", "D:\\a.txt", "Added More Files\\a.txt"},
  };
  ASSERT_EQ(std::size(cases), Products().size());
  for (const auto& one : cases) {
    EXPECT_EQ(EntryOfItem(PathPrefix(one.id) + one.below, one.key, kWindows2000).name, one.entry);
  }
}

TEST(ProductTable, AWatchedProgramNamesARootOfTheTable) {
  for (const WatchedProgram& watched : WatchedPrograms()) {
    EXPECT_NE(ProductOfItem(std::string(watched.root) + "\\x"), nullptr) << watched.root;
    EXPECT_NE(watched.backup_message, nullptr);
    EXPECT_NE(watched.restore_message, nullptr);
  }
}

TEST(OutlookPlaces, EveryGroupHasAFolderBelowTheProfile) {
  for (const OutlookFileGroup& group : kOutlookFileGroups) {
    const std::string folder = OutlookGroupFolder(group.caption, "C:\\u", "Outlook.Application.11");
    EXPECT_TRUE(folder.starts_with("C:\\u\\")) << group.caption << " " << folder;
    EXPECT_FALSE(folder.ends_with("\\"));
  }
  EXPECT_EQ(OutlookGroupFolder("Identities", "C:\\u", "Outlook.Application.11"), "");
}

TEST(OutlookPlaces, TheDictionariesFolderFollowsTheVersion) {
  const auto folder = [](const std::string& version) {
    return OutlookGroupFolder("Dictionary", "C:\\u", version);
  };
  EXPECT_EQ(folder("Outlook.Application.9"), "C:\\u\\Application Data\\Microsoft\\Proof");
  EXPECT_EQ(folder("Outlook.Application.11"), "C:\\u\\Application Data\\Microsoft\\Proof");
  EXPECT_EQ(folder("Outlook.Application.12"), "C:\\u\\Application Data\\Microsoft\\UProof");
  EXPECT_EQ(folder("Outlook.Application.14"), "C:\\u\\Application Data\\Microsoft");
}

}  // namespace
}  // namespace quorvale::discovery_test
