// Text between the program (UTF-8) and the system's calls, and calls that only newer systems have.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows/windows_headers.h"

namespace quorvale::windows {

// True on the NT family, whose calls take UTF-16; Windows 95, 98 and ME take the code page only.
bool HasUnicode();

std::wstring Wide(std::string_view utf8);
std::string FromWide(std::wstring_view wide);
// The system's ANSI code page; a character outside it becomes "?".
std::string Ansi(std::string_view utf8);
std::string FromAnsi(std::string_view bytes);

// A function that older systems lack; null there. The library stays loaded.
template <class Function>
Function LookUp(const char* library, const char* name) {
  HMODULE module = GetModuleHandleA(library);
  if (module == nullptr) module = LoadLibraryA(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace quorvale::windows
