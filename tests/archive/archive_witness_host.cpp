// Every archive that the tests in memory made is checked by unzip, 7z and Python when all tests are
// through.
#include "archive/archive_witness.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "support/temp_folder.h"

namespace quorvale::zip_test {
namespace {

// Looks at the archives of the folder it runs in; "N.password" holds the password of "N.zip".
constexpr char kScript[] = R"(
import glob, os, subprocess, sys, zipfile
bad = 0
archives = sorted(glob.glob('*.zip'))
for name in archives:
    with open(name[:-4] + '.password', 'rb') as file:
        password = file.read()
    given = [b'-P', password] if password else []
    commands = [[b'unzip', b'-tqq'] + given + [name.encode()],
                [b'7z', b't', b'-bd'] + [b'-p' + password] * bool(password) + [name.encode()]]
    for command in commands:
        result = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True)
        if result.returncode != 0:
            bad += 1
            print(command, result.returncode, result.stdout[-400:], result.stderr[-400:])
    try:
        with zipfile.ZipFile(name) as archive:
            archive.setpassword(password or None)
            for entry in archive.infolist():
                with archive.open(entry) as file:
                    while file.read(1 << 20):
                        pass
    except Exception as error:
        bad += 1
        print('python', name, repr(error))
print(len(archives), 'archives')
sys.exit(1 if bad else 0)
)";

class ToolsOfTheHost : public testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TempFolder>();
    ASSERT_NE(folder_->path(), "");
    TheArchiveWitness() = [this](const std::string& bytes, const std::string& password) {
      // Many tests make the same one again.
      const std::string stem =
          *folder_ / std::to_string(std::hash<std::string>()(bytes + "\n" + password));
      if (std::filesystem::exists(stem + ".zip")) return;
      std::ofstream(stem + ".zip", std::ios::binary) << bytes;
      std::ofstream(stem + ".password", std::ios::binary) << password;
    };
  }

  void TearDown() override {
    TheArchiveWitness() = nullptr;
    std::ofstream(*folder_ / "check.py") << kScript;
    const std::string command = "cd '" + folder_->path() + "' && python3 check.py >output 2>&1";
    const int status = std::system(command.c_str());
    std::stringstream output;
    output << std::ifstream(*folder_ / "output").rdbuf();
    folder_.reset();
    EXPECT_EQ(status, 0) << output.str();
    std::printf("unzip, 7z and Python have looked at %s", output.str().c_str());
  }

 private:
  std::unique_ptr<TempFolder> folder_;
};

const testing::Environment* const kToolsOfTheHost =
    testing::AddGlobalTestEnvironment(new ToolsOfTheHost);

}  // namespace
}  // namespace quorvale::zip_test
