#include "platform/host/folder_cache.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "machine_fixture.h"

namespace quorvale::host {
namespace {

// Puts a mark on the listing that the cache keeps. A folder that is read anew has none.
class FolderCacheTest : public testing::Test {
 protected:
  FolderCacheTest() {
    WriteHost(folder_ / "Mail.dbx", "mail");
    usleep(30000);  // later than the tick of the clock in which it was made
    cache_.Listing(folder_.path())->attributes["mark"] = 1;
  }
  bool IsKept() { return cache_.Listing(folder_.path())->attributes.count("mark") != 0; }

  TempFolder folder_;
  FolderCache cache_;
};

TEST_F(FolderCacheTest, AFolderThatStaysAsItIsIsReadOnce) {
  EXPECT_EQ(cache_.Find(folder_.path(), "MAIL.DBX")->name, "Mail.dbx");
  EXPECT_FALSE(cache_.Find(folder_.path(), "Missing"));
  EXPECT_TRUE(IsKept());
}

TEST_F(FolderCacheTest, WhatThisProgramChangesIsNotReadAgain) {
  WriteHost(folder_ / "new", "");
  cache_.Added(folder_.path(), {"new", false, false});
  EXPECT_TRUE(IsKept());
  EXPECT_TRUE(cache_.Find(folder_.path(), "NEW"));
  unlink((folder_ / "new").c_str());
  cache_.Removed(folder_.path(), "new");
  EXPECT_TRUE(IsKept());
  EXPECT_FALSE(cache_.Find(folder_.path(), "NEW"));
}

TEST_F(FolderCacheTest, WhatAnotherProgramChangesIsReadAgain) {
  WriteHost(folder_ / "new", "");
  EXPECT_TRUE(cache_.Find(folder_.path(), "new"));
  EXPECT_FALSE(IsKept());
}

TEST_F(FolderCacheTest, AFolderThatIsGoneHasNoListing) {
  EXPECT_EQ(cache_.Listing(folder_ / "none"), nullptr);
  EXPECT_EQ(cache_.Known(folder_ / "none"), nullptr);
}

}  // namespace
}  // namespace quorvale::host
