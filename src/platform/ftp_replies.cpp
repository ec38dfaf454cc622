#include "platform/ftp_replies.h"

#include <algorithm>

namespace quorvale {

int FtpReplyCode(std::string_view line) {
  if (line.size() < 3 || (line.size() > 3 && line[3] != ' ')) return 0;
  int code = 0;
  for (const char digit : line.substr(0, 3)) {
    if (digit < '0' || digit > '9') return 0;
    code = code * 10 + (digit - '0');
  }
  return code;
}

std::vector<std::string> FtpReplyLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.emplace_back(line);
  }
  return lines;
}

std::string FtpFolderOfReply(std::string_view line) {
  const size_t open = line.find('"');
  if (FtpReplyCode(line) != 257 || open == std::string_view::npos) return "";
  std::string folder;
  for (size_t i = open + 1; i < line.size(); ++i) {
    if (line[i] == '"') {
      if (i + 1 >= line.size() || line[i + 1] != '"') return folder;
      ++i;  // a doubled quote stands for one
    }
    folder += line[i];
  }
  return "";
}

bool IsFtpArgument(std::string_view text) {
  return !text.empty() && std::none_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
  });
}

}  // namespace quorvale
