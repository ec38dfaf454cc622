// Runs one operation of the archive component on real files, for measurements and for tests that
// compare it with other tools.
//
//   archive_driver zip ARCHIVE [-LEVEL] [-p PASSWORD] [-s PART_SIZE] [-t THREADS] PATH...
//   archive_driver unzip ARCHIVE [-p PASSWORD] [-t THREADS] FOLDER
//   archive_driver test|list ARCHIVE [-p PASSWORD] [-t THREADS]
//   archive_driver limit FILE [-LEVEL]
//
// "limit" has the compressing library work through a file in blocks, with one thread and nothing
// else: no archive is made faster than that divided by the number of processors.
//
// Folders are stored with all that is in them, under their names from the working folder. Prints
// the result's number and the seconds; exit status 0 for a good result.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/block_compressor.h"
#include "platform/host/code_page.h"
#include "platform/host/files.h"
#include "platform/host/machine_folder.h"
#include "platform/host/system_info.h"
#include "platform/host/threads.h"

namespace {

using quorvale::host::MachinePathOf;
using quorvale::zip::Archive;
using quorvale::zip::BeforeFile;
using quorvale::zip::BlockCompressor;
using quorvale::zip::Bytes;
using quorvale::zip::Entry;
using quorvale::zip::kBlockSize;
using quorvale::zip::Result;

int Usage() {
  std::fprintf(stderr,
               "usage: archive_driver zip|unzip|test|list|limit FILE [-0..-9] [-p PASSWORD] "
               "[-s PART_SIZE] [-t THREADS] [PATH...]\n");
  return 2;
}

void AddSource(const std::filesystem::directory_entry& entry, std::vector<std::string>* sources) {
  const std::string path = MachinePathOf(std::filesystem::absolute(entry.path()).string());
  if (entry.is_symlink()) return;
  if (entry.is_directory()) {
    sources->push_back(path + "\\");
  } else if (entry.is_regular_file()) {
    sources->push_back(path);
  }
}

std::vector<std::string> FindSources(const std::vector<std::string>& paths) {
  std::vector<std::string> sources;
  for (const std::string& path : paths) {
    const std::filesystem::directory_entry top(path);
    AddSource(top, &sources);
    if (!top.is_directory()) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
      AddSource(entry, &sources);
    }
  }
  return sources;
}

Result List(Archive& archive) {
  std::vector<Entry> entries;
  const Result result = archive.List(&entries);
  std::uint64_t bytes = 0;
  for (const Entry& entry : entries) bytes += entry.size;
  std::printf("%zu entries, %llu bytes\n", entries.size(), static_cast<unsigned long long>(bytes));
  return result;
}

// The most memory that this program held at any time. A parent's question for it would count what
// the parent itself held before it started this program.
void PrintMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) std::printf("%s\n", line.c_str());
  }
}

// Reads whole blocks first, so that only the processor time of compressing is counted.
Result Limit(const std::string& name, int level) {
  std::FILE* file = std::fopen(name.c_str(), "rb");
  if (file == nullptr) return Result::kFailed;
  BlockCompressor compressor(level);
  double seconds = 0;
  std::uint64_t bytes = 0;
  Bytes block(kBlockSize);
  while ((block.size = std::fread(block.data.get(), 1, kBlockSize, file)) > 0) {
    const std::clock_t start = std::clock();
    compressor.CompressWhole(block);
    seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    bytes += block.size;
  }
  std::fclose(file);
  std::printf("compressing alone: %.3f s for %llu bytes\n", seconds,
              static_cast<unsigned long long>(bytes));
  return Result::kDone;
}

}  // namespace

int main(int count, char** words) {
  if (count < 3) return Usage();
  const std::string operation = words[1];
  quorvale::host::MachineFolder machine;
  quorvale::host::HostFiles files(machine);
  const auto code_page = quorvale::host::CodePage::Open(1252);
  if (code_page == nullptr) return 1;
  quorvale::host::HostSystemInfo system(machine, *code_page);
  quorvale::host::HostThreads threads;
  Archive archive(files, system, threads);
  archive.archive_name = MachinePathOf(words[2]);
  archive.on_warning = [](const std::string& name, const std::string& reason) {
    std::fprintf(stderr, "%s: %s\n", name.c_str(), reason.c_str());
  };

  std::vector<std::string> paths;
  for (int i = 3; i < count; ++i) {
    const std::string word = words[i];
    if (word.size() == 2 && word[0] == '-' && word[1] >= '0' && word[1] <= '9') {
      archive.level = word[1] - '0';
    } else if (word == "-p" && i + 1 < count) {
      archive.encrypt = true;
      archive.password = words[++i];
    } else if (word == "-s" && i + 1 < count) {
      archive.split_size = std::strtoull(words[++i], nullptr, 10);
    } else if (word == "-t" && i + 1 < count) {
      archive.worker_threads = std::atoi(words[++i]);
    } else {
      paths.push_back(word);
    }
  }

  const auto start = std::chrono::steady_clock::now();
  Result result = Result::kFailed;
  if (operation == "zip") {
    const std::string here =
        MachinePathOf(std::filesystem::current_path().string()).substr(3) + "\\";
    archive.on_before_file = [&](BeforeFile& file) {
      if (file.entry_name.rfind(here, 0) == 0) file.entry_name.erase(0, here.size());
    };
    archive.files_to_process = FindSources(paths);
    result = archive.Zip();
  } else if (operation == "unzip" && paths.size() == 1) {
    archive.unzip_folder = MachinePathOf(paths.front());
    result = archive.Unzip();
  } else if (operation == "test") {
    result = archive.Test();
  } else if (operation == "list") {
    result = List(archive);
  } else if (operation == "limit") {
    result = Limit(words[2], archive.level);
  } else {
    return Usage();
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("result %d, %.3f s\n", static_cast<int>(result), seconds.count());
  PrintMemory();
  return result == Result::kDone || result == Result::kWarnings ? 0 : 1;
}
