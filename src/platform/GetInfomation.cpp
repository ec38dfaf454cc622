#include "platform/GetInfomation.h"

#include "base/paths.h"

namespace quorvale {

std::string GetInfomation::TempDir() const {
  const std::string folder = system_.Environment("temp");
  return folder.empty() ? "" : WithBackslash(folder);
}

}  // namespace quorvale
