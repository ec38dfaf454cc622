// What plays the verbs of a scenario. The table in scenario_verbs.cpp names each of these once.
#pragma once

#include <charconv>
#include <string>
#include <system_error>

#include "play/scenario.h"
#include "play/scenario_player.h"

namespace quorvale::acts {

// Each answers "" or what went wrong.
using Act = std::string(ScenarioPlayer& player, const ScenarioAct& act);

// The computer (scenario_computer_acts.cpp).
Act Machine, Process, Service, Free, Drive, Share, Elevation, Clock, Disc, Environment, Screen;
// Its files, registry and scheduled jobs (scenario_file_acts.cpp).
Act Bring, Seed, SeedBytes, SeedFolder, SeedValue, SeedKey, Remove, RemoveValues, Rename, Damage,
    Task;
Act ExpectFile, ExpectNoFile, ExpectAccount, ExpectSame, ExpectFolder, ExpectEntry, ExpectNoEntry,
    ExpectRegistry, ExpectNoRegistry, ExpectTask, ExpectNoTask;
// The person (scenario_person_acts.cpp).
Act Start, StartBeside, Click, DoubleClick, Close, Set, Check, Uncheck, Choose, Tick, Untick,
    Select, Wait;
Act Answer, AtBox, Folder, File, CancelDialog, When;
// What the person sees (scenario_expectations.cpp).
Act ExpectText, ExpectContains, ExpectLike, ExpectNot, ExpectForm, ExpectNoForm, ExpectEnabled,
    ExpectDisabled, ExpectVisible, ExpectHidden, ExpectBold, ExpectNode, ExpectNoNode, ExpectTick,
    ExpectNoTick, ExpectBox, ExpectStarted, ExpectNotStarted, ExpectEnded, ExpectRunning,
    ExpectCopies, ExpectFront, ExpectNotFront;

// The sentence about a text that is another one than expected.
std::string Different(const std::string& what, const std::string& is, const std::string& expected);

// The number that a text is, as a whole.
template <class Number>
bool ReadNumber(const std::string& text, Number* number) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *number);
  return result.ec == std::errc() && result.ptr == end;
}
std::string NotANumber(const std::string& text);

}  // namespace quorvale::acts
