#include "conelink/select_commands.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"

namespace penlog {
namespace {

class SelectCommands : public ::testing::Test {
 protected:
  SelectCommands() { LinkWorld::ClearState(); }
  ~SelectCommands() override { LinkWorld::ClearState(); }
  static void Put(int channel, const std::string& letter, std::int16_t unit = 0) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelLetter(channel) = letter;
    channels.ChannelModule(channel) = unit;
  }
  static void PutWholeCone() {
    Put(1, "T");
    Put(2, "F");
    Put(3, "P");
    Put(8, "X");
    Put(9, "Y");
    Put(18, "V");
    Put(19, "s");
    Put(20, "r");
    Put(21, "b");
    Put(30, "U");
  }
};

TEST_F(SelectCommands, FamiliesTellWhichChannelsAreSelected) {
  const struct {
    std::string id;
    std::string command;
  } rows[] = {{"DSE1234", "Z TFPV"},     {"DDE1234", "Z TFPV"},     {"DCS1234", "Z TFPXYVbU"},
              {"DPG1234", "Z TFPXYVbU"}, {"ABC1234", "Z TFPXYVbU"}, {"", "Z TFPXYVbU"}};
  PutWholeCone();
  for (const auto& row : rows) {
    cone.ConeId = row.id;
    BuildSelectCommands();
    EXPECT_EQ(cone.ChannelSelectCommand, row.command) << row.id;
    EXPECT_EQ(cone.ReducedSelectCommand, "Z TF") << row.id;
  }
}

TEST_F(SelectCommands, DpgConeIsTreatedAsAnyOther) {
  PutWholeCone();
  cone.ConeId = "XYZ0001";
  BuildSelectCommands();
  const std::string any = cone.ChannelSelectCommand;
  cone.ConeId = "DPG0001";
  BuildSelectCommands();
  EXPECT_EQ(cone.ChannelSelectCommand, any);
}

TEST_F(SelectCommands, NoChannelsGiveZAndABlank) {
  BuildSelectCommands();
  EXPECT_EQ(cone.ChannelSelectCommand, "Z ");
  EXPECT_EQ(cone.ReducedSelectCommand, "Z ");
}

TEST_F(SelectCommands, ReducedSelectionHoldsChannelsOneAndTwoIfPresent) {
  Put(2, "F");
  Put(3, "P");
  BuildSelectCommands();
  EXPECT_EQ(cone.ReducedSelectCommand, "Z F");
}

TEST_F(SelectCommands, ModuleSelectionHoldsItsOwnUpTo18AndAllAbove20) {
  Put(1, "T");
  Put(10, "K", 3);
  Put(11, "L", 4);
  Put(23, "R", 4);
  Put(24, "U", 3);
  EXPECT_EQ(ModuleSelection(3), " 3Z KRU") << "the second pass doesn't test the module";
  EXPECT_EQ(ModuleSelection(9), " 9Z RU");
}

}  // namespace
}  // namespace penlog
