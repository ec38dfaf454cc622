#include "ftp_bench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#ifdef _WIN32
#include "platform/windows/files.h"
#include "platform/windows/ftp_client.h"
#else
#include <unistd.h>

#include "platform/host/files.h"
#include "platform/host/ftp_client.h"
#include "platform/host/machine_folder.h"
#endif

namespace quorvale::ftp_test {
namespace {

#ifdef _WIN32
class BindingBench : public Bench {
 public:
  explicit BindingBench(FtpLimits limits) : ftp_(files_, limits) {}
  FtpClient& ftp() override { return ftp_; }

 private:
  windows::WindowsFiles files_;
  windows::WindowsFtpClient ftp_;
};
#else
class BindingBench : public Bench {
 public:
  explicit BindingBench(FtpLimits limits) : files_(host::MachineFolder()), ftp_(files_, limits) {}
  FtpClient& ftp() override { return ftp_; }

 private:
  host::HostFiles files_;
  host::HostFtpClient ftp_;
};
#endif

std::string Variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value != nullptr) return value;
  ADD_FAILURE() << "no " << name << ": start me by tests/support/ftp_servers/with_ftp_servers.py";
  return "";
}

// How this program's own library opens a file of the host.
std::string Openable(const std::string& host_path) {
#ifdef _WIN32
  return MachinePath(host_path);
#else
  return host_path;
#endif
}

}  // namespace

std::unique_ptr<Bench> MakeBench(FtpLimits limits) {
  return std::make_unique<BindingBench>(limits);
}

int PortOf(const std::string& server) {
  return std::atoi(Variable("FTP_" + server + "_PORT").c_str());
}

std::string HostPathOf(const std::string& server, const std::string& path) {
  return Variable("FTP_" + server + "_ROOT") + path;
}

std::string MachinePath(const std::string& host_path) {
  std::string path = "Z:" + host_path;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

LocalFile::LocalFile(std::uint64_t size) {
  static int count = 0;
  host_path_ = HostPathOf("ODD", "/../local_" + std::to_string(++count) + ".bin");
  std::ofstream file(Openable(host_path_), std::ios::binary);
  std::vector<std::uint32_t> block(16384);
  std::uint32_t state = 2463534242U + static_cast<std::uint32_t>(count);
  while (size > 0) {
    for (std::uint32_t& word : block) {
      state ^= state << 13;
      state ^= state >> 17;
      state ^= state << 5;
      word = state;
    }
    const std::uint64_t part = std::min<std::uint64_t>(size, block.size() * 4);
    file.write(reinterpret_cast<const char*>(block.data()), static_cast<std::streamsize>(part));
    size -= part;
  }
  EXPECT_TRUE(file.flush().good()) << host_path_;
}

LocalFile::~LocalFile() { std::remove(Openable(host_path_).c_str()); }

std::string Difference(const std::string& host_path, const std::string& other_host_path) {
  std::ifstream a(Openable(host_path), std::ios::binary);
  std::ifstream b(Openable(other_host_path), std::ios::binary);
  if (!a || !b) return (a ? other_host_path : host_path) + " is missing";
  std::vector<char> part_a(1 << 20), part_b(1 << 20);
  for (std::uint64_t at = 0;; at += part_a.size()) {
    a.read(part_a.data(), static_cast<std::streamsize>(part_a.size()));
    b.read(part_b.data(), static_cast<std::streamsize>(part_b.size()));
    if (a.gcount() != b.gcount()) return "they end at different places";
    if (std::memcmp(part_a.data(), part_b.data(), static_cast<std::size_t>(a.gcount())) != 0) {
      return "they differ in the megabyte from " + std::to_string(at);
    }
    if (a.gcount() < static_cast<std::streamsize>(part_a.size())) return "";
  }
}

bool WriteFile(const std::string& host_path, const std::string& bytes) {
  std::ofstream file(Openable(host_path), std::ios::binary);
  file << bytes;
  return file.flush().good();
}

}  // namespace quorvale::ftp_test
