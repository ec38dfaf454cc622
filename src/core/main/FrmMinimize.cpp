#include "core/main/FrmMinimize.h"

namespace quorvale {

FrmMinimize::FrmMinimize(Application& app)
    : ui::Form(app.ui(), kName), Command1(*this, "Command1", "&Open Quorvale"), app_(app) {
  PlaceControls();
  ConnectHandlers();
}

void FrmMinimize::PlaceControls() {
  SetCaption(kApplicationTitle);
  SetSize(180, 46);
  Command1.bounds = {10, 10, 160, 26};
  Command1.tab_index = 0;
  Command1.is_default = true;
}

void FrmMinimize::ConnectHandlers() {
  Command1.on_click = [this] { Command1_Click(); };
  on_close_request = [this] { app_.Unload(kName); };
}

void FrmMinimize::Unload() { app_.End(); }

void FrmMinimize::Command1_Click() {
  Hide();
  app_.page_host().Show();
}

}  // namespace quorvale
