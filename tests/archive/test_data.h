// Data for archives: text that shrinks, noise that does not. The same seed gives the same bytes.
#pragma once

#include <cstdint>
#include <string>

namespace quorvale::zip_test {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed * 2654435761u + 88172645463325252ull) {}
  std::uint64_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return state_;
  }
  std::uint64_t Below(std::uint64_t limit) { return Next() % limit; }

 private:
  std::uint64_t state_;
};

inline std::string Noise(std::size_t size, std::uint64_t seed = 1) {
  Random random(seed);
  std::string bytes(size, '\0');
  for (char& c : bytes) c = static_cast<char>(random.Next() >> 24);
  return bytes;
}

inline std::string Prose(std::size_t size, std::uint64_t seed = 1) {
  static const char* const kWords[] = {"mail ",     "folder ",  "the ", "message ", "of ", "store ",
                                       "identity ", "profile ", "and ", "account ", "12",  "34\n"};
  Random random(seed);
  std::string text;
  text.reserve(size + 16);
  while (text.size() < size) text += kWords[random.Below(std::size(kWords))];
  text.resize(size);
  return text;
}

}  // namespace quorvale::zip_test
