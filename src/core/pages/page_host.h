// What a page may ask of the window it stands in, and what the pages are given of the main room
// without knowing it: which page stands where.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quorvale {

class Account;
class Application;
class WizardPage;
namespace ui {
class Control;
}

// The five lists of steps, each with a background of its own in the step panel.
enum class StepSide { kBackup, kRestore, kSettings, kSchedule, kLog };

class PageHost {
 public:
  virtual ~PageHost() = default;

  // The control that pages lie over.
  virtual ui::Control& panel() = 0;
  // Shows the window, if it is hidden, as the one that is worked with.
  virtual void Show() = 0;
  // Bold on that step's label, plain on the others, the arrow beside it. Steps count from 0.
  virtual void MarkStep(StepSide side, int step) = 0;
  // Home, support, website, other products, about.
  virtual void EnableSideButtons(bool enabled) = 0;
  // A run has ended: its page can be left.
  virtual void EnableHomeButton() = 0;
  // A page's cancel: hides the panels, gives the main buttons back, and unloads the pages of a
  // backup or restore wizard with what was entered there. The calling page's object outlives it.
  virtual void LeavePages(StepSide side) = 0;
  // The home page from anywhere: all pages hidden, both wizards unloaded, the status read again.
  virtual void HomePage() = 0;
  // Reads the next scheduled run again and shows it.
  virtual void ShowNextSchedule() = 0;
  // Reads again which result of a run nobody has looked at yet, and shows its sentence.
  virtual void ShowUnseenAccount() = 0;
  // A window that is not enabled takes neither mouse nor keyboard.
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool IsEnabled() const = 0;
};

// The pages by what they are for. A page says where it wants to go in these words only.
enum class PageRole {
  kBackupJob,
  kBackupItems,
  kBackupOptions,
  kBackupMedia,
  kBackupReview,
  kBackupRun,
  kRestoreJob,
  kRestoreItems,
  kRestoreReview,
  kRestoreRun,
  kSchedule,
  kScheduleList,
  kSettings,
  kStartUp,
};

// Where a page stands in its wizard.
struct PageRow {
  PageRole role;
  StepSide side;
  int step;                             // as PageHost::MarkStep counts
  WizardPage& (*page)(Application&);    // made and loaded if it is not there
  WizardPage* (*loaded)(Application&);  // null if it is not there
};

// What the main room tells the pages.
struct PageTable {
  // The main window, made and loaded if it is not there.
  std::function<PageHost&(Application&)> host;
  // The wizards, each with its pages in their order.
  std::vector<PageRow> rows;
  // Commits a complete backup as if the pages of items, options and media had been gone through:
  // all that this computer has, the options as they stand, the hard disk alone. `file_name` goes
  // into the page of options first, unless it is empty.
  std::function<void(Application&, const std::string& file_name)> commit_complete_backup;
  // Opens the wizard of an account's run with what EntriesToTryAgain gives of it ticked.
  std::function<void(Application&, const Account&)> try_again;
};

}  // namespace quorvale
