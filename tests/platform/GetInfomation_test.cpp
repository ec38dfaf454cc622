#include "platform/GetInfomation.h"

#include <gtest/gtest.h>

#include "support/memory_platform.h"

namespace quorvale {
namespace {

// Answers an item with its number.
class NumberedLocale : public MemorySystem {
 public:
  std::string LocaleText(int type) override { return std::to_string(type); }
};

TEST(GetInfomation, EachItemIsAskedForByItsNumber) {
  NumberedLocale system;
  const GetInfomation info(system);
  const std::vector<std::pair<std::string, int>> items = {
      {info.GetPositiveSignPosition(), 82},
      {info.GetNegativeSignPosition(), 83},
      {info.GetNegativeSign(), 81},
      {info.GetPositiveSign(), 80},
      {info.GetShortMonthName12(), 79},
      {info.GetShortMonthName11(), 78},
      {info.GetShortMonthName10(), 77},
      {info.GetShortMonthName9(), 76},
      {info.GetShortMonthName8(), 75},
      {info.GetShortMonthName7(), 74},
      {info.GetShortMonthName6(), 73},
      {info.GetShortMonthName5(), 72},
      {info.GetShortMonthName4(), 71},
      {info.GetShortMonthName3(), 70},
      {info.GetShortMonthName2(), 69},
      {info.GetShortMonthName1(), 68},
      {info.GetLongMonthName12(), 67},
      {info.GetLongMonthName11(), 66},
      {info.GetLongMonthName10(), 65},
      {info.GetLongMonthName9(), 64},
      {info.GetLongMonthName8(), 63},
      {info.GetLongMonthName7(), 62},
      {info.GetLongMonthName6(), 61},
      {info.GetLongMonthName5(), 60},
      {info.GetLongMonthName4(), 59},
      {info.GetLongMonthName3(), 58},
      {info.GetLongMonthName2(), 57},
      {info.GetLongMonthName1(), 56},
      {info.GetTimeFormat(), 4099},
      {info.GetShortDateFormat(), 31},
      {info.GetTimeSeparator(), 30},
      {info.GetDateSeparator(), 29},
      {info.GetLeadingZerosForDecimal(), 18},
      {info.GetNumberOfFractionalDigits(), 17},
      {info.GetDigitGrouping(), 16},
      {info.GetThousandSeparator(), 15},
      {info.GetCurrencySymbol(), 20},
      {info.GetLanguage(), 2},
      {info.GetCountry(), 6},
      {info.GetLongDateFormat(), 32},
      {info.GetLongNameDay1(), 42},
      {info.GetLongNameDay2(), 43},
      {info.GetLongNameDay3(), 44},
      {info.GetLongNameDay4(), 45},
      {info.GetLongNameDay5(), 46},
      {info.GetLongNameDay6(), 47},
      {info.GetLongNameDay7(), 48},
      {info.GetShortNameDay1(), 49},
      {info.GetShortNameDay2(), 50},
      {info.GetShortNameDay3(), 51},
      {info.GetShortNameDay4(), 52},
      {info.GetShortNameDay5(), 53},
      {info.GetShortNameDay6(), 54},
      {info.GetShortNameDay7(), 55},
      {info.GetDecimalSeparator(), 14},
  };
  for (const auto& [asked, number] : items) EXPECT_EQ(asked, std::to_string(number));
}

TEST(GetInfomation, TheEnvironmentIsRead) {
  NumberedLocale system;
  system.environment = {{"os", "Windows_NT"},
                        {"username", "Anna"},
                        {"systemdrive", "C:"},
                        {"windir", "C:\\Windows"},
                        {"temp", "C:\\Temp"}};
  const GetInfomation info(system);
  EXPECT_EQ(info.GetOS(), "Windows_NT");
  EXPECT_EQ(info.GetUSERNAME(), "Anna");
  EXPECT_EQ(info.GetSystemDrive(), "C:");
  EXPECT_EQ(info.GetWinDir(), "C:\\Windows");
  EXPECT_EQ(info.SystemDir(), "C:\\Windows\\system32");
  EXPECT_EQ(info.TempDir(), "C:\\Temp\\");
  system.environment["temp"] = "C:\\Temp\\";
  EXPECT_EQ(info.TempDir(), "C:\\Temp\\");
}

TEST(GetInfomation, AnEmptyTempVariableStaysEmpty) {
  NumberedLocale system;
  EXPECT_EQ(GetInfomation(system).TempDir(), "");
}

}  // namespace
}  // namespace quorvale
