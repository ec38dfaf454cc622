// F1 on each page opens the page's topic of the help file.
#include <gtest/gtest.h>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/pages/frmAccount.h"
#include "discovery/pages/FrmTwo.h"
#include "platform/host/host_platform.h"
#include "restore/pages/frmRFinish.h"
#include "restore/pages/frmROne.h"
#include "restore/pages/frmRTwo.h"
#include "restore/pages/frmRfour.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/pages/frmSchedule.h"
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
  Expect<frmAccount>("qvlSettings.htm");
}

}  // namespace
}  // namespace quorvale
