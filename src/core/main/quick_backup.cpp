#include "core/main/quick_backup.h"

#include "backup/pages/frmThree.h"
#include "discovery/pages/FrmTwo.h"

namespace quorvale {

void CommitCompleteBackup(Application& app, const std::string& file_name) {
  FrmTwo& items = app.Get<FrmTwo>();
  items.TickAll();
  items.savedetails();
  frmThree& options = app.Get<frmThree>();
  if (!file_name.empty()) options.txtcurrent.text = file_name;
  options.savedetails();
  // The media page is passed over, so an earlier job's choice must not stand.
  Session& session = app.session();
  session.gMediaFtp = false;
  session.gMediaDisc = false;
  session.gMediaDiscCount = 0;
}

}  // namespace quorvale
