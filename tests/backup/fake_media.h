// An FTP client and a disc writer that do as a test says and tell what they were asked.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/disc_writer.h"
#include "platform/files.h"
#include "platform/ftp_client.h"
#include "platform/platform.h"

namespace quorvale::backup_test {

class FakeFtp : public FtpClient {
 public:
  FtpState State() override { return state; }
  void Listen(FtpEvents events) override { events_ = std::move(events); }
  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password) override {
    calls.push_back(host + ":" + std::to_string(port) + " " + user + "/" + password);
    if (during_connect) during_connect();
    if (!connects || !KeepGoing()) return false;
    state = FtpState::kConnected;
    return true;
  }
  std::string CurrentFolder() override {
    calls.push_back("pwd");
    return current_folder;
  }
  bool ChangeFolder(const std::string& folder) override {
    calls.push_back("cd " + folder);
    Reply(folder_reply);
    return has_folder;
  }
  bool Send(const std::string& path, const std::string& remote_name) override {
    calls.push_back("send " + path + " as " + remote_name);
    if (refuses && refuses(remote_name)) {
      Reply(send_reply);
      return false;
    }
    for (int percent : {0, 50, 100}) {
      if (events_.progress) events_.progress(percent);
      if (during_send) during_send(percent);
      if (!KeepGoing()) return Break();
    }
    Reply(send_reply);
    return sends || Break();
  }
  bool Rename(const std::string& name, const std::string& new_name) override {
    calls.push_back("rename " + name + " to " + new_name);
    const bool renames = !on_rename || on_rename(name, new_name);
    if (!renames) Reply(rename_reply);
    return renames && state == FtpState::kConnected;
  }
  bool Remove(const std::string& name) override {
    calls.push_back("remove " + name);
    return removes && state == FtpState::kConnected;
  }
  void Disconnect() override {
    calls.push_back("bye");
    state = FtpState::kIdle;
  }

  bool KeepGoing() const { return !events_.keep_going || events_.keep_going(); }
  bool has_listener() const { return static_cast<bool>(events_.keep_going); }

  FtpState state = FtpState::kIdle;
  bool connects = true;
  bool has_folder = true;
  bool sends = true;  // else it breaks off after the last byte
  bool removes = true;
  std::string current_folder = "/home";
  std::string folder_reply, send_reply, rename_reply;
  // Null: no name is refused.
  std::function<bool(const std::string& name)> refuses;
  std::function<bool(const std::string& name, const std::string& new_name)> on_rename;
  std::function<void()> during_connect;
  std::function<void(int percent)> during_send;
  std::vector<std::string> calls;

 private:
  bool Break() {
    state = FtpState::kIdle;
    return false;
  }
  void Reply(const std::string& line) {
    if (!line.empty() && events_.reply) events_.reply(line);
  }
  FtpEvents events_;
};

class FakeDiscs : public DiscWriter {
 public:
  bool Initialise() override {
    ++initialised;
    return initialises;
  }
  std::vector<DiscDrive> Drives() override { return drives; }
  bool Open(int index) override {
    opened = index;
    return opens;
  }
  bool MediumLoaded() override { return medium; }
  std::uint64_t FreeBytes() override { return free_bytes; }
  bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) override {
    burnt.push_back(path + " as " + name);
    if (!starts) return false;
    events.file_added();
    Look();
    events.write_started();
    Look();
    for (std::uint64_t done : {0u, 25u, 50u}) {
      events.progress(done, 50);
      Look();
      if (!events.keep_going()) return false;
    }
    return true;
  }
  void Eject() override {
    ++ejected;
    if (on_eject) on_eject();
  }

  bool initialises = true;
  bool opens = true;
  bool medium = true;
  bool starts = true;
  int opened = -1;
  int initialised = 0;
  int ejected = 0;
  std::uint64_t free_bytes = 700ull * 1048576;
  std::vector<DiscDrive> drives = {{0, false, "Reader", "Maker", "1.0"},
                                   {3, true, "E", "Writer", "2.1"}};
  std::function<void()> on_eject;
  std::function<void()> look;  // after each event of a burn
  std::vector<std::string> burnt;

 private:
  void Look() {
    if (look) look();
  }
};

// A computer's platform with these in place of its own.
inline Platform WithMedia(const Platform& own, FtpClient& ftp, DiscWriter& discs) {
  return {own.registry, own.files, own.shell,     own.system,  own.processes, own.services,
          ftp,          discs,     own.scheduler, own.threads, own.ui};
}

}  // namespace quorvale::backup_test
