// The user's regional settings and the computer's own places, read one by one.
#pragma once

#include <string>

#include "platform/system_info.h"

namespace quorvale {

class GetInfomation {
 public:
  explicit GetInfomation(SystemInfo& system) : system_(system) {}

  std::string GetPositiveSignPosition() const { return system_.LocaleText(82); }
  std::string GetNegativeSignPosition() const { return system_.LocaleText(83); }
  std::string GetNegativeSign() const { return system_.LocaleText(81); }
  std::string GetPositiveSign() const { return system_.LocaleText(80); }
  std::string GetShortMonthName12() const { return system_.LocaleText(79); }
  std::string GetShortMonthName11() const { return system_.LocaleText(78); }
  std::string GetShortMonthName10() const { return system_.LocaleText(77); }
  std::string GetShortMonthName9() const { return system_.LocaleText(76); }
  std::string GetShortMonthName8() const { return system_.LocaleText(75); }
  std::string GetShortMonthName7() const { return system_.LocaleText(74); }
  std::string GetShortMonthName6() const { return system_.LocaleText(73); }
  std::string GetShortMonthName5() const { return system_.LocaleText(72); }
  std::string GetShortMonthName4() const { return system_.LocaleText(71); }
  std::string GetShortMonthName3() const { return system_.LocaleText(70); }
  std::string GetShortMonthName2() const { return system_.LocaleText(69); }
  std::string GetShortMonthName1() const { return system_.LocaleText(68); }
  std::string GetLongMonthName12() const { return system_.LocaleText(67); }
  std::string GetLongMonthName11() const { return system_.LocaleText(66); }
  std::string GetLongMonthName10() const { return system_.LocaleText(65); }
  std::string GetLongMonthName9() const { return system_.LocaleText(64); }
  std::string GetLongMonthName8() const { return system_.LocaleText(63); }
  std::string GetLongMonthName7() const { return system_.LocaleText(62); }
  std::string GetLongMonthName6() const { return system_.LocaleText(61); }
  std::string GetLongMonthName5() const { return system_.LocaleText(60); }
  std::string GetLongMonthName4() const { return system_.LocaleText(59); }
  std::string GetLongMonthName3() const { return system_.LocaleText(58); }
  std::string GetLongMonthName2() const { return system_.LocaleText(57); }
  std::string GetLongMonthName1() const { return system_.LocaleText(56); }
  std::string GetTimeFormat() const { return system_.LocaleText(0x1003); }
  std::string GetShortDateFormat() const { return system_.LocaleText(0x1F); }
  std::string GetTimeSeparator() const { return system_.LocaleText(0x1E); }
  std::string GetDateSeparator() const { return system_.LocaleText(0x1D); }
  std::string GetLeadingZerosForDecimal() const { return system_.LocaleText(0x12); }
  std::string GetNumberOfFractionalDigits() const { return system_.LocaleText(0x11); }
  std::string GetDigitGrouping() const { return system_.LocaleText(0x10); }
  std::string GetThousandSeparator() const { return system_.LocaleText(0x0F); }
  std::string GetCurrencySymbol() const { return system_.LocaleText(0x14); }
  std::string GetLanguage() const { return system_.LocaleText(0x02); }
  std::string GetCountry() const { return system_.LocaleText(0x06); }
  std::string GetLongDateFormat() const { return system_.LocaleText(0x20); }
  std::string GetLongNameDay1() const { return system_.LocaleText(0x2A); }
  std::string GetLongNameDay2() const { return system_.LocaleText(0x2B); }
  std::string GetLongNameDay3() const { return system_.LocaleText(0x2C); }
  std::string GetLongNameDay4() const { return system_.LocaleText(0x2D); }
  std::string GetLongNameDay5() const { return system_.LocaleText(0x2E); }
  std::string GetLongNameDay6() const { return system_.LocaleText(0x2F); }
  std::string GetLongNameDay7() const { return system_.LocaleText(0x30); }  // day 1 is Monday
  std::string GetShortNameDay1() const { return system_.LocaleText(0x31); }
  std::string GetShortNameDay2() const { return system_.LocaleText(0x32); }
  std::string GetShortNameDay3() const { return system_.LocaleText(0x33); }
  std::string GetShortNameDay4() const { return system_.LocaleText(0x34); }
  std::string GetShortNameDay5() const { return system_.LocaleText(0x35); }
  std::string GetShortNameDay6() const { return system_.LocaleText(0x36); }
  std::string GetShortNameDay7() const { return system_.LocaleText(0x37); }
  std::string GetDecimalSeparator() const { return system_.LocaleText(0x0E); }

  // The folder of temporary files with a trailing "\"; "" if there is none.
  std::string TempDir() const;
  std::string GetOS() const { return system_.Environment("os"); }
  std::string GetUSERNAME() const { return system_.Environment("username"); }
  std::string GetSystemDrive() const { return system_.Environment("systemdrive"); }
  std::string GetWinDir() const { return system_.Environment("windir"); }
  std::string SystemDir() const { return system_.SystemFolder(); }

 private:
  SystemInfo& system_;
};

}  // namespace quorvale
