#include "core/program/version.h"

namespace quorvale {

const char kProgramVersion[] = QUORVALE_VERSION;

}  // namespace quorvale
