// The display setup's lists, boxes and buttons; leaving it by DONE stands in a file of its own.
#include "display/setup_display.h"

#include "display/setup_display_lists.h"
#include "display/setup_display_world.h"
#include "screens/setup_sounding.h"

namespace penlog {
namespace {

constexpr const char* kQuestion = "SINGLE PP TRANSDUCER DETECTED.  PLEASE CHOOSE PP CONFIGURATION";

TEST_F(SetupDisplayTest, InclinationComesUpOnlyWithBothAxes) {
  const struct {
    std::initializer_list<int> gone;
    bool present;
  } rows[] = {{{}, true}, {{6}, false}, {{7}, false}, {{6, 7}, false}};
  for (const auto& row : rows) {
    channels.ChannelPresent(6) = channels.ChannelPresent(7) = kTrue;
    channels.ChannelPresent(19) = kFalse;
    Remove(row.gone);
    Open();
    EXPECT_EQ(channels.ChannelPresent(19), row.present ? kTrue : kFalse);
    EXPECT_EQ(Graph(19).Visible, row.present);
    EXPECT_EQ(Graph(19).Enabled, row.present);
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, FrictionRatioSoilTypeAndNComeUpOnlyWithTipAndSleeve) {
  for (const int gone : {0, 1, 2}) {
    for (const int channel : {1, 2}) channels.ChannelPresent(channel) = kTrue;
    for (const int channel : {20, 21, 22}) channels.ChannelPresent(channel) = kFalse;
    Remove({gone});
    Open();
    for (const int channel : {20, 21, 22}) {
      EXPECT_EQ(channels.ChannelPresent(channel), gone == 0 ? kTrue : kFalse) << channel;
      EXPECT_EQ(Graph(channel).Enabled, gone == 0) << channel;
    }
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, ComputedChannelInASlotComesUpTicked) {
  display.GraphChannel = {0, 1, 19, 22, 0};
  channels.ChannelGraphDefault(22) = 0;  // ticked by its coming up, not by the list
  Open();
  EXPECT_TRUE(Graph(19).Checked);
  EXPECT_TRUE(Graph(22).Checked);
  EXPECT_FALSE(Graph(20).Checked);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 19, 22, 0}));
}

TEST_F(SetupDisplayTest, FilterIsAskedForWithChannel3AloneAndQueryForPP1) {
  const struct {
    bool third;
    bool fourth;
    std::int16_t query;
    bool asked;
  } rows[] = {{true, false, 1, true},
              {true, true, 1, false},
              {false, false, 1, false},
              {true, false, 0, false},
              {true, false, 2, false}};
  for (const auto& row : rows) {
    channels.ChannelPresent(3) = row.third ? kTrue : kFalse;
    channels.ChannelPresent(4) = row.fourth ? kTrue : kFalse;
    settings.QueryForPP = row.query;
    Open();
    EXPECT_EQ(SetupDisplay.frmSelectPPType.Visible, row.asked);
    EXPECT_EQ(SetupDisplay.cmdPrevious.Enabled, !row.asked);
    EXPECT_EQ(SetupDisplay.cmdClearSelection.Enabled, !row.asked);
    EXPECT_EQ(SetupDisplay.cmdDone.Enabled, !row.asked);
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, Channel3AloneWithQueryForPP0OpensNoFrame) {
  AskAboutFilter();
  settings.QueryForPP = 0;
  Open();
  EXPECT_FALSE(SetupDisplay.frmSelectPPType.Visible);
  EXPECT_TRUE(SetupDisplay.cmdDone.Enabled);
}

TEST_F(SetupDisplayTest, FilterQuestionHasItsTexts) {
  EXPECT_EQ(SetupDisplay.frmSelectPPType.Caption, "PP CONFIGURATION");
  EXPECT_EQ(SetupDisplay.lblSelectPPType.Caption, kQuestion);
  EXPECT_EQ(SetupDisplay.cmdU1PPFilter.Caption, "U1 - FACE MOUNTED PP FILTER");
  EXPECT_EQ(SetupDisplay.cmdU2PPFilter.Caption, "U2 - PP FILTER BEHIND THE TIP");
  EXPECT_EQ(SetupDisplay.cmdDoNotRecordPP.Caption, "DO NOT RECORD PP DATA");
}

TEST_F(SetupDisplayTest, RecordBoxesFollowRecordMode) {
  const struct {
    std::int16_t mode;
    bool ticked;
    bool enabled;
  } rows[] = {{0, false, true}, {1, true, true}, {2, true, false}, {3, false, false}};
  for (const auto& row : rows) {
    channels.RecordMode(2) = row.mode;
    Open();
    EXPECT_TRUE(Record(2).Visible);
    EXPECT_EQ(Record(2).Caption, "Fs");
    EXPECT_EQ(Record(2).Checked, row.ticked) << row.mode;
    EXPECT_EQ(Record(2).Enabled, row.enabled) << row.mode;
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, RecordListHoldsWhatIsPresentAndNotComputed) {
  Add(30, "M");
  Add(23, "X");
  Remove({5, 23});
  Open();
  for (int channel = 1; channel <= 30; ++channel) {
    const bool listed = (channel <= 7 && channel != 5) || channel == 30;
    EXPECT_EQ(Record(channel).Visible, listed) << channel;
  }
}

TEST_F(SetupDisplayTest, GraphListHoldsWhatMayBeGraphed) {
  channels.ChannelGraphDefault(6) = 0;
  channels.ChannelGraphDefault(7) = 2;
  Remove({5});
  Open();
  for (int channel = 1; channel <= 30; ++channel) {
    const bool listed = channel <= 4 || (channel >= 19 && channel <= 22);
    EXPECT_EQ(Graph(channel).Visible, listed) << channel;
  }
  EXPECT_EQ(Graph(20).Caption, "Rf");
}

TEST_F(SetupDisplayTest, Channel1IsAlwaysTheFirstGraph) {
  Open();
  EXPECT_TRUE(Graph(1).Checked);
  EXPECT_FALSE(Graph(1).Enabled);
  Tick(Record(1), false);
  EXPECT_FALSE(Record(1).Checked);
  EXPECT_TRUE(Graph(1).Checked);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 0, 0, 0}));
  Tick(Record(1));
  EXPECT_FALSE(Graph(1).Enabled);
}

TEST_F(SetupDisplayTest, ChannelThatIsNotRecordedCannotBeGraphedUnlessComputed) {
  channels.RecordMode(2) = 0;
  channels.RecordMode(3) = 3;
  display.GraphChannel = {0, 1, 2, 20, 3};
  Open();
  for (const int channel : {2, 3}) {
    EXPECT_FALSE(Graph(channel).Checked) << channel;
    EXPECT_FALSE(Graph(channel).Enabled) << channel;
  }
  EXPECT_TRUE(Graph(20).Checked);
  EXPECT_TRUE(Graph(20).Enabled);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 20, 0, 0})) << "no slot without its box";
}

TEST_F(SetupDisplayTest, SlotOfAChannelThatIsNotThereIsGivenUp) {
  display.GraphChannel = {0, 1, 25, 3, 0};
  Open();
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 3, 0, 0}));
  EXPECT_EQ(Selections(), "Qc,U2,,");
}

TEST_F(SetupDisplayTest, CombinedPorePressuresAreChosenAsChannel3) {
  const struct {
    Slots slots;
    std::int16_t combine;
    bool third, fourth, fifth;
    Slots after;
  } rows[] = {
      {{0, 1, 4, 0, 0}, 1, true, false, false, {0, 1, 3, 0, 0}},
      {{0, 1, 2, 5, 0}, 1, true, false, false, {0, 1, 2, 3, 0}},
      {{0, 1, 3, 4, 5}, 1, true, false, false, {0, 1, 3, 0, 0}},
      {{0, 1, 3, 0, 0}, 1, true, false, false, {0, 1, 3, 0, 0}},
      {{0, 1, 2, 0, 0}, 1, false, false, false, {0, 1, 2, 0, 0}},
      {{0, 1, 4, 5, 0}, 0, false, true, true, {0, 1, 4, 5, 0}},
  };
  for (const auto& row : rows) {
    display.GraphChannel = row.slots;
    settings.CombinePPPlots = row.combine;
    Open();
    EXPECT_EQ(Graph(3).Checked, row.third);
    EXPECT_EQ(Graph(4).Checked, row.fourth);
    EXPECT_EQ(Graph(5).Checked, row.fifth);
    EXPECT_EQ(display.GraphChannel, row.after);
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, CombinedPorePressuresStandAloneWithoutChannel3) {
  Remove({3});
  settings.CombinePPPlots = 1;
  display.GraphChannel = {0, 1, 4, 5, 0};
  Open();
  EXPECT_FALSE(Graph(3).Checked);
  EXPECT_TRUE(Graph(4).Checked);
  EXPECT_TRUE(Graph(5).Checked);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 4, 5, 0}));
}

TEST_F(SetupDisplayTest, CombinedBoxesThatAreNotRecordedStayDisabled) {
  settings.CombinePPPlots = 1;
  channels.RecordMode(5) = 0;
  display.GraphChannel = {0, 1, 3, 0, 0};
  Open();
  EXPECT_TRUE(Graph(4).Enabled) << "the limit rule comes behind";
  EXPECT_FALSE(Graph(5).Enabled);
}

TEST_F(SetupDisplayTest, SelectionsAndTheirCountWithoutTheFirstGraphStandAtTheLoad) {
  const struct {
    Slots slots;
    const char* shown;
    int count;
  } rows[] = {{{0, 1, 0, 0, 0}, "Qc,,,", 0},
              {{0, 1, 3, 0, 0}, "Qc,U2,,", 1},
              {{0, 1, 20, 2, 0}, "Qc,Rf,Fs,", 2},
              {{0, 1, 3, 2, 22}, "Qc,U2,Fs,N", 3}};
  for (const auto& row : rows) {
    display.GraphChannel = row.slots;
    Open();
    EXPECT_EQ(Selections(), row.shown);
    EXPECT_EQ(display.GraphCount, row.count);
    Unload(SetupDisplay);
  }
}

TEST_F(SetupDisplayTest, LimitRuleEnablesWhatIsRecordedOrComputed) {
  channels.RecordMode(2) = 0;
  Add(25, "M");
  channels.ChannelComputed(25) = 1;  // computed, and none of 19 to 22
  Open();
  const std::initializer_list<int> enabled = {3, 4, 5, 6, 7, 19, 20, 21, 22};
  for (int channel = 2; channel <= 30; ++channel) {
    const bool expected = std::find(enabled.begin(), enabled.end(), channel) != enabled.end();
    EXPECT_EQ(Graph(channel).Enabled, expected) << channel;
  }
}

TEST_F(SetupDisplayTest, LimitRuleEnablesWhatASlotHolds) {
  Add(25, "M");
  channels.ChannelComputed(25) = 1;
  display.GraphChannel = {0, 1, 25, 0, 0};
  Open();
  EXPECT_TRUE(Graph(25).Checked);
  EXPECT_TRUE(Graph(25).Enabled);
}

TEST_F(SetupDisplayTest, LimitRuleWithFourGraphsDisablesBoxes2To20) {
  Open();
  display.GraphChannel = {0, 1, 3, 20, 25};
  display.GraphCount = 4;
  for (const bool before : {true, false}) {
    for (int channel = 1; channel <= 30; ++channel) Graph(channel).Enabled = before;
    LimitRule();
    for (int channel = 1; channel <= 30; ++channel) {
      const bool held = channel == 3 || channel == 20 || channel == 25;
      const bool disabled = channel >= 2 && channel <= 20;
      EXPECT_EQ(Graph(channel).Enabled, held || (before && !disabled)) << channel;
    }
  }
}

TEST_F(SetupDisplayTest, GraphBoxesFillAndFreeTheSlots) {
  Open();
  Tick(Graph(3));
  Tick(Graph(20));
  Tick(Graph(2));
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 3, 20, 2}));
  EXPECT_EQ(Selections(), "Qc,U2,Rf,Fs");
  EXPECT_EQ(display.GraphCount, 3);
  Tick(Graph(3), false);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 20, 2, 0}));
  EXPECT_EQ(Selections(), "Qc,Rf,Fs,");
  EXPECT_EQ(display.GraphCount, 2);
}

TEST_F(SetupDisplayTest, FifthChannelClickedWithAllSlotsFullTakesNoSlot) {
  Open();
  for (const int channel : {3, 20, 2}) Tick(Graph(channel));
  EXPECT_TRUE(Graph(21).Enabled) << "the count holds 3 at most, so nothing is disabled";
  Tick(Graph(21));
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 3, 20, 2}));
  EXPECT_FALSE(Graph(21).Checked) << "its box shows that it has none";
  Tick(Graph(20), false);
  Tick(Graph(21));
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 3, 2, 21}));
}

TEST_F(SetupDisplayTest, ChannelThatIsNoLongerRecordedLosesItsGraph) {
  Open();
  Tick(Graph(3));
  Tick(Graph(2));
  Tick(Record(3), false);
  EXPECT_FALSE(Graph(3).Checked);
  EXPECT_FALSE(Graph(3).Enabled);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 2, 0, 0}));
  EXPECT_EQ(Selections(), "Qc,Fs,,");
  Tick(Record(3));
  EXPECT_TRUE(Graph(3).Enabled);
  EXPECT_FALSE(Graph(3).Checked);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 2, 0, 0}));
}

TEST_F(SetupDisplayTest, ChannelThatWasNotGraphedTakesNoSlotWhenItIsNoLongerRecorded) {
  Open();
  Tick(Record(2), false);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 0, 0, 0}));
  EXPECT_FALSE(Graph(2).Enabled);
}

TEST_F(SetupDisplayTest, ClearSelectionEmptiesSlotsAndBoxes) {
  Open();
  for (const int channel : {3, 20, 2}) Tick(Graph(channel));
  Press(SetupDisplay.cmdClearSelection);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 0, 0, 0})) << "unticked boxes took slots";
  for (int channel = 2; channel <= 30; ++channel) EXPECT_FALSE(Graph(channel).Checked) << channel;
  EXPECT_TRUE(Graph(1).Checked);
  EXPECT_EQ(Selections(), "Qc,,,");
  EXPECT_EQ(display.GraphCount, 0);
  Tick(Graph(2));
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 2, 0, 0})) << "boxes act on the slots again";
}

TEST_F(SetupDisplayTest, ClearSelectionStaysDisabledBehindTheFilterQuestion) {
  for (Button* answer :
       {&SetupDisplay.cmdU1PPFilter, &SetupDisplay.cmdU2PPFilter, &SetupDisplay.cmdDoNotRecordPP}) {
    AskAboutFilter();
    Open();
    SetupDisplay.cmdU2PPFilter.Enabled = answer == &SetupDisplay.cmdU2PPFilter;
    Press(*answer);
    EXPECT_FALSE(SetupDisplay.frmSelectPPType.Visible) << answer->Name();
    EXPECT_TRUE(SetupDisplay.cmdPrevious.Enabled) << answer->Name();
    EXPECT_TRUE(SetupDisplay.cmdU2PPFilter.Enabled) << answer->Name();
    EXPECT_TRUE(SetupDisplay.cmdDone.Enabled) << answer->Name();
    EXPECT_FALSE(SetupDisplay.cmdClearSelection.Enabled) << answer->Name();
    Unload(SetupDisplay);
  }
  settings.QueryForPP = 0;
  Open();
  EXPECT_TRUE(SetupDisplay.cmdClearSelection.Enabled) << "of another opening";
}

TEST_F(SetupDisplayTest, U1FilterRenamesTheFirstSelectionThatShowsU2) {
  AskAboutFilter();
  channels.ChannelLabel(0, 2) = "U2";  // a second one of that name, behind
  display.GraphChannel = {0, 1, 20, 3, 2};
  Open();
  EXPECT_EQ(Selections(), "Qc,Rf,U2,U2");
  Press(SetupDisplay.cmdU1PPFilter);
  EXPECT_EQ(Selections(), "Qc,Rf,U1,U2");
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 20, 3, 2})) << "the channel stays 3";
}

TEST_F(SetupDisplayTest, U2FilterRenamesTheFirstSelectionThatShowsU1) {
  AskAboutFilter();
  channels.ChannelLabel(0, 2) = "U1";
  channels.ChannelLabel(0, 1) = "U1";  // graph 1 is not looked at
  display.GraphChannel = {0, 1, 3, 2, 0};
  Open();
  Press(SetupDisplay.cmdU2PPFilter);
  EXPECT_EQ(Selections(), "U1,U2,U2,");
}

TEST_F(SetupDisplayTest, FilterNamesTheSelectionForAsLongAsTheScreenIsOpen) {
  AskAboutFilter();
  display.GraphChannel = {0, 1, 3, 0, 0};
  Open();
  Press(SetupDisplay.cmdU1PPFilter);
  EXPECT_EQ(Selections(), "Qc,U1,,");
  Tick(Graph(20));
  EXPECT_EQ(Selections(), "Qc,U1,Rf,");
  Tick(Graph(3), false);
  EXPECT_EQ(Selections(), "Qc,Rf,,");
  Tick(Graph(3));
  EXPECT_EQ(Selections(), "Qc,Rf,U1,");
  Unload(SetupDisplay);
  Open();
  EXPECT_EQ(Selections(), "Qc,Rf,U2,") << "asked again";
}

TEST_F(SetupDisplayTest, U2FilterNamesTheSelectionBehindALaterClick) {
  AskAboutFilter();
  channels.ChannelLabel(0, 2) = "U1";
  Open();
  Press(SetupDisplay.cmdU2PPFilter);
  Tick(Graph(2));
  EXPECT_EQ(Selections(), "Qc,U2,,");
}

TEST_F(SetupDisplayTest, FilterRenamesNothingWithoutAName) {
  AskAboutFilter();
  channels.ChannelLabel(0, 4).clear();
  Open();
  Press(SetupDisplay.cmdU2PPFilter);
  EXPECT_EQ(Selections(), "Qc,,,");
}

TEST_F(SetupDisplayTest, DoNotRecordPPTakesChannel3FromBothLists) {
  AskAboutFilter();
  display.GraphChannel = {0, 1, 3, 2, 0};
  Open();
  Press(SetupDisplay.cmdDoNotRecordPP);
  EXPECT_FALSE(Record(3).Checked);
  EXPECT_FALSE(Graph(3).Checked);
  EXPECT_EQ(display.GraphChannel, (Slots{0, 1, 2, 0, 0}));
  EXPECT_EQ(Selections(), "Qc,Fs,,");
}

TEST_F(SetupDisplayTest, PreviousGoesBackToTheSoundingAsItWasTyped) {
  Show(SetupSounding);
  SetupSounding.txtOperator.Text = "Anna";
  Hide(SetupSounding);
  Open();
  Tick(Graph(3));
  Press(SetupDisplay.cmdPrevious);
  EXPECT_TRUE(SetupSounding.Visible);
  EXPECT_EQ(SetupSounding.txtOperator.Text, "Anna");
  EXPECT_EQ(setup_sounding.BackFlag, 0) << "served, so that a later load reads the file";
  EXPECT_FALSE(SetupDisplay.Loaded);
  Open();
  EXPECT_TRUE(Graph(3).Checked) << "the slots stand";
}

TEST_F(SetupDisplayTest, KeepsTheTextForAnEmptySelectionAtItsLoad) {
  EXPECT_EQ(SetupDisplay.NothingSelectedMessage, "");
  Open();
  EXPECT_EQ(SetupDisplay.NothingSelectedMessage, "At least one channel must be selected.");
  EXPECT_TRUE(boxes.texts.empty());
}

}  // namespace
}  // namespace penlog
