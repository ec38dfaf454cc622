// Any bytes as a hive of Windows NT: nothing crashes or hangs. The header's checksum is made to fit
// by the reader itself.
#include <cstdint>
#include <string>

#include "platform/host/disk/nt_hive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  std::string problem;
  quorvale::host::NtHiveWritten(bytes);
  const auto hive = quorvale::host::ReadNtHive(bytes, {}, &problem);
  std::vector<quorvale::RegistryStatement> statements;
  if (hive) quorvale::host::AppendStatements(hive->root, "HKEY_CURRENT_USER", &statements);
  return 0;
}
