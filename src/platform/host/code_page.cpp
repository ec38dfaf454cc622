#include "platform/host/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>

#include "base/text.h"

namespace quorvale::host {
namespace {

const iconv_t kNoDescriptor = reinterpret_cast<iconv_t>(-1);

// Converts as much as can be converted. The number of bytes taken.
std::size_t Convert(iconv_t descriptor, std::string_view input, std::string* output) {
  iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
  std::string buffer(4096, '\0');
  // The C interface takes a pointer to characters that it does not change.
  char* in = const_cast<char*>(input.data());
  std::size_t in_left = input.size();
  while (in_left > 0) {
    char* out = buffer.data();
    std::size_t out_left = buffer.size();
    const std::size_t result = iconv(descriptor, &in, &in_left, &out, &out_left);
    output->append(buffer.data(), buffer.size() - out_left);
    if (result == static_cast<std::size_t>(-1) && errno != E2BIG) break;
  }
  return input.size() - in_left;
}

// True for the bytes that single-byte code pages may leave without a character.
bool IsHighControl(unsigned char byte) { return byte >= 0x80 && byte <= 0x9F; }

// The number of bytes of the UTF-8 character at the start, 1 if it is broken.
std::size_t Utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return length <= text.size() && IsUtf8(text.substr(0, length)) ? length : 1;
}

}  // namespace

CodePage::CodePage(void* to_ansi, void* from_ansi) : to_ansi_(to_ansi), from_ansi_(from_ansi) {}

CodePage::~CodePage() {
  iconv_close(to_ansi_);
  iconv_close(from_ansi_);
}

std::unique_ptr<CodePage> CodePage::Open(int number) {
  const std::string name = "CP" + std::to_string(number);
  iconv_t to_ansi = iconv_open(name.c_str(), "UTF-8");
  if (to_ansi == kNoDescriptor) return nullptr;
  iconv_t from_ansi = iconv_open("UTF-8", name.c_str());
  if (from_ansi == kNoDescriptor) {
    iconv_close(to_ansi);
    return nullptr;
  }
  return std::unique_ptr<CodePage>(new CodePage(to_ansi, from_ansi));
}

std::string CodePage::FromUtf8(const std::string& utf8) const {
  std::string bytes;
  std::string_view rest = utf8;
  while (true) {
    rest.remove_prefix(Convert(to_ansi_, rest, &bytes));
    if (rest.empty()) return bytes;
    const std::size_t length = Utf8Length(rest);
    char replacement = '?';
    if (length == 2 && rest[0] == '\xC2' && IsHighControl(static_cast<unsigned char>(rest[1]))) {
      // A control character stands for the byte that has no character of its own.
      std::string character;
      if (Convert(from_ansi_, rest.substr(1, 1), &character) == 0) replacement = rest[1];
    }
    bytes += replacement;
    rest.remove_prefix(length);
  }
}

std::string CodePage::ToUtf8(const std::string& bytes) const {
  std::string utf8;
  std::string_view rest = bytes;
  while (true) {
    rest.remove_prefix(Convert(from_ansi_, rest, &utf8));
    if (rest.empty()) return utf8;
    const auto byte = static_cast<unsigned char>(rest[0]);
    AppendUtf8(&utf8, IsHighControl(byte) ? byte : 0xFFFD);
    rest.remove_prefix(1);
  }
}

}  // namespace quorvale::host
