// Any bytes as a hive of Windows 95, 98 or ME: nothing crashes or hangs.
#include <cstdint>
#include <string>

#include "platform/host/disk/classic_hive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto code_page = quorvale::host::CodePage::Open(1252);
  const std::string bytes(data, data + size);
  std::string problem;
  quorvale::host::ReadClassicHive(bytes, *code_page, {}, &problem);
  return 0;
}
