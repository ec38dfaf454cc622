// The shared procedures that show a message or work on a form.
#include "core/pages/page_procedures.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class PageProcedures : public testing::Test {
 protected:
  TestMachine machine_;
};

TEST_F(PageProcedures, MakeDirectoryPathMakesEveryFolderBeforeTheLastBackslash) {
  EXPECT_TRUE(MakeDirectoryPath(machine_.app(), "C:\\a\\b\\c\\"));
  EXPECT_TRUE(machine_.Exists("C:\\a\\b\\c"));
  EXPECT_TRUE(MakeDirectoryPath(machine_.app(), "C:\\p\\q"));
  EXPECT_TRUE(machine_.Exists("C:\\p"));
  EXPECT_FALSE(machine_.Exists("C:\\p\\q"));
}

TEST_F(PageProcedures, AFolderThatCannotBeMadeIsTold) {
  machine_.WriteFile("C:\\a", "a file in the way");
  machine_.Expect(ui::Answer::kOk, "Sorry Could not make the directory [C:\\a\\b\\] path. ");
  EXPECT_FALSE(MakeDirectoryPath(machine_.app(), "C:\\a\\b\\"));
}

TEST_F(PageProcedures, OpenUrlStartsTheBrowserOrTellsThatThereIsNone) {
  machine_.Expect(ui::Answer::kOk, "Unable to open URL. Install browser first!");
  OpenUrl(machine_.app(), "https://a.example/");
  EXPECT_TRUE(machine_.computer().Started().empty());
  machine_.SetString("HKEY_CLASSES_ROOT\\http\\shell\\open\\command", "", "\"C:\\web.exe\" %1");
  OpenUrl(machine_.app(), "https://a.example/");
  EXPECT_EQ(machine_.computer().Started(),
            std::vector<std::string>{"run|C:\\web.exe https://a.example/"});
}

TEST_F(PageProcedures, RoundPageDependsOnTheSystemAndSparesAMinimisedPage) {
  Application& app = machine_.app();
  ui::Form page(app.ui(), "page");
  page.SetState(ui::WindowState::kMinimized);
  RoundPage(app, page);
  EXPECT_EQ(page.corner, 0);
  page.SetState(ui::WindowState::kNormal);
  RoundPage(app, page);
  EXPECT_EQ(page.corner, 11);
  app.session().gOSName = kWindowsVista;
  RoundPage(app, page);
  EXPECT_EQ(page.corner, 10);
}

}  // namespace
}  // namespace quorvale
