// Any bytes as a registry editor's text: nothing crashes, and what was understood comes back
// unchanged when it is written in the newer variant and read again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "platform/registry_text.h"

namespace {

using quorvale::RegistryStatement;

std::string FromLatin1(const std::string& bytes) {
  std::string utf8;
  for (char c : bytes) quorvale::AppendUtf8(&utf8, static_cast<unsigned char>(c));
  return utf8;
}

std::string ToQuestionMarks(const std::string& utf8) {
  std::string bytes;
  for (char c : utf8) bytes += c >= 0 ? c : '?';
  return bytes;
}

bool Same(const RegistryStatement& a, const RegistryStatement& b) {
  return a.kind == b.kind && a.key == b.key && a.name == b.name && a.type == b.type &&
         a.data == b.data;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  std::vector<RegistryStatement> first;
  std::vector<quorvale::RegistryTextError> errors;
  if (!quorvale::ReadRegistryText(bytes, FromLatin1, &first, &errors)) return 0;
  quorvale::WriteRegistryText(first, quorvale::RegistryTextVersion::kRegedit4, ToQuestionMarks);

  const std::string written =
      quorvale::WriteRegistryText(first, quorvale::RegistryTextVersion::kVersion5, ToQuestionMarks);
  std::vector<RegistryStatement> second;
  errors.clear();
  if (!quorvale::ReadRegistryText(written, FromLatin1, &second, &errors)) std::abort();
  if (!errors.empty() || first.size() != second.size()) std::abort();
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (!Same(first[i], second[i])) std::abort();
  }
  return 0;
}
