// Keeps what the tests in memory make, for other tools to check when all tests are through.
#pragma once

#include <functional>
#include <string>

namespace quorvale::zip_test {

using ArchiveWitness = std::function<void(const std::string& bytes, const std::string& password)>;

// Who is told of each archive; nobody where there are no other tools.
inline ArchiveWitness& TheArchiveWitness() {
  static ArchiveWitness witness;
  return witness;
}

// An archive of one part was made; `password` is "" if it is not encrypted.
inline void WitnessArchive(const std::string& bytes, const std::string& password) {
  if (TheArchiveWitness()) TheArchiveWitness()(bytes, password);
}

}  // namespace quorvale::zip_test
