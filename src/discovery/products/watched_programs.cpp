#include "discovery/products/watched_programs.h"

#include <stdexcept>

#include "base/text.h"
#include "discovery/products/product_table.h"

namespace quorvale {

std::vector<WatchedProgram> WatchedPrograms() {
  std::vector<WatchedProgram> programs;
  for (const Product& product : Products()) {
    if (product.watched_image == nullptr) continue;
    programs.push_back(
        {product.caption, product.watched_image, product.backup_request, product.restore_request});
  }
  return programs;
}

std::uint32_t FindProcessId(const std::vector<ProcessInfo>& processes, const std::string& image) {
  for (const ProcessInfo& process : processes) {
    if (EqualsNoCase(process.image, image)) return process.id;
  }
  return 0;
}

bool ServiceIsRunning(Services& services, const std::string& service_name) {
  return EqualsNoCase(services.State(service_name), "RUNNING");
}

bool ControlServiceByName(Services& services, const std::string& service_name,
                          ServiceAction action) {
  switch (action) {
    case ServiceAction::kStart:
      return services.Start(service_name);
    case ServiceAction::kStop:
    case ServiceAction::kPause:
    case ServiceAction::kContinue:
      return services.Control(service_name, static_cast<int>(action));
  }
  throw std::invalid_argument("no such service action");
}

}  // namespace quorvale
