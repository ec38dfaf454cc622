#include "archive/decryptor.h"

#include "archive/aes_cipher.h"
#include "archive/classic_cipher.h"

namespace quorvale::zip {

std::unique_ptr<Decryptor> MakeDecryptor(const Record& record) {
  if (record.aes_version != 0) return std::make_unique<AesDecryptor>(record);
  return std::make_unique<ClassicDecryptor>(record);
}

}  // namespace quorvale::zip
