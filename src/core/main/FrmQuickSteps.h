// The small window that shows how far the preparation of a quick backup is.
#pragma once

#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class FrmQuickSteps : public ui::Form {
 public:
  static constexpr char kName[] = "FrmQuickSteps";
  explicit FrmQuickSteps(Application& app);

  void Load() override;

  ui::Label Label1;
  ui::PictureBox Img1, Img2, Img3;
  ui::Label LblStep1, LblStep3, LblStep4;

  void MakeRound();
  // Rows 1 to 3: the row in work is bold and has the picture "SCANNING", a finished one "OK".
  void BeginRow(int row);
  void EndRow(int row);

 private:
  void PlaceControls();
  ui::PictureBox& Image(int row);
  ui::Label& Step(int row);
};

}  // namespace quorvale
