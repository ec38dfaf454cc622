// Check boxes that keep their value in the registry, each under its own name.
#pragma once

#include <string>

#include "core/program/program.h"
#include "platform/ui/controls.h"

namespace quorvale {

// Keeps a box's value under a key of the current user.
void SaveBox(Program& program, const std::string& key, const ui::CheckBox& box);
// The same for a box that stands for the program's link in a folder (a number of special_folder):
// the link is made or removed first.
void ApplyShortcutBox(Program& program, const std::string& key, const ui::CheckBox& box,
                      int folder);

}  // namespace quorvale
