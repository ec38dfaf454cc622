// What tests of the delivery's pages stand on: a program of its own on a machine, with an FTP
// client and a disc writer that obey.
#pragma once

#include <gtest/gtest.h>

#include "backup/fake_media.h"
#include "core/main/FrmWelcome.h"
#include "core/main/page_sets.h"
#include "support/test_machine.h"

namespace quorvale::backup_test {

class MediaProgram : public testing::Test {
 protected:
  MediaProgram()
      : platform_{WithMedia(machine_.platform(), ftp_, discs_)}, app_(platform_, ProgramPages()) {
    machine_.ui().loaded_forms = [this] { return app_.LoadedForms(); };
    machine_.ui().after_step = [this] { app_.CollectUnloaded(); };
    app_.Get<FrmWelcome>().Show();
  }
  ~MediaProgram() override {
    machine_.ui().loaded_forms = nullptr;
    machine_.ui().after_step = nullptr;
    machine_.ui().on_pump = nullptr;
  }

  TestMachine machine_;
  FakeFtp ftp_;
  FakeDiscs discs_;
  Platform platform_;
  Application app_;
};

}  // namespace quorvale::backup_test
