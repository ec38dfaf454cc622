#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr DWORD kNoBestFit = 0x400;  // refused by NT 4

std::wstring ToWide(UINT code_page, std::string_view text) {
  if (text.empty()) return {};
  const int length =
      MultiByteToWideChar(code_page, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(code_page, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                      length);
  return wide;
}

std::string ToBytes(UINT code_page, DWORD flags, std::wstring_view wide) {
  if (wide.empty()) return {};
  const int length = WideCharToMultiByte(
      code_page, flags, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(code_page, flags, wide.data(), static_cast<int>(wide.size()), bytes.data(),
                      length, nullptr, nullptr);
  return bytes;
}

}  // namespace

bool HasUnicode() {
  static const bool has = [] {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    return GetVersionExA(&version) == 0 || version.dwPlatformId == VER_PLATFORM_WIN32_NT;
  }();
  return has;
}

std::wstring Wide(std::string_view utf8) { return ToWide(CP_UTF8, utf8); }

std::string FromWide(std::wstring_view wide) { return ToBytes(CP_UTF8, 0, wide); }

std::string Ansi(std::string_view utf8) {
  const std::wstring wide = Wide(utf8);
  std::string bytes = ToBytes(CP_ACP, kNoBestFit, wide);
  return bytes.empty() ? ToBytes(CP_ACP, 0, wide) : bytes;
}

std::string FromAnsi(std::string_view bytes) { return FromWide(ToWide(CP_ACP, bytes)); }

}  // namespace quorvale::windows
