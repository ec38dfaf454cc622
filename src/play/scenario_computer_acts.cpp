// The acts of a scenario that change the computer itself.
#include <cstdint>
#include <optional>

#include "base/dates.h"
#include "play/scenario_acts.h"

namespace quorvale::acts {
namespace {

std::optional<DriveKind> KindOf(const std::string& word) {
  if (word == "fixed") return DriveKind::kFixed;
  if (word == "removable") return DriveKind::kRemovable;
  if (word == "remote") return DriveKind::kRemote;
  if (word == "cdrom") return DriveKind::kCdRom;
  if (word == "ramdisk") return DriveKind::kRamDisk;
  return std::nullopt;
}

}  // namespace

std::string NotANumber(const std::string& text) { return "\"" + text + "\" is no number"; }

std::string Machine(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.TakeMachine(act);
}

std::string Process(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text == "gone") return player.stage().EndProcess(act.word);
  std::uint32_t id = 0;
  if (!ReadNumber(act.text, &id)) return NotANumber(act.text);
  return player.stage().RunProcess(act.word, id);
}

std::string Service(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text != "running" && act.text != "stopped") return "a service is running or stopped";
  return player.stage().SetService(act.path, act.text == "running");
}

std::string Free(ScenarioPlayer& player, const ScenarioAct& act) {
  std::uint64_t bytes = 0;
  if (!ReadNumber(act.text, &bytes)) return NotANumber(act.text);
  return player.stage().SetFreeSpace(act.word, bytes);
}

std::string Drive(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text == "gone") return player.stage().RemoveDrive(act.word);
  const std::optional<DriveKind> kind = KindOf(act.text);
  if (!kind) return "\"" + act.text + "\" is no kind of drive";
  return player.stage().SetDrive(act.word, *kind);
}

std::string Share(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text != "answers" && act.text != "silent") return "a share answers or is silent";
  return player.stage().SetShare(act.path, act.text == "answers");
}

std::string Elevation(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text != "accepted" && act.text != "refused") return "elevation is accepted or refused";
  return player.stage().RefuseElevation(act.text == "refused");
}

std::string Clock(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<LocalTime> time = ParseLocalTime(act.text);
  if (!time) return "\"" + act.text + "\" is no moment like 2026-11-14 22:05:09";
  return player.stage().SetClock(*time);
}

std::string Disc(ScenarioPlayer& player, const ScenarioAct& act) {
  std::uint64_t bytes = 0;
  if (act.word == "gone") return player.stage().RemoveDiscWriter();
  if (act.word == "empty") return player.stage().EmptyDiscWriter();
  if (act.word == "writer" && ReadNumber(act.text, &bytes)) {
    return player.stage().SetDiscWriter(bytes);
  }
  return "a disc is \"gone\", \"empty\", or \"writer\" and the bytes of its media";
}

std::string Environment(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().SetEnvironment(act.path, act.text);
}

std::string Screen(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<std::string> size = player.stage().ScreenSize();
  if (!size) return "only real windows have a screen";
  return *size == act.text ? "" : Different("the screen", *size, act.text);
}

}  // namespace quorvale::acts
