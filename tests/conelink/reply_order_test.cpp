#include "conelink/reply_order.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "conelink/cone_state.h"
#include "conelink/select_commands.h"
#include "core/channels.h"

namespace penlog {
namespace {

class ReplyOrder : public ::testing::Test {
 protected:
  ReplyOrder() {
    channels = {};
    cone = {};
    cone.ModulePresent[0] = kTrue;
    cone.ConeId = "DCS0001";
  }
  ~ReplyOrder() override {
    channels = {};
    cone = {};
  }
  static void Put(int channel, const std::string& letter, std::int16_t unit = 0) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelLetter(channel) = letter;
    channels.ChannelModule(channel) = unit;
  }
};

TEST_F(ReplyOrder, LettersNotNumbersGiveThePlaces) {
  const std::string letters = "GUVRLKJIEPFT";
  for (int i = 0; i < 12; ++i) Put(i + 1, letters.substr(static_cast<std::size_t>(i), 1));
  AssignReplyPositions();
  for (int i = 0; i < 12; ++i) EXPECT_EQ(channels.ReplyField(i + 1), 12 - i) << i;
}

TEST_F(ReplyOrder, EqualLettersFollowTheChannelNumber) {
  Put(12, "P");
  Put(3, "P");
  Put(1, "T");
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(1), 1);
  EXPECT_EQ(channels.ReplyField(3), 2);
  EXPECT_EQ(channels.ReplyField(12), 3);
}

TEST_F(ReplyOrder, ModulesCountOnBehindTheCone) {
  Put(1, "T");
  Put(2, "F");
  Put(23, "E", 9);
  Put(24, "T", 2);
  Put(25, "F", 2);
  cone.ModulePresent[2] = cone.ModulePresent[9] = kTrue;
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(2), 2);
  EXPECT_EQ(channels.ReplyField(24), 3);
  EXPECT_EQ(channels.ReplyField(25), 4);
  EXPECT_EQ(channels.ReplyField(23), 5);
}

TEST_F(ReplyOrder, UnitThatIsNotPresentTakesNoPlace) {
  Put(23, "E", 3);
  Put(24, "T", 4);
  cone.ModulePresent[4] = kTrue;
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(23), 0);
  EXPECT_EQ(channels.ReplyField(24), 1);
}

TEST_F(ReplyOrder, GeophoneLetterCountsInTheSeismicFamiliesAlone) {
  const struct {
    std::string id;
    int place;
  } rows[] = {{"DSE1234", 2}, {"DDE1234", 2}, {"DCS1234", 2}, {"DPG1234", 0}, {"dcs", 0}, {"", 0}};
  for (const auto& row : rows) {
    cone.ConeId = row.id;
    Put(1, "T");
    Put(10, "G");
    AssignReplyPositions();
    EXPECT_EQ(channels.ReplyField(10), row.place) << row.id;
  }
}

TEST_F(ReplyOrder, WhatTheConesSelectionLeavesOutTakesNoPlaceOfLaterOnes) {
  const struct {
    std::string id;
    std::string command;
    std::map<int, int> places;
  } rows[] = {
      {"DSE1234", "Z TIV", {{1, 1}, {8, 0}, {22, 0}, {6, 2}, {9, 0}, {12, 3}, {10, 4}, {23, 5}}},
      {"DDE1234", "Z TIV", {{1, 1}, {8, 0}, {22, 0}, {6, 2}, {9, 0}, {12, 3}, {10, 4}, {23, 5}}},
      {"DCS1234",
       "Z TIEGVF",
       {{1, 1}, {22, 2}, {8, 3}, {6, 4}, {12, 5}, {9, 6}, {10, 7}, {23, 8}}}};
  Put(1, "T");
  Put(6, "I");
  Put(8, "E");
  Put(9, "G");
  Put(12, "V");
  Put(22, "F");
  for (const auto& row : rows) {
    cone.ConeId = row.id;
    cone.ModulePresent[2] = kFalse;
    channels.ChannelPresent(10) = channels.ChannelPresent(23) = kFalse;
    BuildSelectCommands();
    EXPECT_EQ(cone.ChannelSelectCommand, row.command);
    cone.ModulePresent[2] = kTrue;
    Put(10, "T", 2);
    Put(23, "R", 2);
    AssignReplyPositions();
    for (const auto& [channel, place] : row.places) {
      EXPECT_EQ(channels.ReplyField(channel), place) << row.id << " " << channel;
    }
  }
}

TEST_F(ReplyOrder, UnknownSmallAndEmptyLettersTakeNoPlace) {
  Put(1, "t");
  Put(2, "");
  Put(3, "Q");
  Put(6, "I");
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(1), 0);
  EXPECT_EQ(channels.ReplyField(2), 0);
  EXPECT_EQ(channels.ReplyField(3), 0);
  EXPECT_EQ(channels.ReplyField(6), 1);
}

TEST_F(ReplyOrder, SecondIdentificationLeavesNoOldPlace) {
  Put(1, "T");
  Put(2, "F");
  AssignReplyPositions();
  channels.ChannelPresent(1) = kFalse;
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(1), 0);
  EXPECT_EQ(channels.ReplyField(2), 1);
}

}  // namespace
}  // namespace penlog
