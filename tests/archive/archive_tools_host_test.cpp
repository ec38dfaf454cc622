// Common zip tools read what the archive component writes, and the other way round.
#include <sys/stat.h>

#include "archive/host_folder.h"

namespace quorvale::zip_test {
namespace {

class ArchiveToolsTest : public HostFolderTest {
 protected:
  static Tree SampleTree() {
    return {
        {"empty/", ""},
        {"empty.dat", ""},
        {"one.dat", "x"},
        {"Sub/", ""},
        {"Sub/prose.txt", Prose(100'000)},
        {"Sub/noise.bin", Noise(50'000)},
        {"Sub/block.bin", Prose(1024 * 1024)},
        {"Sub/large.bin", Prose(700'000) + Noise(500'000)},
        {"Sub/large noise.bin", Noise(1'100'000)},
        {"Gr\xC3\xBC\xC3\x9F"
         "e \xE2\x82\xAC.txt",
         "umlauts"},
        {"\xE6\x97\xA5\xE6\x9C\xAC.txt", "outside the code page"},
    };
  }

  // Everything that unzip, 7z and Python say of an archive, and what unzip makes of it.
  void ExpectToolsAgree(const std::string& name, const Tree& tree, const std::string& password) {
    const std::string unzip_password = password.empty() ? "" : "-P '" + password + "' ";
    const std::string seven_password = password.empty() ? "" : " '-p" + password + "'";
    EXPECT_TRUE(Run("unzip -tq " + unzip_password + name));
    EXPECT_TRUE(Run("7z t -bd" + seven_password + " " + name));
    EXPECT_TRUE(Run("python3 -c \"import zipfile; z = zipfile.ZipFile('" + name +
                    "'); z.setpassword(b'" + password +
                    "' or None); assert z.testzip() is None; "
                    "assert len(z.namelist()) == " +
                    std::to_string(tree.size()) + "\""));
    std::filesystem::remove_all(Host("unzipped"));
    EXPECT_TRUE(Run("unzip -q " + unzip_password + name + " -d unzipped"));
    EXPECT_TRUE(ReadTree("unzipped") == tree);
  }

  // Test and Unzip of an archive that another tool made.
  void ExpectReads(const std::string& name, const Tree& tree, const std::string& password = "") {
    archive.archive_name = Machine(name);
    archive.files_to_process.clear();
    archive.password = password;
    EXPECT_EQ(archive.Test(), Result::kDone);
    std::filesystem::remove_all(Host("back"));
    archive.unzip_folder = Machine("back");
    EXPECT_EQ(archive.Unzip(), Result::kDone);
    EXPECT_TRUE(ReadTree("back") == tree);
    if (password.empty()) return;
    archive.password = password + "x";
    EXPECT_EQ(archive.Test(), Result::kWrongPassword);
    archive.password = "";
    EXPECT_EQ(archive.Test(), Result::kWrongPassword);
  }
};

TEST_F(ArchiveToolsTest, CommonToolsReadEveryLevel) {
  const Tree tree = SampleTree();
  WriteTree("tree", tree);
  for (const int level : {0, 1, 6, 9}) {
    SCOPED_TRACE(level);
    archive.level = level;
    ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
    ExpectToolsAgree("a.obk", tree, "");
  }
}

TEST_F(ArchiveToolsTest, CommonToolsReadEncryptedOnes) {
  const Tree tree = {{"Sub/", ""},
                     {"Sub/prose.txt", Prose(5'000)},
                     {"Sub/large.bin", Prose(900'000) + Noise(300'000)},
                     {"empty", ""}};
  WriteTree("tree", tree);
  archive.encrypt = true;
  archive.password = "s3cret pass";
  for (const int level : {0, 6}) {
    SCOPED_TRACE(level);
    archive.level = level;
    ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
    ExpectToolsAgree("a.obk", tree, "s3cret pass");
    EXPECT_FALSE(Run("unzip -tq -P wrong a.obk"));
  }
}

TEST_F(ArchiveToolsTest, CommonToolsReadAndJoinParts) {
  const Tree tree = SampleTree();
  WriteTree("tree", tree);
  archive.split_size = 600'000;
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  ASSERT_TRUE(std::filesystem::exists(Host("a.z03")));
  // These tools go by the extension of the last part.
  std::filesystem::rename(Host("a.obk"), Host("a.zip"));
  EXPECT_TRUE(Run("7z t -bd a.zip"));
  EXPECT_TRUE(Run("zip -s 0 a.zip --out joined.zip"));
  ExpectToolsAgree("joined.zip", tree, "");
}

TEST_F(ArchiveToolsTest, CommonToolsReadAnEncryptedArchiveInParts) {
  const Tree tree = {{"a", Noise(700'000)}, {"b", Prose(2'000'000)}, {"c", Noise(500)}};
  WriteTree("tree", tree);
  archive.split_size = 300'000;
  archive.encrypt = true;
  archive.password = "p";
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  std::filesystem::rename(Host("a.obk"), Host("a.zip"));
  EXPECT_TRUE(Run("7z t -bd -pp a.zip"));
}

TEST_F(ArchiveToolsTest, CommonToolsReadAnArchiveFromWhichAFileWasLeftOut) {
  const Tree tree = {{"a", Prose(1'000)}, {"bad", Noise(3'000'000)}, {"c", Prose(2'000'000)}};
  WriteTree("tree", tree);
  faulty_files.FailReadsAfter(Machine("tree/bad"), 2'500'000);
  ASSERT_EQ(ZipTree("tree", tree), Result::kWarnings);
  ExpectToolsAgree("a.obk", {{"a", tree.at("a")}, {"c", tree.at("c")}}, "");
}

TEST_F(ArchiveToolsTest, CommonToolsReadAnArchiveWithASinglePart) {
  const Tree tree = {{"a", Prose(1'000)}, {"b", Prose(2'000'000)}};
  WriteTree("tree", tree);
  archive.split_size = 600'000'000;
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  ExpectToolsAgree("a.obk", tree, "");
}

TEST_F(ArchiveToolsTest, OtherToolsSeeTheTimes) {
  const Tree tree = {{"a", "a"}};
  WriteTree("tree", tree);
  ASSERT_TRUE(Run("touch -d '2011-07-05 10:20:31 UTC' tree/a"));
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  ASSERT_TRUE(Run("TZ=Asia/Tokyo unzip -q a.obk -d unzipped"));
  EXPECT_EQ(OutputOf("stat -c %Y unzipped/a"), "1309861231\n");
  ASSERT_TRUE(Run("7z x -bd -oseven a.obk"));
  EXPECT_EQ(OutputOf("stat -c %Y seven/a"), "1309861231\n");
}

TEST_F(ArchiveToolsTest, ReadsWhatZipWritesAtEveryLevel) {
  const Tree tree = SampleTree();
  WriteTree("tree", tree);
  for (const std::string options :
       {"-0", "-1", "-2", "-3", "-4", "-5", "-6", "-7", "-8", "-9", "-fd", "-fz", "-Z store -X"}) {
    SCOPED_TRACE(options);
    ASSERT_TRUE(Run("cd tree && rm -f ../b.zip && zip -q -r " + options + " ../b.zip ."));
    ExpectReads("b.zip", tree);
  }
}

TEST_F(ArchiveToolsTest, ReadsWhatZipStreams) {
  const Tree tree = SampleTree();
  WriteTree("tree", tree);
  ASSERT_TRUE(Run("cd tree && zip -q -r - . | cat > ../b.zip"));
  ExpectReads("b.zip", tree);
  ASSERT_TRUE(Run("cd tree && zip -q -r -0 - . | cat > ../b.zip"));
  ExpectReads("b.zip", tree);
  ASSERT_TRUE(Run("cd tree && cat Sub/large.bin | zip -q - - | cat > ../b.zip"));
  ExpectReads("b.zip", {{"-", tree.at("Sub/large.bin")}});
}

TEST_F(ArchiveToolsTest, ReadsWhatZipEncrypts) {
  const Tree tree = {{"Sub/", ""},
                     {"Sub/prose.txt", Prose(5'000)},
                     {"Sub/large.bin", Noise(4'300'000)},
                     {"z", Prose(2'000)}};
  WriteTree("tree", tree);
  for (const std::string options : {"-0", "-1", "-6", "-9", "-fd"}) {
    SCOPED_TRACE(options);
    ASSERT_TRUE(Run("cd tree && rm -f ../b.zip && zip -q -P secret -r " + options + " ../b.zip ."));
    ExpectReads("b.zip", tree, "secret");
  }
  for (const std::string options : {"-0", "-6"}) {
    SCOPED_TRACE("streamed " + options);
    ASSERT_TRUE(Run("cd tree && zip -q -P secret -r " + options + " - . | cat > ../b.zip"));
    ExpectReads("b.zip", tree, "secret");
  }
}

TEST_F(ArchiveToolsTest, ReadsWhatZipSplits) {
  const Tree tree = {{"a", Noise(300'000)}, {"b", Prose(900'000)}};
  WriteTree("tree", tree);
  ASSERT_TRUE(Run("cd tree && zip -q -s 64k -r ../b.zip ."));
  ASSERT_TRUE(std::filesystem::exists(Host("b.z02")));
  ExpectReads("b.zip", tree);
}

TEST_F(ArchiveToolsTest, ReadsWhatSevenZipWrites) {
  const Tree tree = {{"Sub/", ""},
                     {"Sub/prose.txt", Prose(50'000)},
                     {"noise", Noise(30'000)},
                     {"empty", ""},
                     {"\xE6\x97\xA5\xE6\x9C\xAC.txt", "outside the code page"}};
  WriteTree("tree", tree);
  for (const int level : {0, 1, 3, 5, 7, 9}) {
    SCOPED_TRACE(level);
    ASSERT_TRUE(Run("cd tree && rm -f ../b.zip && 7z a -bd -tzip -mx=" + std::to_string(level) +
                    " ../b.zip ."));
    ExpectReads("b.zip", tree);
  }
}

TEST_F(ArchiveToolsTest, ReadsALargeEntryOfSevenZip) {
  const Tree tree = {{"large", Prose(300'000) + Noise(4'200'000)}};
  WriteTree("tree", tree);
  ASSERT_TRUE(Run("cd tree && 7z a -bd -tzip -mx=1 ../b.zip ."));
  ExpectReads("b.zip", tree);
}

TEST_F(ArchiveToolsTest, ReadsWhatSevenZipEncrypts) {
  const Tree tree = {{"Sub/", ""}, {"Sub/prose.txt", Prose(5'000)}, {"empty", ""}, {"tiny", "x"}};
  WriteTree("tree", tree);
  for (const std::string method : {"ZipCrypto", "AES128", "AES192", "AES256"}) {
    for (const int level : {0, 5}) {
      SCOPED_TRACE(method + " " + std::to_string(level));
      ASSERT_TRUE(Run("cd tree && rm -f ../b.zip && 7z a -bd -tzip -psecret -mem=" + method +
                      " -mx=" + std::to_string(level) + " ../b.zip ."));
      ExpectReads("b.zip", tree, "secret");
    }
  }
}

TEST_F(ArchiveToolsTest, ReadsALargeEntryThatSevenZipEncrypts) {
  const Tree tree = {{"large", Prose(300'000) + Noise(4'200'000)}, {"small", "x"}};
  WriteTree("tree", tree);
  for (const std::string options : {"-mem=ZipCrypto -mx=0", "-mem=AES256 -mx=1"}) {
    SCOPED_TRACE(options);
    ASSERT_TRUE(
        Run("cd tree && rm -f ../b.zip && 7z a -bd -tzip -psecret " + options + " ../b.zip ."));
    ExpectReads("b.zip", tree, "secret");
  }
}

TEST_F(ArchiveToolsTest, DamageOfAnAesEntryIsToldFromAWrongPassword) {
  const Tree tree = {{"a", Noise(5'000)}, {"b", Noise(4'300'000)}};
  WriteTree("tree", tree);
  for (const std::string name : {"a", "b"}) {
    ASSERT_TRUE(Run(
        "cd tree && rm -f ../b.zip && 7z a -bd -tzip -psecret -mem=AES256 -mx=0 ../b.zip " + name));
    std::fstream file(Host("b.zip"), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(2000);
    file.put('\0').put('\0').put('\0');
    file.close();
    archive.archive_name = Machine("b.zip");
    archive.password = "secret";
    EXPECT_EQ(archive.Test(), Result::kFailed);
    archive.password = "wrong";
    EXPECT_EQ(archive.Test(), Result::kWrongPassword);
  }
}

TEST_F(ArchiveToolsTest, ReadsWhatPythonWrites) {
  const Tree tree = SampleTree();
  WriteTree("tree", tree);
  const std::string script = R"(
import os, sys, zipfile
class Stream:                      # cannot be moved in: sizes follow the data
    def __init__(self, name): self.f = open(name, 'wb')
    def write(self, data): return self.f.write(data)
    def flush(self): self.f.flush()
method, level, streamed, zip64 = sys.argv[1], int(sys.argv[2]), sys.argv[3] == '1', sys.argv[4] == '1'
out = Stream('b.zip') if streamed else 'b.zip'
kind = zipfile.ZIP_STORED if method == 'store' else zipfile.ZIP_DEFLATED
with zipfile.ZipFile(out, 'w', kind, compresslevel=level) as z:
    for folder, folders, names in os.walk('tree'):
        for name in folders:
            z.write(os.path.join(folder, name), os.path.relpath(os.path.join(folder, name), 'tree'))
        for name in names:
            path = os.path.join(folder, name)
            info = zipfile.ZipInfo.from_file(path, os.path.relpath(path, 'tree'))
            info.compress_type = kind
            with z.open(info, 'w', force_zip64=zip64) as entry, open(path, 'rb') as source:
                entry.write(source.read())
    z.comment = b'made by a script'
)";
  std::ofstream(Host("write.py")) << script;
  // Every level, with the sizes in front of the data and behind it in turn.
  std::vector<std::string> kinds = {"store 0 0 0", "store 0 1 1", "deflate 6 0 1"};
  for (int level = 0; level <= 9; ++level) {
    kinds.push_back("deflate " + std::to_string(level) + (level % 2 == 0 ? " 0 0" : " 1 0"));
  }
  for (const std::string& arguments : kinds) {
    SCOPED_TRACE(arguments);
    ASSERT_TRUE(Run("python3 write.py " + arguments));
    ExpectReads("b.zip", tree);
  }
}

TEST_F(ArchiveToolsTest, AMethodThatIsNotKnownIsAFailure) {
  const Tree tree = {{"a", Prose(5'000)}};
  WriteTree("tree", tree);
  ASSERT_TRUE(Run("cd tree && 7z a -bd -tzip -mm=LZMA ../b.zip ."));
  archive.archive_name = Machine("b.zip");
  std::string reason;
  archive.on_warning = [&](const zip::Warning& warning) { reason = warning.text; };
  EXPECT_EQ(archive.Test(), Result::kFailed);
  EXPECT_EQ(reason, "it is packed in a way that is not known here");
}

TEST_F(ArchiveToolsTest, ALinkInAnArchiveBecomesAPlainFile) {
  WriteTree("tree", {{"a", "content"}});
  ASSERT_TRUE(Run("cd tree && ln -s ../../outside link && zip -q -y -r ../b.zip ."));
  archive.archive_name = Machine("b.zip");
  archive.unzip_folder = Machine("back");
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(Host("back/link"))));
}

}  // namespace
}  // namespace quorvale::zip_test
