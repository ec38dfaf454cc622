// What the tests of the FTP client work with: the binding's client, the servers that
// support/ftp_servers/with_ftp_servers.py started, and files of the host.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/ftp_client.h"

namespace quorvale::ftp_test {

// The computer's files and its FTP client.
class Bench {
 public:
  virtual ~Bench() = default;
  virtual FtpClient& ftp() = 0;
};
std::unique_ptr<Bench> MakeBench(FtpLimits limits);

// "PYFTPDLIB" and the like; fails the test if the server was not started.
int PortOf(const std::string& server);
// A path on a server, as the host's file system has it.
std::string HostPathOf(const std::string& server, const std::string& path);
// The name that the program knows a file of the host by.
std::string MachinePath(const std::string& host_path);

// A file of the host with contents that repeat nowhere. Removed with the object.
class LocalFile {
 public:
  explicit LocalFile(std::uint64_t size);
  ~LocalFile();
  LocalFile(const LocalFile&) = delete;
  LocalFile& operator=(const LocalFile&) = delete;
  const std::string& host_path() const { return host_path_; }
  std::string path() const { return MachinePath(host_path_); }

 private:
  std::string host_path_;
};

// "" if both files of the host have the same bytes, or what is different.
std::string Difference(const std::string& host_path, const std::string& other_host_path);
bool WriteFile(const std::string& host_path, const std::string& bytes);

}  // namespace quorvale::ftp_test
