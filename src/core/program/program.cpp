#include "core/program/program.h"

#include "platform/ui/ui.h"

namespace quorvale {

Program::Program(Platform& platform)
    : platform_(platform),
      registry_(platform.registry, platform.system),
      files_(platform.files, [this] { Pump(); }),
      settings_(registry_, files_, session_),
      registry_editor_(platform.shell, platform.system, [this] { Pump(); }) {}

void Program::Pump() { platform_.ui.Pump(); }

void Program::End() {
  ended_ = true;
  platform_.ui.Quit();
}

}  // namespace quorvale
