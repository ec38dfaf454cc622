// One run of the program without its windows: the computer it runs on, the session, and the tools
// that stand on the computer. Everything below the pages takes a Program&, and so cannot reach a
// form or show a box.
#pragma once

#include <string>

#include "core/program/account.h"
#include "core/program/program_settings.h"
#include "core/program/session.h"
#include "platform/file_toolkit.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/registry_editor.h"

namespace quorvale {

inline constexpr char kApplicationTitle[] = "Quorvale";

class Program {
 public:
  explicit Program(Platform& platform);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Platform& platform() const { return platform_; }
  Session& session() { return session_; }
  const Session& session() const { return session_; }
  ProgramSettings& settings() { return settings_; }
  // Of the run at work, or of the last one.
  Account& account() { return account_; }
  Registry& registry() { return registry_; }
  FileToolkit& files() { return files_; }
  RegistryEditor& registry_editor() { return registry_editor_; }

  // The whole argument text of this process.
  std::string CommandLine() const { return platform_.system.CommandLine(); }
  // Handles all messages that wait. A run may have ended when it returns.
  void Pump();

  // Ends the run: the message loop stops after the present message.
  void End();
  bool Ended() const { return ended_; }

 private:
  Platform& platform_;
  Session session_;
  Registry registry_;
  FileToolkit files_;
  ProgramSettings settings_;
  Account account_;
  RegistryEditor registry_editor_;
  bool ended_ = false;
};

}  // namespace quorvale
