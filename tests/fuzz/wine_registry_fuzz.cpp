// Any bytes as the registry of a Wine prefix: nothing crashes, and what was understood is within
// the bounds of a registry.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/host/disk/wine_registry.h"

namespace {

void CheckKey(const quorvale::host::HiveKey& key, int depth) {
  if (depth > quorvale::host::HiveBounds::kDepth) std::abort();
  for (const auto& value : key.values) {
    if (value.name.size() > quorvale::host::HiveBounds::kNameBytes) std::abort();
  }
  for (const auto& sub : key.subkeys) {
    if (!quorvale::host::IsHiveKeyName(sub.name)) std::abort();
    CheckKey(sub, depth + 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  std::string problem;
  quorvale::host::WineRegistryBase(bytes);
  const auto hive = quorvale::host::ReadWineRegistry(bytes, {}, &problem);
  if (hive) CheckKey(hive->root, 0);
  return 0;
}
