#include "platform/APIFile.h"

#include <gtest/gtest.h>

#include "support/memory_platform.h"

namespace quorvale {
namespace {

using Operations = std::vector<std::string>;

class APIFileTest : public testing::Test {
 protected:
  // What the operation raises; "" for nothing.
  template <class Operation>
  std::string Raised(const Operation& operation) {
    try {
      operation();
    } catch (const RaisedError& raised) {
      EXPECT_EQ(static_cast<std::uint32_t>(raised.error.number), 0x800403E9u);
      EXPECT_EQ(raised.error.source, "FileOperations::CopyFile");
      return raised.error.description;
    }
    return "";
  }

  MemoryFiles files_;
  FileToolkit toolkit_{files_, [] {}};
  MemoryShell shell_;
  APIFile file_{shell_, toolkit_};
};

TEST_F(APIFileTest, ANewOneRenamesOnCollisionAndNothingElse) {
  EXPECT_FALSE(file_.SimpleProgress);
  EXPECT_FALSE(file_.Silent);
  EXPECT_TRUE(file_.RenameOnCollision);
  EXPECT_FALSE(file_.NoConfirmMakeDir);
  EXPECT_FALSE(file_.NoConfirm);
}

TEST_F(APIFileTest, EachPropertyIsItsBitOfTheFlags) {
  struct Case {
    bool APIFile::*property;
    int all, deletion;
  };
  for (const Case& c : {Case{&APIFile::Silent, 4, 4}, Case{&APIFile::RenameOnCollision, 8, 0},
                        Case{&APIFile::NoConfirm, 16, 16}, Case{&APIFile::NoConfirmMakeDir, 512, 0},
                        Case{&APIFile::SimpleProgress, 256, 256}}) {
    APIFile file(shell_, toolkit_);
    file.RenameOnCollision = false;
    file.*c.property = true;
    files_.Put("C:\\a");
    shell_.operations.clear();
    file.CopyFile("C:\\a", "C:\\b");
    file.MoveFile("C:\\a", "C:\\b");
    file.DeleteFile("C:\\a");
    file.RenameFile("C:\\a", "C:\\b");
    const std::string all = std::to_string(c.all);
    EXPECT_EQ(shell_.operations,
              (Operations{"2|C:\\a|C:\\b|" + all, "1|C:\\a|C:\\b|" + all,
                          "3|C:\\a||" + std::to_string(c.deletion), "4|C:\\a|C:\\b|" + all}));
  }
}

TEST_F(APIFileTest, AMissingFileIsNotDeletedRenamedOrCopied) {
  EXPECT_EQ(Raised([&] { file_.DeleteFile("C:\\no"); }),
            "APIFileOperations.DeleteFile cannot execute because the file to be deleted (C:\\no) "
            "cannot be found.");
  EXPECT_EQ(Raised([&] { file_.RenameFile("C:\\no", "C:\\x"); }),
            "APIFileOperations.CopyFile cannot execute because the file to be renamed (C:\\no) "
            "cannot be found.");
  EXPECT_EQ(Raised([&] { file_.CopyFile("C:\\no", "C:\\x"); }),
            "APIFileOperations.CopyFile cannot execute because the file to be copied (C:\\no) "
            "cannot be found.");
  EXPECT_TRUE(shell_.operations.empty());
}

TEST_F(APIFileTest, ACopyTakesThePlaceOfAnOlderFile) {
  files_.Put("C:\\a", "new");
  files_.Put("C:\\b", "old");
  shell_.on_operation = [&](FileOperation operation, const std::string& source,
                            const std::string& target) {
    if (operation == FileOperation::kDelete) files_.Remove(source);
    if (operation == FileOperation::kCopy) {
      EXPECT_FALSE(toolkit_.FileExists(target));
      files_.Put(target, files_.Bytes(source));
    }
    return true;
  };
  EXPECT_TRUE(file_.CopyFile("C:\\a", "C:\\b"));
  EXPECT_EQ(files_.Bytes("C:\\b"), "new");
  EXPECT_EQ(files_.List("C:").size(), 2u);
}

TEST_F(APIFileTest, TheOlderFileIsBackWhenACopyFails) {
  files_.Put("C:\\a", "new");
  files_.Put("C:\\b", "old");
  shell_.on_operation = [&](FileOperation, const std::string&, const std::string& target) {
    files_.Put(target, "ha");  // half of it
    return false;
  };
  EXPECT_FALSE(file_.CopyFile("C:\\a", "C:\\b"));
  EXPECT_EQ(files_.Bytes("C:\\b"), "old");
  EXPECT_EQ(files_.List("C:").size(), 2u);
}

TEST_F(APIFileTest, AFileCopiedOntoItselfStays) {
  files_.Put("C:\\a", "mine");
  EXPECT_TRUE(file_.CopyFile("C:\\a", "C:\\A"));
  EXPECT_EQ(files_.Bytes("C:\\a"), "mine");
  EXPECT_TRUE(shell_.operations.empty());
}

}  // namespace
}  // namespace quorvale
