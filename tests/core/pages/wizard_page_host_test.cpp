// A page of a wizard among pages and a window of the test's own: on, back and away.
#include "core/pages/wizard_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/test_machine.h"

namespace quorvale {
namespace {

using Lines = std::vector<std::string>;

// The window, which writes down what it is asked for and what the pages do.
class Window : public PageHost {
 public:
  explicit Window(ui::Ui& ui) : form_(ui, "Window") {}
  ui::Control& panel() override { return panel_; }
  void Show() override {}
  void MarkStep(StepSide side, int step) override {
    const char* name = side == StepSide::kBackup ? "backup" : "restore";
    lines.push_back(std::string("mark ") + name + " " + std::to_string(step));
  }
  void EnableSideButtons(bool) override {}
  void EnableHomeButton() override {}
  void LeavePages(StepSide side) override {
    lines.push_back(side == StepSide::kBackup ? "leave backup" : "leave restore");
  }
  void HomePage() override {}
  void ShowNextSchedule() override {}
  void ShowUnseenAccount() override {}
  void SetEnabled(bool) override {}
  bool IsEnabled() const override { return true; }

  Lines lines;
  bool next_takes_over = true;

 private:
  ui::Form form_;
  ui::PictureBox panel_{form_, "panel"};
};

template <PageRole role, char letter>
class Page : public WizardPage {
 public:
  static constexpr char kName[] = {letter, '\0'};
  explicit Page(Application& app) : WizardPage(app, kName, role) {}

  bool TakeOver() override {
    Tell("takes over");
    return window().next_takes_over;
  }
  void Entered() override { Tell(Visible() ? "is entered" : "is entered unseen"); }
  void SentBack() override { Tell(Visible() ? "is sent back" : "is sent back unseen"); }
  void Load() override { Tell("is loaded"); }
  void RunOver() override { Tell("hears that the run is over"); }

  using WizardPage::Back;
  using WizardPage::Cancel;
  using WizardPage::GoOnTo;
  using WizardPage::PageOf;
  using WizardPage::SendBackTo;
  using WizardPage::TellPages;

  ui::CommandButton cmdNext{*this, "cmdNext"};

 private:
  Window& window() { return static_cast<Window&>(app_.page_host()); }
  void Tell(const std::string& what) { window().lines.push_back(kName + (" " + what)); }
};
using Job = Page<PageRole::kBackupJob, 'J'>;
using Items = Page<PageRole::kBackupItems, 'I'>;
using Review = Page<PageRole::kBackupReview, 'R'>;
using OtherJob = Page<PageRole::kRestoreJob, 'O'>;

class WizardPageTest : public testing::Test {
 protected:
  WizardPageTest() {
    pages_.host = [this](Application&) -> PageHost& { return window_; };
    pages_.rows = {RowFor<Job>(PageRole::kBackupJob, StepSide::kBackup, 0),
                   RowFor<Items>(PageRole::kBackupItems, StepSide::kBackup, 1),
                   RowFor<Review>(PageRole::kBackupReview, StepSide::kBackup, 4),
                   RowFor<OtherJob>(PageRole::kRestoreJob, StepSide::kRestore, 0)};
  }
  // What the pages and the window have said since.
  Lines Said() {
    Lines said;
    said.swap(window_.lines);
    return said;
  }

  TestMachine machine_;
  Window window_{machine_.ui()};
  PageTable pages_;
  Application app_{machine_.platform(), pages_};
};

TEST_F(WizardPageTest, GoesOnToAPageThatTakesOverFirst) {
  Job& job = app_.Get<Job>();
  job.Show();
  Said();
  job.GoOnTo(PageRole::kBackupItems);
  EXPECT_EQ(Said(), (Lines{"I is loaded", "I takes over", "mark backup 1", "I is entered"}));
  EXPECT_FALSE(job.Visible());
  EXPECT_TRUE(app_.Get<Items>().Visible());
}

TEST_F(WizardPageTest, StaysWhereTheNextPageHasGoneOnByItself) {
  Job& job = app_.Get<Job>();
  job.Show();
  Said();
  window_.next_takes_over = false;
  job.GoOnTo(PageRole::kBackupItems);
  EXPECT_EQ(Said(), (Lines{"I is loaded", "I takes over"}));
  EXPECT_TRUE(job.Visible());
  EXPECT_FALSE(app_.Get<Items>().Visible());
}

TEST_F(WizardPageTest, GoesBackToTheRowBeforeItsOwnWhateverTheSteps) {
  Review& review = app_.Get<Review>();
  review.Show();
  Said();
  review.Back();
  EXPECT_EQ(Said(), (Lines{"I is loaded", "mark backup 1"}));
  EXPECT_FALSE(review.Visible());
  EXPECT_TRUE(app_.Get<Items>().Visible());
}

TEST_F(WizardPageTest, SendsBackWhatItCannotUseAndSaysSoToThePageThatIsShown) {
  Review& review = app_.Get<Review>();
  review.Show();
  Said();
  review.SendBackTo(PageRole::kBackupJob);
  EXPECT_EQ(Said(), (Lines{"J is loaded", "mark backup 0", "J is sent back"}));
  EXPECT_FALSE(review.Visible());
  EXPECT_TRUE(app_.Get<Job>().Visible());
}

TEST_F(WizardPageTest, CancelLeavesTheWizardThatThePageStandsIn) {
  app_.Get<OtherJob>().Cancel();
  app_.Get<Items>().Cancel();
  EXPECT_EQ(Said(), (Lines{"O is loaded", "leave restore", "I is loaded", "leave backup"}));
}

TEST_F(WizardPageTest, ARunTellsTheLoadedPagesOfItsWizardAndMakesNone) {
  Review& review = app_.Get<Review>();
  app_.Get<Job>();
  app_.Get<OtherJob>();
  Said();
  review.TellPages(&WizardPage::RunOver);
  EXPECT_EQ(Said(), (Lines{"J hears that the run is over", "R hears that the run is over"}));
}

TEST_F(WizardPageTest, AnotherPageIsMadeOnceAndKeepsItsState) {
  Job& job = app_.Get<Job>();
  Items& items = app_.Get<Items>();
  EXPECT_EQ(&job.PageOf(PageRole::kBackupItems), &items);
  EXPECT_TRUE(items.cmdNext.enabled);
  job.PageOf(PageRole::kBackupItems).AllowNext(false);
  EXPECT_FALSE(items.cmdNext.enabled);
  EXPECT_TRUE(job.cmdNext.enabled);
  job.PageOf(PageRole::kBackupItems).AllowNext(true);
  EXPECT_TRUE(items.cmdNext.enabled);
}

TEST_F(WizardPageTest, APageWithoutWishesTakesOverAndMayBeUsed) {
  class Plain : public WizardPage {
   public:
    explicit Plain(Application& app) : WizardPage(app, "Plain", PageRole::kSchedule) {}
  };
  Plain plain(app_);
  EXPECT_TRUE(plain.TakeOver());
  EXPECT_TRUE(plain.MayBeUsed());
  plain.AllowNext(false);  // it has no such button
  plain.Entered();
  plain.SentBack();
  plain.FolderWanted();
  plain.ArchiveOver();
  plain.RunOver();
  EXPECT_EQ(Said(), Lines{});
}

}  // namespace
}  // namespace quorvale
