#include "play/scenario_verbs.h"

#include "play/scenario_acts.h"

namespace quorvale {

namespace {

constexpr ScenarioVerb kVerbs[] = {
    // The computer.
    // machine xp [user]: a new computer with things in it
    {"machine", ActShape::kWordText, ActWay::kBegin, acts::Machine},
    // a file of the former computer = its path on this one
    {"bring", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Bring},
    // a file = its text
    {"seed", ActShape::kPathText, ActWay::kAtOnce, acts::Seed},
    // a file = its length
    {"seed-bytes", ActShape::kTwoPaths, ActWay::kAtOnce, acts::SeedBytes},
    {"seed-folder", ActShape::kText, ActWay::kAtOnce, acts::SeedFolder},
    // key\name = text
    {"seed-value", ActShape::kPathText, ActWay::kAtOnce, acts::SeedValue},
    {"seed-key", ActShape::kText, ActWay::kAtOnce, acts::SeedKey},
    // a file, or a folder with all in it
    {"remove", ActShape::kText, ActWay::kAtOnce, acts::Remove},
    // all values of a registry key and of the keys below it
    {"remove-values", ActShape::kText, ActWay::kAtOnce, acts::RemoveValues},
    {"rename", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Rename},
    // one byte of what an archive holds: archive = entry name
    {"damage", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Damage},
    // process msimn.exe 77, process msimn.exe gone
    {"process", ActShape::kWordText, ActWay::kAtOnce, acts::Process},
    // service Name = running
    {"service", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Service},
    // a job of another program = its comment; = gone
    {"task", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Task},
    // free C 1000: bytes
    {"free", ActShape::kWordText, ActWay::kAtOnce, acts::Free},
    // drive D fixed; drive D gone
    {"drive", ActShape::kWordText, ActWay::kAtOnce, acts::Drive},
    // share \\server\share = answers; = silent
    {"share", ActShape::kTwoPaths, ActWay::kAtOnce, acts::Share},
    // accepted, refused
    {"elevation", ActShape::kText, ActWay::kAtOnce, acts::Elevation},
    // 2026-11-14 22:05:09
    {"clock", ActShape::kText, ActWay::kAtOnce, acts::Clock},
    // disc writer 700000000: blank media of so many bytes; disc gone
    {"disc", ActShape::kWordText, ActWay::kAtOnce, acts::Disc},
    // a variable = its text; nothing behind "=": it is gone
    {"environment", ActShape::kPathText, ActWay::kAtOnce, acts::Environment},
    // 800x600; real windows only
    {"screen", ActShape::kText, ActWay::kAtOnce, acts::Screen},
    // The person.
    {"start", ActShape::kOptionalText, ActWay::kAtOnce, acts::Start},
    // while a copy runs; real windows only
    {"start-beside", ActShape::kOptionalText, ActWay::kAtOnce, acts::StartBeside},
    {"click", ActShape::kControl, ActWay::kByHand, acts::Click},
    {"double-click", ActShape::kControl, ActWay::kByHand, acts::DoubleClick},
    // the window, as by its own button
    {"close", ActShape::kForm, ActWay::kByHand, acts::Close},
    {"set", ActShape::kControlText, ActWay::kByHand, acts::Set},
    {"check", ActShape::kControl, ActWay::kByHand, acts::Check},
    {"uncheck", ActShape::kControl, ActWay::kByHand, acts::Uncheck},
    {"choose", ActShape::kControlText, ActWay::kByHand, acts::Choose},
    {"tick", ActShape::kControlText, ActWay::kByHand, acts::Tick},
    {"untick", ActShape::kControlText, ActWay::kByHand, acts::Untick},
    {"select", ActShape::kControlText, ActWay::kByHand, acts::Select},
    {"answer", ActShape::kWordText, ActWay::kAtOnce, acts::Answer},
    // what the control shows while the next box is up
    {"at-box", ActShape::kControlText, ActWay::kAtOnce, acts::AtBox},
    {"folder", ActShape::kText, ActWay::kAtOnce, acts::Folder},
    {"file", ActShape::kText, ActWay::kAtOnce, acts::File},
    // folder or file
    {"cancel-dialog", ActShape::kText, ActWay::kAtOnce, acts::CancelDialog},
    {"wait", ActShape::kNothing, ActWay::kAtOnce, acts::Wait},
    {"when", ActShape::kCondition, ActWay::kAtOnce, acts::When},
    // What must be so now.
    {"expect", ActShape::kControlText, ActWay::kMustBe, acts::ExpectText},
    {"expect-contains", ActShape::kControlText, ActWay::kMustBe, acts::ExpectContains},
    // "#" is a digit, "*" any text
    {"expect-like", ActShape::kControlText, ActWay::kMustBe, acts::ExpectLike},
    // another text than this
    {"expect-not", ActShape::kControlText, ActWay::kMustNotBe, acts::ExpectNot},
    {"expect-form", ActShape::kForm, ActWay::kMustBe, acts::ExpectForm},
    {"expect-no-form", ActShape::kForm, ActWay::kMustNotBe, acts::ExpectNoForm},
    {"expect-enabled", ActShape::kControl, ActWay::kMustBe, acts::ExpectEnabled},
    {"expect-disabled", ActShape::kControl, ActWay::kMustBe, acts::ExpectDisabled},
    {"expect-visible", ActShape::kControl, ActWay::kMustBe, acts::ExpectVisible},
    {"expect-hidden", ActShape::kControl, ActWay::kMustBe, acts::ExpectHidden},
    {"expect-bold", ActShape::kControl, ActWay::kMustBe, acts::ExpectBold},
    {"expect-node", ActShape::kControlText, ActWay::kMustBe, acts::ExpectNode},
    {"expect-no-node", ActShape::kControlText, ActWay::kMustNotBe, acts::ExpectNoNode},
    {"expect-tick", ActShape::kControlText, ActWay::kMustBe, acts::ExpectTick},
    {"expect-no-tick", ActShape::kControlText, ActWay::kMustNotBe, acts::ExpectNoTick},
    // a path, or a path = the whole text of the file
    {"expect-file", ActShape::kPathText, ActWay::kMustBe, acts::ExpectFile},
    // neither file nor folder
    {"expect-no-file", ActShape::kText, ActWay::kMustNotBe, acts::ExpectNoFile},
    // the text stands somewhere in the newest account of a run
    {"expect-account", ActShape::kText, ActWay::kMustBe, acts::ExpectAccount},
    // two files with the same bytes
    {"expect-same", ActShape::kTwoPaths, ActWay::kMustBe, acts::ExpectSame},
    {"expect-folder", ActShape::kText, ActWay::kMustBe, acts::ExpectFolder},
    // archive = entry name
    {"expect-entry", ActShape::kTwoPaths, ActWay::kMustBe, acts::ExpectEntry},
    {"expect-no-entry", ActShape::kTwoPaths, ActWay::kMustNotBe, acts::ExpectNoEntry},
    // key\name, or key\name = text
    {"expect-registry", ActShape::kPathText, ActWay::kMustBe, acts::ExpectRegistry},
    {"expect-no-registry", ActShape::kText, ActWay::kMustNotBe, acts::ExpectNoRegistry},
    // a job of the scheduler = its comment
    {"expect-task", ActShape::kTwoPaths, ActWay::kMustBe, acts::ExpectTask},
    {"expect-no-task", ActShape::kText, ActWay::kMustNotBe, acts::ExpectNoTask},
    // a message box with this text has been shown
    {"expect-box", ActShape::kText, ActWay::kMustBe, acts::ExpectBox},
    // a program was started whose line contains this
    {"expect-started", ActShape::kText, ActWay::kMustBe, acts::ExpectStarted},
    {"expect-not-started", ActShape::kText, ActWay::kMustNotBe, acts::ExpectNotStarted},
    // the program has ended by itself
    {"expect-ended", ActShape::kNothing, ActWay::kMustBe, acts::ExpectEnded},
    {"expect-running", ActShape::kNothing, ActWay::kMustBe, acts::ExpectRunning},
    // of the program run; real windows only
    {"expect-copies", ActShape::kText, ActWay::kMustBe, acts::ExpectCopies},
    // it is the window that takes the keys; real windows only
    {"expect-front", ActShape::kForm, ActWay::kMustBe, acts::ExpectFront},
    // real windows only
    {"expect-not-front", ActShape::kForm, ActWay::kMustNotBe, acts::ExpectNotFront},
};

}  // namespace

std::span<const ScenarioVerb> ScenarioVerbs() { return kVerbs; }

const ScenarioVerb* FindVerb(const std::string& verb) {
  for (const ScenarioVerb& each : ScenarioVerbs()) {
    if (verb == each.name) return &each;
  }
  return nullptr;
}

}  // namespace quorvale
