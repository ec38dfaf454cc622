#include "play/stage.h"

#include <utility>

namespace quorvale {
namespace {

std::string CannotBeArranged(const std::string& what) {
  return what + " cannot be arranged on a real system";
}

}  // namespace

std::string Stage::SetDrive(const std::string& letter, DriveKind) {
  return CannotBeArranged("drive " + letter);
}
std::string Stage::SetFreeSpace(const std::string& letter, std::uint64_t bytes) {
  return CannotBeArranged("free " + letter + " " + std::to_string(bytes));
}
std::string Stage::SetService(const std::string& name, bool running) {
  return CannotBeArranged("service " + name + (running ? " = running" : " = stopped"));
}
std::string Stage::SetShare(const std::string& share, bool answers) {
  return CannotBeArranged("share " + share + (answers ? " = answers" : " = silent"));
}
std::string Stage::RemoveDiscWriter() { return CannotBeArranged("disc gone"); }
std::string Stage::EmptyDiscWriter() { return CannotBeArranged("disc empty"); }
std::string Stage::SetDiscWriter(std::uint64_t media_bytes) {
  return CannotBeArranged("disc writer " + std::to_string(media_bytes));
}

void Stage::AtNextBox(std::function<void()> look) {
  box_looks_.push_back({Boxes().size() + AwaitedBoxes().size(), std::move(look)});
}

void Stage::BoxIsUp() {
  const std::size_t box = Boxes().size();
  for (const BoxLook& each : box_looks_) {
    if (each.box == box) each.look();
  }
}

}  // namespace quorvale
