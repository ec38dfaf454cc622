// The running programs of the computer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvale {

struct ProcessInfo {
  std::string image;  // image name, such as "msimn.exe"
  std::uint32_t id = 0;
};

class Processes {
 public:
  virtual ~Processes() = default;
  // Empty if the list cannot be taken.
  virtual std::vector<ProcessInfo> List() = 0;
  // True if a top-level window with exactly this title stands open.
  virtual bool WindowExists(const std::string& title) = 0;
  // Brings the other running copy of this program to the front, if there is one.
  virtual void ActivatePreviousInstance() = 0;
};

}  // namespace quorvale
