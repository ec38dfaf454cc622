// compare_machines BEFORE LIKE USER NUMBER AFTER LIKE USER NUMBER: compares two machine folders
// with what a backup of the first, restored onto the second, must have brought there. LIKE, USER
// and NUMBER are those that lay_machine took. A last word "wine" says that the
// drives of the second were Wine's, which keeps no archive mark. Ends with 0, and a line that
// counts, if all is the same.
#include <cstdio>
#include <cstdlib>

#include "play/round_trip.h"
#include "play/scenario_machine.h"

namespace {

struct Side {
  quorvale::MachinePlan plan;
  std::unique_ptr<quorvale::RunningMachine> computer;
};

Side OpenSide(char** words) {
  Side side;
  side.plan = quorvale::ScenarioPlan(words[1], words[2], std::atoi(words[3]));
  std::string problem;
  side.computer = quorvale::RunningMachine::Open(words[0], &problem);
  if (side.computer == nullptr) std::printf("%s\n", problem.c_str());
  return side;
}

}  // namespace

int main(int count, char** words) {
  const bool wine = count == 10 && std::string(words[9]) == "wine";
  if (count != 9 && !wine) {
    std::fprintf(stderr,
                 "usage: compare_machines BEFORE LIKE USER NUMBER AFTER LIKE USER NUMBER [wine]\n");
    return 2;
  }
  const Side before = OpenSide(words + 1), after = OpenSide(words + 5);
  if (before.computer == nullptr || after.computer == nullptr) return 1;
  quorvale::RoundTrip round_trip(*before.computer, before.plan, *after.computer, after.plan);
  if (wine) round_trip.compared_attributes &= ~quorvale::file_attribute::kArchive;
  const quorvale::RoundTripVerdict verdict = round_trip.Compare();
  for (const std::string& difference : verdict.differences) {
    std::printf("%s\n", difference.c_str());
  }
  const bool same = verdict.AllWell() && verdict.files > 0 && verdict.keys > 0;
  std::printf("%s: %d of %d files, %d of %d folders, %d of %d registry keys\n",
              same ? "the same" : "not the same", verdict.identical_files, verdict.files,
              verdict.present_folders, verdict.folders, verdict.present_keys, verdict.keys);
  return same ? 0 : 1;
}
