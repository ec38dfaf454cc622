// The registry editor of a computer in memory: does what the runs of "regedit.exe" on its shell ask
// for, when they end. As a program of its own it meets the faults of the computer like any other:
// give it the files and the registry of the FaultyPlatform.
#pragma once

#include <string>

#include "support/memory_platform.h"

namespace quorvale {

class MemoryRegistryEditor {
 public:
  // All must live as long as `shell` is used.
  MemoryRegistryEditor(MemoryShell& shell, Files& files, RegistryStore& registry,
                       SystemInfo& system);

 private:
  void Run(const std::string& command);
  void Export(const std::string& file, const std::string& key);
  void Import(const std::string& file);

  Files& files_;
  RegistryStore& registry_;
  SystemInfo& system_;
};

}  // namespace quorvale
