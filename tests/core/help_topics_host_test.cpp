// F1 on each page opens the page's topic of the help file.
#include <gtest/gtest.h>

#include "backup/FrmBackupMedia.h"
#include "backup/frmFinish.h"
#include "backup/frmOne.h"
#include "backup/frmThree.h"
#include "backup/frmfour.h"
#include "core/FrmWelcome.h"
#include "core/frmSettings.h"
#include "core/frmStartUp.h"
#include "discovery/FrmTwo.h"
#include "platform/host/host_platform.h"
#include "restore/frmRFinish.h"
#include "restore/frmROne.h"
#include "restore/frmRTwo.h"
#include "restore/frmRfour.h"
#include "schedule/frmSchedTwo.h"
#include "schedule/frmSchedule.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr int kF1 = 112;
constexpr int kF2 = 113;

class HelpTopicsTest : public testing::Test {
 protected:
  // The topics that a key on the page opens.
  std::vector<std::string> TopicsOf(ui::Form& page, int key) {
    const size_t before = machine_.host().shell().help_shown().size();
    const bool taken = page.on_key_down(key, 0);
    std::vector<std::string> topics;
    for (size_t i = before; i < machine_.host().shell().help_shown().size(); ++i) {
      const auto& shown = machine_.host().shell().help_shown()[i];
      EXPECT_EQ(shown.file, machine_.platform().system.ProgramFolder() + "\\Quorvale.chm");
      topics.push_back(shown.topic);
    }
    EXPECT_EQ(taken, !topics.empty()) << page.name();
    return topics;
  }
  template <class Page>
  void Expect(const std::string& topic) {
    machine_.app().Get<FrmWelcome>();
    Page& page = machine_.app().Get<Page>();
    EXPECT_EQ(TopicsOf(page, kF1), std::vector<std::string>{topic}) << Page::kName;
    EXPECT_TRUE(TopicsOf(page, kF2).empty()) << Page::kName;
  }

  TestMachine machine_{"xp"};
};

TEST_F(HelpTopicsTest, TheBackupPages) {
  Expect<frmOne>("qvlBackup.htm");
  Expect<FrmTwo>("qvlBackup.htm");
  Expect<frmThree>("qvlBackup.htm");
  Expect<FrmBackupMedia>("qvlBackup.htm");
  Expect<frmfour>("qvlBackup.htm");
  Expect<frmFinish>("qvlBackup.htm");
}

TEST_F(HelpTopicsTest, TheRestorePages) {
  Expect<frmROne>("Restoration.htm");
  Expect<frmRTwo>("Restoration.htm");
  Expect<frmRfour>("Restoration.htm");
  Expect<frmRFinish>("Restoration.htm");
}

TEST_F(HelpTopicsTest, TheSchedulePages) {
  Expect<frmSchedule>("Schedule Backup.htm");
  Expect<frmSchedTwo>("Schedule Backup.htm");
}

TEST_F(HelpTopicsTest, TheSettingsPages) {
  Expect<frmSettings>("qvlSettings.htm");
  Expect<frmStartUp>("qvlSettings.htm");
}

}  // namespace
}  // namespace quorvale
