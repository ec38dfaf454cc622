#include "core/version.h"

namespace quorvale {

const char kProgramVersion[] = QUORVALE_VERSION;

}  // namespace quorvale
