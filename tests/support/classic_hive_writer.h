// Writes hives of Windows 95, 98 and ME, for tests: no tool makes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvale::test {

struct ClassicKey {
  struct Value {
    std::string name;
    std::uint32_t type = 0;
    std::string data;
  };
  std::string name;
  std::vector<Value> values;
  std::vector<ClassicKey> subkeys;
};

// The bytes of a hive; names and texts are in the code page already.
std::string ClassicHiveBytes(const ClassicKey& root);

}  // namespace quorvale::test
