#include "play/ftp_address.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr std::string_view kScheme = "ftp://";

struct CleanUp {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, CleanUp>;

// A "%" without two hexadecimal digits behind it, which the library would leave as it is.
bool HasLonePercent(std::string_view text) {
  for (size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    const std::string_view digits = text.substr(at + 1, 2);
    if (digits.size() < 2 || digits.find_first_not_of("0123456789abcdefABCDEF") < 2) return true;
  }
  return false;
}

// The address as the library reads it: to FTP "?" and "#" mean nothing, and a password may hold an
// "@" as it is.
std::string Escaped(const std::string& text, size_t end_of_server) {
  const size_t last_at = text.rfind('@', end_of_server);
  std::string escaped;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '?') {
      escaped += "%3F";
    } else if (text[i] == '#') {
      escaped += "%23";
    } else if (text[i] == '@' && i < last_at && last_at != std::string::npos) {
      escaped += "%40";
    } else {
      escaped += text[i];
    }
  }
  return escaped;
}

// False if the part holds a sign that no text box takes. A part that is missing stays as it is.
bool Take(CURLU* url, CURLUPart part, std::string* value) {
  char* text = nullptr;
  const CURLUcode code = curl_url_get(url, part, &text, CURLU_URLDECODE);
  if (code == CURLUE_NO_USER || code == CURLUE_NO_PASSWORD || code == CURLUE_NO_PORT) return true;
  if (code != CURLUE_OK) return false;
  const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
  *value = text;
  return std::none_of(value->begin(), value->end(),
                      [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

std::optional<FtpAddress> ReadFtpAddress(const std::string& text) {
  if (!EqualsNoCase(text.substr(0, kScheme.size()), kScheme) || HasLonePercent(text)) {
    return std::nullopt;
  }
  const size_t end_of_server = std::min(text.find('/', kScheme.size()), text.size());
  if (end_of_server == kScheme.size() || text[end_of_server - 1] == ':') return std::nullopt;
  const Url url(curl_url());
  if (url == nullptr || curl_url_set(url.get(), CURLUPART_URL, Escaped(text, end_of_server).c_str(),
                                     CURLU_ALLOW_SPACE | CURLU_PATH_AS_IS) != CURLUE_OK) {
    return std::nullopt;
  }
  FtpAddress address;
  if (!Take(url.get(), CURLUPART_HOST, &address.host) ||
      !Take(url.get(), CURLUPART_PORT, &address.port) ||
      !Take(url.get(), CURLUPART_USER, &address.user) ||
      !Take(url.get(), CURLUPART_PASSWORD, &address.password) ||
      !Take(url.get(), CURLUPART_PATH, &address.folder)) {
    return std::nullopt;
  }
  const bool names_nobody = text.find('@') < end_of_server && address.user.empty();
  if (names_nobody || Trim(address.host).empty()) return std::nullopt;
  return address;
}

}  // namespace quorvale
