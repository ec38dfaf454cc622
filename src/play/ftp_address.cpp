#include "play/ftp_address.h"

#include "base/text.h"

namespace quorvale {
namespace {

constexpr char kScheme[] = "ftp://";
constexpr size_t kLongestPort = 5;  // digits

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// False if a "%" does not stand before two digits, or for a sign that no text box takes.
bool Decode(const std::string& text, std::string* decoded) {
  decoded->clear();
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '%') {
      if (i + 2 >= text.size()) return false;
      const int high = HexDigit(text[i + 1]);
      const int low = HexDigit(text[i + 2]);
      if (high < 0 || low < 0) return false;
      c = static_cast<char>(high * 16 + low);
      i += 2;
    }
    if (static_cast<unsigned char>(c) < ' ') return false;
    *decoded += c;
  }
  return true;
}

bool ReadPort(const std::string& text, std::string* port) {
  if (text.empty() || text.size() > kLongestPort) return false;
  if (text.find_first_not_of("0123456789") != std::string::npos) return false;
  *port = text;
  return true;
}

// "host", "host:port" or "[1::2]:port".
bool ReadServer(const std::string& text, FtpAddress* address) {
  const size_t bracket = text.starts_with("[") ? text.find(']') : 0;
  if (bracket == std::string::npos) return false;
  const size_t colon = text.find(':', bracket);
  if (colon != std::string::npos && !ReadPort(text.substr(colon + 1), &address->port)) {
    return false;
  }
  return Decode(text.substr(0, colon), &address->host) && !Trim(address->host).empty();
}

bool ReadPerson(const std::string& text, FtpAddress* address) {
  const size_t colon = text.find(':');
  if (colon != std::string::npos && !Decode(text.substr(colon + 1), &address->password)) {
    return false;
  }
  return Decode(text.substr(0, colon), &address->user) && !address->user.empty();
}

}  // namespace

std::optional<FtpAddress> ReadFtpAddress(const std::string& text) {
  if (!EqualsNoCase(text.substr(0, 6), kScheme)) return std::nullopt;
  FtpAddress address;
  const std::string rest = text.substr(6);
  const size_t slash = rest.find('/');
  std::string server = rest.substr(0, slash);
  // A password may hold an "@" as it is.
  if (const size_t at = server.rfind('@'); at != std::string::npos) {
    if (!ReadPerson(server.substr(0, at), &address)) return std::nullopt;
    server.erase(0, at + 1);
  }
  if (!ReadServer(server, &address)) return std::nullopt;
  if (slash == std::string::npos) return address;
  if (!Decode(rest.substr(slash), &address.folder)) return std::nullopt;
  return address;
}

}  // namespace quorvale
