// An archive over files in memory, for the tests of the archive component.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/archive_witness.h"
#include "archive/directory_reader.h"
#include "archive/test_data.h"
#include "support/faulty_platform.h"
#include "support/memory_platform.h"
#include "support/system_threads.h"

namespace quorvale::zip_test {

using zip::Archive;
using zip::BeforeFile;
using zip::Entry;
using zip::Result;
using zip::UnzippedFile;
using zip::Warning;
using zip::WarningReason;

inline constexpr FileTime kModified = 128'000'000'123'456'789;

class ArchiveFixture : public testing::Test {
 protected:
  ArchiveFixture() : archive(faulty_files, system, system_threads) {
    files.PutFolder("C:\\Out");
    archive.archive_name = "C:\\Out\\a.obk";
    archive.unzip_folder = "C:\\Back";
    archive.worker_threads = 2;
    // Whatever a test makes is shown to the common tools too.
    files.after_replace = [this](const std::string& path) {
      if (path != archive.archive_name || archive.split_size != 0) return;
      if (archive.current_operation() != zip::Operation::kZipping) return;
      WitnessArchive(files.Bytes(path), archive.encrypt ? archive.password : "");
    };
    archive.on_warning = [this](const Warning& warning) {
      warnings.push_back(warning.name);
      reasons.push_back(warning.text);
      kinds.push_back(warning.reason);
    };
    archive.on_unzipped = [this](const UnzippedFile& file) {
      unzipped.push_back(file.destination);
    };
  }

  void AddSource(const std::string& path, const std::string& bytes, std::uint32_t attributes = 32) {
    files.Put(path, bytes, attributes, kModified);
    archive.files_to_process.push_back(path);
  }

  // Stores one file of this content under each of the names, whatever they are.
  Result ZipNames(const std::vector<std::string>& names) {
    archive.files_to_process.clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
      AddSource("C:\\src" + std::to_string(i), "content of " + names[i]);
    }
    std::size_t next = 0;
    archive.on_before_file = [&](BeforeFile& file) { file.entry_name = names[next++]; };
    const Result result = archive.Zip();
    archive.on_before_file = nullptr;
    archive.files_to_process.clear();
    return result;
  }

  Result UnzipAll() {
    archive.files_to_process.clear();
    return archive.Unzip();
  }

  Result TestAll() {
    archive.files_to_process.clear();
    return archive.Test();
  }

  std::vector<Entry> ListAll() {
    archive.files_to_process.clear();
    std::vector<Entry> entries;
    EXPECT_EQ(archive.List(&entries), Result::kDone);
    return entries;
  }

  std::vector<std::string> ListNames() {
    std::vector<std::string> names;
    for (const Entry& entry : ListAll()) names.push_back(entry.name);
    return names;
  }

  // The directory as the reader sees it, with what a listing does not show.
  std::vector<zip::Record> Records() {
    zip::Directory directory;
    std::string missing;
    EXPECT_TRUE(zip::ReadDirectory(files, system, archive.archive_name, &directory, &missing));
    return directory.records;
  }

  // The files that stand below a folder, without that folder's own path.
  std::vector<std::string> Below(const std::string& folder) {
    std::vector<std::string> below;
    for (const std::string& path : files.AllFiles()) {
      if (path.rfind(folder + "\\", 0) == 0) below.push_back(path.substr(folder.size() + 1));
    }
    std::sort(below.begin(), below.end());
    return below;
  }

  MemoryFiles files;
  CallCount calls;
  FaultyFiles faulty_files{files, calls};
  MemorySystem system;
  SystemThreads system_threads;
  Archive archive;
  std::vector<std::string> warnings;
  std::vector<std::string> reasons;
  std::vector<WarningReason> kinds;
  std::vector<std::string> unzipped;  // destinations
};

using Names = std::vector<std::string>;
using Reasons = std::vector<WarningReason>;

}  // namespace quorvale::zip_test
