// Working the windows without a mouse: the order of the controls, default buttons, access keys.
#pragma once

#include <string>
#include <vector>

#include "platform/windows/control_window.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {

// True if the message was a key that moves the focus, presses a button or was swallowed by a page.
bool HandleKey(WindowsUi& ui, const MSG& message);

// The character behind the "&" of a caption, as a capital; 0 if there is none.
int AccessKey(const std::string& caption);

// The controls of a form that the keyboard can reach now, in their order; of the options of one
// group only the chosen one.
std::vector<ControlWindow*> TabOrder(const FormView& view);

}  // namespace quorvale::windows
