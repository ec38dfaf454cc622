// A real drive that fills while an archive of 10 MiB is written.
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "archive/host_folder.h"

namespace quorvale::zip_test {
namespace {

constexpr std::uint64_t kArchiveSize = 10 * 1024 * 1024;
constexpr std::uint64_t kStep = 64 * 1024;

// A file system of its own where the test may mount one; else a drive whose free bytes are counted
// by the machine.
class ArchiveFullDiskTest : public HostFolderTest {
 protected:
  ArchiveFullDiskTest() {
    std::filesystem::create_directories(Host("disk"));
    mounted_ = mount("none", Host("disk").c_str(), "tmpfs", 0, "size=14m") == 0;
    if (!mounted_) files.SetDrive('D', DriveKind::kFixed, Host("disk"));
    RecordProperty("mounted", mounted_ ? "yes" : "no");
  }
  ~ArchiveFullDiskTest() override {
    if (mounted_) umount2(Host("disk").c_str(), MNT_DETACH);
  }

  std::string OnDisk(const std::string& name) const {
    return mounted_ ? Machine("disk/" + name) : "D:\\" + name;
  }

  // Leaves so many bytes free.
  void LeaveFree(std::uint64_t bytes) {
    if (!mounted_) {
      files.SetFreeBytes('D', bytes);
      return;
    }
    std::filesystem::remove(Host("disk/filler"));
    struct statvfs info {};
    ASSERT_EQ(statvfs(Host("disk").c_str(), &info), 0);
    const std::uint64_t free_now = static_cast<std::uint64_t>(info.f_bavail) * info.f_frsize;
    ASSERT_GE(free_now, bytes);
    std::ofstream(Host("disk/filler")) << std::string(free_now - bytes, 'x');
  }

  std::vector<std::string> OnDiskNow() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Host("disk"))) {
      const std::string name = entry.path().filename().string();
      if (name != "filler") names.push_back(name);
    }
    return names;
  }

 private:
  bool mounted_ = false;
};

TEST_F(ArchiveFullDiskTest, FillsAtEverySixtyFourKilobytes) {
  const Tree tree = {{"a", Noise(3'000'000, 1)},
                     {"b", Noise(500'000, 2)},
                     {"c", Noise(kArchiveSize - 3'500'000, 3)}};
  WriteTree("tree", tree);
  archive.archive_name = OnDisk("a.obk");
  archive.level = 0;
  for (const bool replaces : {false, true}) {
    int refused = 0;
    for (std::uint64_t room = 0;; room += kStep) {
      LeaveFree(room);
      const Result result = ZipTree("tree", tree);
      if (result == Result::kDone) {
        EXPECT_GE(room, kArchiveSize);
        EXPECT_EQ(archive.Test(), Result::kDone);
        break;
      }
      ASSERT_EQ(result, replaces ? Result::kNoTemporarySpace : Result::kNoSpace) << room;
      ASSERT_EQ(OnDiskNow(),
                replaces ? std::vector<std::string>{"a.obk"} : std::vector<std::string>());
      ++refused;
    }
    EXPECT_GE(refused, static_cast<int>(kArchiveSize / kStep));
    // The second time there is a small old archive, which stays whole.
    std::filesystem::remove(Host("disk/filler"));
    files.SetFreeBytes('D', std::nullopt);
    ASSERT_EQ(ZipTree("tree", {{"b", tree.at("b")}}), Result::kDone);
  }
}

TEST_F(ArchiveFullDiskTest, ARestoreOntoAFullDriveLeavesTheOldFile) {
  const Tree tree = {{"a", Noise(6'000'000)}};
  WriteTree("tree", tree);
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  archive.unzip_folder = OnDisk("back");
  std::filesystem::create_directories(Host("disk/back"));
  std::ofstream(Host("disk/back/a")) << "the old one";
  for (const std::uint64_t room : {0u, 65'536u, 3'000'000u, 5'900'000u}) {
    LeaveFree(room);
    ASSERT_EQ(archive.Unzip(), Result::kNoSpace) << room;
    EXPECT_EQ(ReadTree("disk/back"), (Tree{{"a", "the old one"}}));
  }
  LeaveFree(6'100'000);
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_TRUE(ReadTree("disk/back") == tree);
}

}  // namespace
}  // namespace quorvale::zip_test
