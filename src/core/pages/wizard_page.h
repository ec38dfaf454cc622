// A page of a wizard: it goes on, back and away without knowing the pages beside it.
#pragma once

#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class WizardPage : public ui::Form {
 public:
  // What the pages of a wizard do for one another. ----------------------------------------------

  // A page before this one is about to show it: it takes over from the session what was committed
  // there. False if it has gone on by itself meanwhile, so that it is not to be shown.
  virtual bool TakeOver() { return true; }
  // A page before this one has shown it and gone.
  virtual void Entered() {}
  // A later page is about to act on what was chosen here. False, after a message, if that can't be
  // done now.
  virtual bool MayBeUsed() { return true; }
  // A later page could not do with what was chosen here and has shown this page again.
  virtual void SentBack() {}
  // Whether the page can be left by its Next.
  virtual void AllowNext(bool allowed);
  // A later page has chosen a folder: one is wanted after all, whatever was said here.
  virtual void FolderWanted() {}
  // The run that this page led to is done with its archive, made or not.
  virtual void ArchiveOver() {}
  // The run that this page led to is over.
  virtual void RunOver() {}

 protected:
  WizardPage(Application& app, const char* name, PageRole role);

  // Another page of any wizard, made and loaded if it is not there.
  WizardPage& PageOf(PageRole role);
  // Shows another page in place of this one, with its step marked.
  void GoOnTo(PageRole role);
  // The same for a page that can't do with what was chosen on an earlier one.
  void SendBackTo(PageRole role);
  // The page before this one, as it was left.
  void Back();
  // Tells the loaded pages of this wizard what becomes of their run: one of the two above.
  void TellPages(void (WizardPage::*what)());
  // Away from the wizard, with what was entered in it.
  void Cancel();

  Application& app_;

 private:
  void Replace(const PageRow& row);

  const PageRole role_;
};

// The row of a page class in the page table.
template <class Page>
PageRow RowFor(PageRole role, StepSide side, int step) {
  return {role, side, step, [](Application& app) -> WizardPage& { return app.Get<Page>(); },
          [](Application& app) -> WizardPage* { return app.Loaded<Page>(); }};
}

}  // namespace quorvale
