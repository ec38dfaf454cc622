// What both schedule pages say about a time that cannot be read.
#pragma once

#include <string>

#include "core/pages/application.h"

namespace quorvale {

// `text` is what stands in the time box.
void RefuseTime(Application& app, const std::string& text);

}  // namespace quorvale
