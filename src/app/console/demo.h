// What a first visitor sees: a backup of one sample machine, its restore onto another one, and a
// verdict.
#pragma once

#include <string>

#include "app/console/console.h"

namespace quorvale {

// `folder` takes the two machines and the backup; "" makes a temporary folder, of which only the
// backup stays.
ExitStatus RunDemo(const std::string& folder, Terminal& terminal);

}  // namespace quorvale
