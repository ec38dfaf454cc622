// The address books of a user whose name has a dot: the program that opens them is given a name
// with
// "_" in its place, which may be another book's.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "restore/round_trip_machine.h"

namespace quorvale::restore_test {
namespace {

class AddressBooks : public testing::Test {
 protected:
  AddressBooks() {
    for (Machine* machine : {&a_, &b_}) MakeFolder(*machine);
    // A backup of mail items takes the accounts too.
    RegistryStore& registry = a_.computer->platform().registry;
    const std::string account = "Software\\Microsoft\\Internet Account Manager\\Accounts\\1";
    registry.CreateKey(RegistryRoot::kCurrentUser, account);
    registry.SetValue(RegistryRoot::kCurrentUser, account, "Account Name", registry_type::kString,
                      std::string("Mail") + '\0');
  }

  static void MakeFolder(Machine& machine) {
    FileToolkit(machine.computer->platform().files, [] {}).MakeFolderChain(Folder(machine));
  }
  static std::string Folder(Machine& machine) {
    return machine.layout.app_data + "\\Microsoft\\Address Book";
  }
  void Write(Machine& machine, const std::string& name, const std::string& text) {
    FileToolkit files(machine.computer->platform().files, [] {});
    EXPECT_EQ(files.WriteWhole(Folder(machine) + "\\" + name, text), FileStatus::kOk);
  }
  // Each book's content behind its name, by name.
  std::vector<std::string> Books(Machine& machine) {
    FileToolkit files(machine.computer->platform().files, [] {});
    std::vector<std::string> books;
    for (const FileInfo& info : files.files().List(Folder(machine))) {
      books.push_back(info.name + ": " +
                      files.ReadWhole(Folder(machine) + "\\" + info.name).value_or("unreadable"));
    }
    std::sort(books.begin(), books.end());
    return books;
  }
  std::string BackUp() {
    return a_.BackUp({"Outlook Express\\Account Settings", "Outlook Express\\Address Book"});
  }

  Machine a_{"xp", "bert.b", "{AAAAAAAA-7D44-4B8E-9A61-0C55E2D7B901}", false};
  Machine b_{"xp", "bert.b", "{BBBBBBBB-7D44-4B8E-9A61-0C55E2D7B901}", false};
};

using Lines = std::vector<std::string>;

TEST_F(AddressBooks, TwoThatWouldGetOneNameBothComeBack) {
  Write(a_, "bert.b.wab", "own");
  Write(a_, "bert_b.wab", "another's");
  b_.Restore(BackUp(), {});
  EXPECT_EQ(Books(b_), (Lines{"bert_b.wab: own", "bert_b_1.wab: another's"}));
}

TEST_F(AddressBooks, OneThatAlreadyLiesThereIsKeptBesideUnderAFreeName) {
  Write(a_, "bert.b.wab", "own");
  Write(b_, "bert.b.wab", "own, older");
  Write(b_, "bert_b.wab", "living");
  Write(b_, "bert_b_1.wab", "living too");
  b_.Restore(BackUp(), {});
  EXPECT_EQ(Books(b_),
            (Lines{"bert_b.wab: own", "bert_b_1.wab: living too", "bert_b_2.wab: living"}));
}

TEST_F(AddressBooks, ThoseOfTheBackupAndThoseOfTheComputerAreAllThereAfterwards) {
  Write(a_, "bert.b.wab", "own");
  Write(a_, "bert_b.wab", "another's");
  Write(b_, "bert_b.wab", "living");
  b_.Restore(BackUp(), {});
  EXPECT_EQ(Books(b_),
            (Lines{"bert_b.wab: own", "bert_b_1.wab: another's", "bert_b_2.wab: living"}));
}

TEST_F(AddressBooks, ASecondRestoreLeavesNoCopyOfTheFirst) {
  Write(a_, "bert.b.wab", "own");
  const std::string archive = BackUp();
  for (int i = 0; i < 2; ++i) {
    b_.Restore(archive, {});
    EXPECT_EQ(Books(b_), Lines{"bert_b.wab: own"});
  }
}

TEST_F(AddressBooks, ABookOfADotlessUserIsReplaced) {
  Machine c("xp", "Clara", "{CCCCCCCC-7D44-4B8E-9A61-0C55E2D7B901}", false);
  MakeFolder(c);
  Write(a_, "bert.b.wab", "own");
  Write(a_, "bert_b.wab", "another's");
  Write(c, "Clara.wab", "older");
  c.Restore(BackUp(), {});
  EXPECT_EQ(Books(c), (Lines{"Clara.wab: own", "bert_b.wab: another's"}));
}

}  // namespace
}  // namespace quorvale::restore_test
