// A process that is killed while it makes an archive leaves the old one or the new one, whole.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "archive/host_folder.h"

namespace quorvale::zip_test {
namespace {

class ArchiveKillTest : public HostFolderTest {
 protected:
  // Zips the tree in a process of its own, and kills that after so many microseconds. True if it
  // ended before.
  bool ZipAndKill(const Tree& tree, std::uint64_t microseconds) {
    const pid_t child = fork();
    if (child == 0) {
      const Result result = ZipTree("tree", tree);
      _exit(result == Result::kDone ? 0 : 1);
    }
    usleep(static_cast<useconds_t>(microseconds));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status);
  }

  std::string BytesOf(const std::string& name) const {
    std::stringstream bytes;
    bytes << std::ifstream(Host(name), std::ios::binary).rdbuf();
    return bytes.str();
  }
};

TEST_F(ArchiveKillTest, TwoHundredKillsLeaveAWholeArchiveEachTime) {
  const Tree tree = {{"a", Prose(600'000)}, {"b", Noise(700'000)}, {"c", Prose(1'500'000)}};
  WriteTree("tree", tree);
  // How long an undisturbed run takes.
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  const std::string new_bytes = BytesOf("a.obk");
  ASSERT_EQ(ZipTree("tree", {{"a", tree.at("a")}}), Result::kDone);
  const std::string old_bytes = BytesOf("a.obk");
  Random random(11);
  int kills = 0;
  int finished = 0;
  while (kills < 200) {
    const std::uint64_t moment = random.Below(static_cast<std::uint64_t>(whole.count()) * 12 / 10);
    if (ZipAndKill(tree, moment)) {
      ++finished;
    } else {
      ++kills;
    }
    const std::string now = BytesOf("a.obk");
    ASSERT_TRUE(now == old_bytes || now == new_bytes) << moment;
    if (now == new_bytes) {
      std::ofstream(Host("a.obk"), std::ios::binary | std::ios::trunc) << old_bytes;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      ASSERT_TRUE(name == "a.obk" || !name.ends_with(".obk")) << name;
    }
  }
  RecordProperty("finished", finished);
  // A whole run afterwards leaves nothing of the killed ones.
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  EXPECT_TRUE(BytesOf("a.obk") == new_bytes);
  EXPECT_FALSE(std::filesystem::exists(Host("a.obk.tmp")));
}

}  // namespace
}  // namespace quorvale::zip_test
