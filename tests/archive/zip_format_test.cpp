// Records of the format: times, and numbers that need the long form.
#include "archive/zip_format.h"

#include <gtest/gtest.h>

#include "archive/bytes.h"
#include "support/memory_platform.h"

namespace quorvale::zip_test {
namespace {

using zip::Record;

Record Parse(const std::string& header) {
  MemorySystem system;
  Record record;
  EXPECT_EQ(zip::ParseCentralHeader(zip::AsBytes(header), header.size(), system, &record),
            header.size());
  return record;
}

Record Sample() {
  Record record;
  record.name = "Job\\a.txt";
  record.method = zip::kMethodDeflated;
  record.crc = 0x12345678;
  record.attributes = 33;
  record.part = 3;
  record.offset = 1000;
  record.compressed_size = 50;
  record.size = 100;
  record.modified = 128'000'000'123'456'789;
  return record;
}

TEST(ZipFormat, ADirectoryHeaderReadsBack) {
  const Record record = Parse(zip::CentralHeader(Sample()));
  EXPECT_EQ(record.name, "Job\\a.txt");
  EXPECT_EQ(record.method, zip::kMethodDeflated);
  EXPECT_EQ(record.crc, 0x12345678u);
  EXPECT_EQ(record.attributes, 33u);
  EXPECT_EQ(record.part, 3u);
  EXPECT_EQ(record.offset, 1000u);
  EXPECT_EQ(record.compressed_size, 50u);
  EXPECT_EQ(record.size, 100u);
  EXPECT_EQ(record.modified, 128'000'000'123'456'789);
  EXPECT_FALSE(record.zip64);
}

TEST(ZipFormat, LongNumbersReadBackInEveryCombination) {
  for (int bits = 0; bits < 8; ++bits) {
    for (const std::uint64_t large : {0xFFFFFFFFull, 0x123456789Aull}) {
      Record written = Sample();
      if ((bits & 1) != 0) written.size = large;
      if ((bits & 2) != 0) written.compressed_size = large + 1;
      if ((bits & 4) != 0) written.offset = large + 2;
      const Record record = Parse(zip::CentralHeader(written));
      EXPECT_EQ(record.size, written.size);
      EXPECT_EQ(record.compressed_size, written.compressed_size);
      EXPECT_EQ(record.offset, written.offset);
      EXPECT_EQ(record.zip64, bits != 0);
    }
  }
}

TEST(ZipFormat, AHeaderThatIsCutOffIsRefused) {
  MemorySystem system;
  const std::string header = zip::CentralHeader(Sample());
  for (std::size_t size = 0; size < header.size(); ++size) {
    Record record;
    EXPECT_EQ(zip::ParseCentralHeader(zip::AsBytes(header), size, system, &record), 0u);
  }
}

TEST(ZipFormat, ShortEndRecordsAreUsedWhereTheyDo) {
  zip::DirectoryEnd end;
  end.count = 65534;
  EXPECT_EQ(zip::EndRecords(end, 0, end.count).size(), zip::kEndSize);
  const std::size_t both = zip::kZip64EndSize + zip::kZip64LocatorSize + zip::kEndSize;
  end.count = 65535;
  EXPECT_EQ(zip::EndRecords(end, 0, end.count).size(), both);
  end.count = 1;
  end.directory_offset = 0xFFFFFFFF;
  EXPECT_EQ(zip::EndRecords(end, 0, end.count).size(), both);
  end.directory_offset = 0;
  end.directory_size = 0xFFFFFFFF;
  EXPECT_EQ(zip::EndRecords(end, 0, end.count).size(), both);
}

TEST(ZipFormat, LocalTimesAreRoundedDownToTwoSeconds) {
  EXPECT_EQ(zip::DosTimeOf({2006, 11, 14, 22, 5, 9, 3}),
            (26u << 25) | (11u << 21) | (14u << 16) | (22u << 11) | (5u << 5) | 4u);
  EXPECT_EQ(zip::DosTimeOf({1979, 12, 31, 23, 59, 59, 2}), (1u << 21) | (1u << 16));
  EXPECT_EQ(zip::DosTimeOf({2108, 1, 1, 0, 0, 0, 1}) >> 25, 127u);
}

TEST(ZipFormat, LocalTimesReadBackInTheTimeZoneOfTheReader) {
  MemorySystem system;
  for (const int hours : {-11, 0, 2, 13}) {
    system.hours_east = hours;
    for (const FileTime time :
         {119'700'000'000'000'000, 128'000'000'120'000'000, 150'000'000'000'000'000}) {
      const FileTime back = zip::FromDosTime(zip::DosTimeOf(system.ToLocal(time)), system);
      EXPECT_LE(back, time);
      EXPECT_GT(back, time - 20'000'000);
    }
  }
}

TEST(ZipFormat, AnImpossibleLocalTimeIsSomeTime) {
  MemorySystem system;
  for (const std::uint32_t time : {0u, 0xFFFFFFFFu, 0x00210000u, 15u << 21}) {
    EXPECT_GT(zip::FromDosTime(time, system), 0);
  }
}

// A directory header of another tool, with extra fields of its own.
std::string ForeignHeader(const std::string& name, const std::string& extra, int made_by,
                          int flags) {
  std::string header;
  zip::Put32(&header, zip::kCentralSignature);
  zip::Put16(&header, static_cast<std::uint64_t>(made_by) << 8 | 30);
  zip::Put16(&header, 20);
  zip::Put16(&header, static_cast<std::uint64_t>(flags));
  zip::Put16(&header, 0);
  zip::Put32(&header, (26u << 25) | (1u << 21) | (1u << 16));
  for (int i = 0; i < 3; ++i) zip::Put32(&header, 0);
  zip::Put16(&header, name.size());
  zip::Put16(&header, extra.size());
  header += std::string(14, '\0');
  return header + name + extra;
}

TEST(ZipFormat, AUnicodePathFieldGivesTheNameOnlyIfItBelongsToIt) {
  std::string extra("\x75\x70\x0A\x00\x01", 5);
  std::string name = "gr\x81n";  // in the code page of a console
  zip::Put32(&extra, 0xFE64CC04);
  extra += "gr\xC3\xBCn";
  const Record wrong = Parse(ForeignHeader(name, extra, 0, 0));
  EXPECT_EQ(wrong.name, "gr\xC2\x81n");
  // The check value of the very name.
  MemorySystem system;
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : name) {
    crc ^= static_cast<std::uint8_t>(c);
    for (int i = 0; i < 8; ++i) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
  }
  std::string right("\x75\x70\x0A\x00\x01", 5);
  zip::Put32(&right, crc ^ 0xFFFFFFFF);
  right += "gr\xC3\xBCn";
  EXPECT_EQ(Parse(ForeignHeader(name, right, 0, 0)).name, "gr\xC3\xBCn");
}

TEST(ZipFormat, NamesOfUnixToolsAreUtf8IfTheyCanBe) {
  EXPECT_EQ(Parse(ForeignHeader("gr\xC3\xBCn", "", 3, 0)).name, "gr\xC3\xBCn");
  EXPECT_EQ(Parse(ForeignHeader("gr\xFCn", "", 3, 0)).name, "gr\xC3\xBCn");
  EXPECT_EQ(Parse(ForeignHeader("gr\xC3\xBCn", "", 0, 0)).name, "gr\xC3\x83\xC2\xBCn");
  EXPECT_EQ(Parse(ForeignHeader("gr\xC3\xBCn", "", 0, zip::kFlagUtf8)).name, "gr\xC3\xBCn");
}

TEST(ZipFormat, PaddingAndFieldsThatAreCutOffAreIgnored) {
  EXPECT_EQ(Parse(ForeignHeader("a", std::string(3, '\0'), 0, 0)).name, "a");
  EXPECT_EQ(Parse(ForeignHeader("a", std::string("\x0A\x00\xFF\x00zz", 6), 0, 0)).name, "a");
  EXPECT_EQ(Parse(ForeignHeader("a", std::string("\x55\x54\x02\x00\x01\x00", 6), 0, 0)).name, "a");
}

}  // namespace
}  // namespace quorvale::zip_test
