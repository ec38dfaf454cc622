#include "core/main/FrmQuickSteps.h"

namespace quorvale {
namespace {

constexpr ui::Color kBack = ui::Rgb(130, 172, 216);
constexpr ui::Color kText = ui::Rgb(65, 65, 65);

}  // namespace

FrmQuickSteps::FrmQuickSteps(Application& app)
    : ui::Form(app.ui(), kName),
      Label1(*this, "Label1", "Getting ready for Quick Backup"),
      Img1(*this, "Img1"),
      Img2(*this, "Img2"),
      Img3(*this, "Img3"),
      LblStep1(*this, "LblStep1", "Preparing Backup"),
      LblStep3(*this, "LblStep3", "Listing items for backup"),
      LblStep4(*this, "LblStep4", "Preparing backup items for review") {
  PlaceControls();
}

void FrmQuickSteps::PlaceControls() {
  borderless = true;
  back_color = kBack;
  SetCaption(kApplicationTitle);
  SetSize(340, 150);
  Label1.bounds = {16, 12, 308, 22};
  Label1.bold = true;
  Label1.font_size = 10;
  Label1.fore_color = kText;
  for (int row = 1; row <= 3; ++row) {
    const int top = 46 + (row - 1) * 32;
    Image(row).bounds = {20, top, 16, 16};
    Step(row).bounds = {48, top, 276, 18};
    Step(row).fore_color = kText;
  }
}

void FrmQuickSteps::Load() { MakeRound(); }

void FrmQuickSteps::MakeRound() { corner = 12; }

void FrmQuickSteps::BeginRow(int row) {
  for (int other = 1; other <= 3; ++other) Step(other).bold = other == row;
  Image(row).picture = "SCANNING";
  Refresh();
}

void FrmQuickSteps::EndRow(int row) {
  Image(row).picture = "OK";
  Step(row).bold = false;
  Refresh();
}

ui::PictureBox& FrmQuickSteps::Image(int row) { return row == 1 ? Img1 : row == 2 ? Img2 : Img3; }

ui::Label& FrmQuickSteps::Step(int row) {
  return row == 1 ? LblStep1 : row == 2 ? LblStep3 : LblStep4;
}

}  // namespace quorvale
