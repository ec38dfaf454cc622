// Conversion between UTF-8 and one of the system's ANSI code pages.
#pragma once

#include <memory>
#include <string>

namespace quorvale::host {

class CodePage {
 public:
  // Null if the host does not know the code page.
  static std::unique_ptr<CodePage> Open(int number);
  ~CodePage();
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;

  // A character outside the code page, or a byte that is not UTF-8, becomes "?".
  std::string FromUtf8(const std::string& utf8) const;
  // A byte that the code page gives no character becomes the control character of its number, so
  // that it finds back; a broken sequence of a code page of several bytes becomes U+FFFD.
  std::string ToUtf8(const std::string& bytes) const;

 private:
  CodePage(void* to_ansi, void* from_ansi);
  void* to_ansi_;  // conversion descriptors
  void* from_ansi_;
};

}  // namespace quorvale::host
