#include "core/program/raised_request.h"

#include <gtest/gtest.h>

#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kShared[] = "C:\\ProgramData";
constexpr char kFolder[] = "C:\\ProgramData\\Tarnwick\\Quorvale\\";

class RaisedRequestTest : public testing::Test {
 protected:
  RaisedRequestTest() { machine_.computer().SetEnvironment("allusersprofile", kShared); }

  TestMachine machine_{"vista"};
  Program program_{machine_.platform()};
};

TEST_F(RaisedRequestTest, ItIsTakenOnce) {
  EXPECT_FALSE(TakeRaisedRequest(program_));
  EXPECT_TRUE(LeaveRaisedRequest(program_));
  const std::optional<RaisedRequest> request = TakeRaisedRequest(program_);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->user, "Anna");
  EXPECT_EQ(request->data_folder, machine_.AppData() + "\\Tarnwick\\Quorvale");
  EXPECT_EQ(request->opened_file, "");
  EXPECT_TRUE(IsOwnRequest(program_, *request));
  EXPECT_FALSE(TakeRaisedRequest(program_));
}

TEST_F(RaisedRequestTest, TheOwnOneComesBeforeAnotherUsers) {
  LeaveRaisedRequest(program_);
  machine_.WriteFile(std::string(kFolder) + "Rights for Aaron.txt", "Aaron\r\nC:\\Aaron\r\n\r\n");
  EXPECT_EQ(TakeRaisedRequest(program_)->user, "Anna");
  const std::optional<RaisedRequest> other = TakeRaisedRequest(program_);
  ASSERT_TRUE(other);
  EXPECT_EQ(other->user, "Aaron");
  EXPECT_FALSE(IsOwnRequest(program_, *other));
}

TEST_F(RaisedRequestTest, ADamagedOneIsNoneAndGoes) {
  const std::string path = std::string(kFolder) + "Rights for Anna.txt";
  machine_.WriteFile(path, "Anna");
  EXPECT_FALSE(TakeRaisedRequest(program_));
  EXPECT_FALSE(machine_.Exists(path));
}

TEST_F(RaisedRequestTest, WithoutAPlaceForAllUsersItStandsInTheUsersOwn) {
  machine_.computer().SetEnvironment("allusersprofile", "");
  EXPECT_TRUE(LeaveRaisedRequest(program_));
  EXPECT_TRUE(machine_.AllBelow(kShared).empty());
  EXPECT_TRUE(TakeRaisedRequest(program_));
}

}  // namespace
}  // namespace quorvale
