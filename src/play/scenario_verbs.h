// The one table of what a scenario can say: each verb with the shape of its line, the way in which
// it is played, and what plays it.
#pragma once

#include <span>
#include <string>

namespace quorvale {

class ScenarioPlayer;
struct ScenarioAct;

// How the words behind an act's verb are read.
enum class ActShape {
  kNothing,       // wait
  kText,          // folder C:\Other Things
  kOptionalText,  // start [command line]
  kWordText,      // answer Yes Do you want to overwrite?
  kForm,          // expect-form FrmWelcome
  kControl,       // click frmOne.cmdNext
  kControlText,   // set frmOne.txtBackupname My mail; the text may be empty
  kPathText,      // seed C:\a b.txt = text; the text behind " = " may be missing
  kTwoPaths,      // rename C:\a.obk = C:\b.obk
  kCondition,     // when frmFinish.lblCurrent contains Copying click frmFinish.Command2
};

enum class ActWay {
  kBegin,      // at once, also before there is a machine
  kAtOnce,     // at once
  kByHand,     // as soon as a person could do it
  kMustBe,     // it must be so now, or become so
  kMustNotBe,  // what it names must not be so
};

struct ScenarioVerb {
  const char* name;
  ActShape shape;
  ActWay way;
  // Answers "" or what went wrong.
  std::string (*play)(ScenarioPlayer& player, const ScenarioAct& act);
};

// All verbs there are.
std::span<const ScenarioVerb> ScenarioVerbs();
// Null if there is no such verb.
const ScenarioVerb* FindVerb(const std::string& verb);

}  // namespace quorvale
