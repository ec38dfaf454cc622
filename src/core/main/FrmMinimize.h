// A stand-by window for a long run, with one button that leads back to the main window.
#pragma once

#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class FrmMinimize : public ui::Form {
 public:
  static constexpr char kName[] = "FrmMinimize";
  explicit FrmMinimize(Application& app);

  // Ends the run.
  void Unload() override;

  ui::CommandButton Command1;
  void Command1_Click();

 private:
  void PlaceControls();
  void ConnectHandlers();

  Application& app_;
};

}  // namespace quorvale
