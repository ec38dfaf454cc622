#include "core/main/stored_boxes.h"

#include "core/program/ModGlobal.h"

namespace quorvale {

void SaveBox(Program& program, const std::string& key, const ui::CheckBox& box) {
  program.registry().SaveRegString(RegistryRoot::kCurrentUser, key, box.name(),
                                   std::to_string(box.value));
}

void ApplyShortcutBox(Program& program, const std::string& key, const ui::CheckBox& box,
                      int folder) {
  SetShortcut(program, folder, box.value == 1);
  SaveBox(program, key, box);
}

}  // namespace quorvale
