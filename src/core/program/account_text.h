// An account as text, in UTF-8 with lines that end in CR LF: for people, and to be read again.
#pragma once

#include <string>

#include "core/program/account.h"

namespace quorvale {

std::string AccountText(const Account& account);
// False if the text is no account; lines of unknown words are passed over.
bool ReadAccountText(const std::string& text, Account* account);

}  // namespace quorvale
