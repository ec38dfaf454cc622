// The way through the restore pages.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/program/ModGlobal.h"
#include "core/program/command_words.h"
#include "restore/job_archive.h"
#include "restore/pages/frmRFinish.h"
#include "restore/pages/frmROne.h"
#include "restore/pages/frmRTwo.h"
#include "restore/pages/frmRfour.h"
#include "support/test_machine.h"

namespace quorvale::restore_test {

// A person at the restore pages.
class RestoreWizard {
 public:
  explicit RestoreWizard(TestMachine& machine) : machine_(machine) {}

  frmROne& one() { return machine_.app().Get<frmROne>(); }
  frmRTwo& two() { return machine_.app().Get<frmRTwo>(); }
  frmRfour& review() { return machine_.app().Get<frmRfour>(); }
  frmRFinish& run() { return machine_.app().Get<frmRFinish>(); }
  bool Shown(const std::string& form) {
    const ui::Form* found = machine_.app().FindLoaded(form);
    return found != nullptr && found->Visible();
  }

  // Opens the first page and chooses a file outside of the list.
  void Choose(const std::string& path) {
    machine_.Do([this] { machine_.app().Get<FrmWelcome>().Show(); });
    // Where a restore needs raised rights, the run is one that has them.
    if (IsVista(machine_.app())) machine_.computer().SetCommandLine(kElevatedWord);
    machine_.Do([this] { machine_.app().Get<FrmWelcome>().cmdWC_Restore.Click(); });
    Browse(path);
  }
  void Browse(const std::string& path) {
    machine_.ui().ExpectFile(path);
    machine_.Click(one().Command1);
  }
  // As far as the tree.
  void Open(const std::string& path, const std::string& password = "") {
    Choose(path);
    if (!password.empty()) one().txtDefaultPassword.text = password;
    machine_.Click(one().cmdNext);
  }
  void Tick(const std::string& path, bool checked = true) {
    machine_.Tick(two().tvwMain, path, checked);
  }
  void TickAll() {
    for (int i = 1; i <= two().tvwMain.Count(); ++i) {
      ui::TreeNode* node = two().tvwMain.Node(i);
      if (node->Parent() == nullptr && node->Children() > 0) {
        machine_.Do([&] { two().tvwMain.UserChecks(node, true); });
      }
    }
  }
  void ToReview() {
    machine_.Click(two().cmdNext);
    ASSERT_TRUE(Shown("frmRfour"));
  }
  void Run() { machine_.Click(review().cmdNext); }
  // The whole way for an archive of which everything is wanted.
  void RestoreAll(const std::string& path,
                  const std::string& ending = "Backup successfully restored") {
    Open(path);
    TickAll();
    ToReview();
    machine_.Expect(ui::Answer::kOk, ending);
    Run();
  }

 private:
  TestMachine& machine_;
};

}  // namespace quorvale::restore_test
