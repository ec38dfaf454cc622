#include "platform/windows/random_bytes.h"

#include <nettle/sha2.h>
#include <x86intrin.h>

#include <algorithm>

#include "platform/windows/text_calls.h"
#include "platform/windows/windows_headers.h"

namespace quorvale::windows {
namespace {

// Of wincrypt.h, which the lean headers leave out.
using Provider = ULONG_PTR;
using Acquire = BOOL(WINAPI*)(Provider*, const char* container, const char* name, DWORD type,
                              DWORD flags);
using Generate = BOOL(WINAPI*)(Provider, DWORD count, BYTE* bytes);
using Release = BOOL(WINAPI*)(Provider, DWORD flags);
constexpr DWORD kFullProvider = 1;           // PROV_RSA_FULL
constexpr DWORD kWithoutKeys = 0xF0000000u;  // CRYPT_VERIFYCONTEXT

constexpr int kReadings = 4096;

template <typename Value>
void Add(sha256_ctx* hash, const Value& value) {
  sha256_update(hash, sizeof value, reinterpret_cast<const std::uint8_t*>(&value));
}

void AddReadings(sha256_ctx* hash) {
  POINT pointer = {};
  GetCursorPos(&pointer);
  Add(hash, pointer);
  Add(hash, &pointer);
  Add(hash, GetCurrentProcessId());
  Add(hash, GetCurrentThreadId());
  for (int i = 0; i < kReadings; ++i) {
    // How long a call takes differs from one to the next by interrupts and by what the caches hold.
    Add(hash, GetTickCount());
    Add(hash, __rdtsc());
  }
}

}  // namespace

std::string SystemRandomBytes(std::size_t count) {
  static const auto acquire = LookUp<Acquire>("advapi32.dll", "CryptAcquireContextA");
  static const auto generate = LookUp<Generate>("advapi32.dll", "CryptGenRandom");
  static const auto release = LookUp<Release>("advapi32.dll", "CryptReleaseContext");
  if (acquire == nullptr || generate == nullptr || release == nullptr) return "";
  Provider provider = 0;
  if (acquire(&provider, nullptr, nullptr, kFullProvider, kWithoutKeys) == 0) return "";
  std::string bytes(count, '\0');
  const bool good =
      generate(provider, static_cast<DWORD>(count), reinterpret_cast<BYTE*>(bytes.data())) != 0;
  release(provider, 0);
  return good ? bytes : "";
}

std::string JitterBytes(std::size_t count) {
  sha256_ctx hash;
  sha256_init(&hash);
  std::string bytes;
  std::uint8_t digest[SHA256_DIGEST_SIZE] = {};
  while (bytes.size() < count) {
    sha256_update(&hash, sizeof digest, digest);
    AddReadings(&hash);
    sha256_digest(&hash, sizeof digest, digest);
    bytes.append(digest, digest + std::min(sizeof digest, count - bytes.size()));
  }
  return bytes;
}

}  // namespace quorvale::windows
