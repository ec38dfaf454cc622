#include "backup/run/disc_delivery.h"

#include <gtest/gtest.h>

#include "backup/fake_media.h"
#include "backup/run/disc_folder.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using Room = DiscDelivery::Room;
using Strings = std::vector<std::string>;

constexpr char kPart[] = "C:\\Out\\CDbackup\\Job.obk";

class DiscDeliveryTest : public testing::Test {
 protected:
  DiscDeliveryTest() {
    EXPECT_TRUE(DiscFolder(program_, "C:\\Out\\CDbackup").Make());
    machine_.WriteFile(kPart, std::string((2u << 20) + 300000, 'x'));
    program_.session().disc_drive = 3;
  }

  TestMachine machine_;
  backup_test::FakeFtp ftp_;
  backup_test::FakeDiscs discs_;
  Platform platform_{backup_test::WithMedia(machine_.platform(), ftp_, discs_)};
  Program program_{platform_};
  DiscDelivery delivery_{program_};
};

TEST_F(DiscDeliveryTest, EveryFileOfTheFolderIsAPart) {
  machine_.WriteFile("C:\\Out\\CDbackup\\Job.z01", "part");
  EXPECT_EQ(delivery_.Parts("C:\\Out\\CDbackup"), (Strings{kPart, "C:\\Out\\CDbackup\\Job.z01"}));
  EXPECT_EQ(delivery_.Parts("C:\\Nowhere"), Strings());
}

TEST_F(DiscDeliveryTest, LooksForRoomInTheDriveOfTheJob) {
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kEnough);
  EXPECT_EQ(discs_.opened, 3);
}

TEST_F(DiscDeliveryTest, RoomIsComparedInWholeMegabytes) {
  discs_.free_bytes = 2u << 20;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kEnough);
  discs_.free_bytes = 1u << 20;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kTooLittle);
  EXPECT_EQ(WholeMegabytes(524287), 0);
  EXPECT_EQ(WholeMegabytes(524288), 1);
}

TEST_F(DiscDeliveryTest, AnEmptyDriveHasNoRoomForASmallFileEither) {
  machine_.WriteFile(kPart, "small");
  discs_.medium = false;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kTooLittle);
}

TEST_F(DiscDeliveryTest, SaysWhyThereIsNoDrive) {
  discs_.opens = false;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kDriveRefused);
  program_.session().disc_drive = -1;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kDriveRefused);
  discs_.initialises = false;
  EXPECT_EQ(delivery_.FindRoom(kPart), Room::kNoWriter);
}

TEST_F(DiscDeliveryTest, APartKeepsItsNameOnTheDisc) {
  const DiscEvents events{.file_added = [] {},
                          .write_started = [] {},
                          .progress = [](std::uint64_t, std::uint64_t) {},
                          .keep_going = [] { return true; }};
  EXPECT_TRUE(delivery_.Burn(kPart, events));
  EXPECT_EQ(discs_.burnt, Strings{std::string(kPart) + " as Job.obk"});
  discs_.starts = false;
  EXPECT_FALSE(delivery_.Burn(kPart, events));
}

}  // namespace
}  // namespace quorvale
