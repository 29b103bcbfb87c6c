#include "screens/reset_comms.h"

#include "conelink/cone_state.h"
#include "core/session.h"
#include "screens/reset_comms_world.h"

namespace penlog {
namespace {

using Entries = std::vector<std::string>;
using Numbers = std::vector<int>;

const char* const kChanged =
    "SERIAL PORT VALUES HAVE CHANGED. THE PROGRAM WILL NOW RE-DETECT THE SERIAL PORTS. TRY AGAIN";

TEST_F(ResetCommsTest, ListsTheExistingPortsByNumberAndItsWords) {
  Open();
  EXPECT_EQ(form.Caption, "Reset Comm Ports");
  EXPECT_EQ(truck.List, (Entries{"AUTO-DETECT", "SAME AS CONE", "N/A", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(ascii.List, (Entries{"AUTO-DETECT", "N/A", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(overlay.List, (Entries{"AUTO-DETECT", "N/A", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(ascii.Beside[2], "wire 3");
}

TEST_F(ResetCommsTest, ItsWordsStandAsQuoted) {
  const std::pair<const char*, std::string> rows[] = {
      {"Reset Comm Ports", form.Caption},
      {"CONE SERIAL PORT:", form.lblConeSerialPortCaption.Caption},
      {"TRUCK INTERFACE SERIAL PORT:", form.lblTruckInterfaceSerialPortCaption.Caption},
      {"ASCII OUT SERIAL PORT:", form.lblASCIIOutSerialPortCaption.Caption},
      {"VIDEO OVERLAY SERIAL PORT:", form.lblVideoOverlaySerialPortCaption.Caption},
      {"NEW PORT", form.lblNewPort.Caption},
      {"IN USE", form.lblInUse.Caption},
      {"OK", form.cmdOK.Caption},
      {"CANCEL", form.cmdCancel.Caption},
  };
  for (const auto& [quoted, shown] : rows) EXPECT_EQ(shown, quoted);
}

TEST_F(ResetCommsTest, OverlayListFollowsTheKindOfBoard) {
  const struct {
    std::int16_t lumen_probe;
    Entries list;
    const char* chosen;
    const char* in_use;
  } rows[] = {{0, {"N/A"}, "N/A", "N/A"},
              {2, {"SAME AS TRUCK INT"}, "SAME AS TRUCK INT", "4"},
              {3, {"N/A"}, "N/A", "N/A"}};
  for (const auto& row : rows) {
    settings.LumenProbePresent = row.lumen_probe;
    Open();
    EXPECT_EQ(overlay.List, row.list) << row.lumen_probe;
    EXPECT_EQ(overlay.Text, row.chosen) << row.lumen_probe;
    EXPECT_EQ(form.lblVideoOverlaySerialPort.Caption, row.in_use) << row.lumen_probe;
  }
}

TEST_F(ResetCommsTest, OpensWithWhatRuns) {
  Open();
  EXPECT_EQ(truck.Text, "4");
  EXPECT_EQ(truck.ListIndex, 4);
  EXPECT_EQ(ascii.Text, "5");
  EXPECT_EQ(overlay.Text, "6");
  EXPECT_EQ(form.lblConeSerialPort.Caption, "3");
  settings.TruckInterfaceSerialPort = 3;
  settings.ASCIIOutSerialPort = 0;
  settings.VideoOverlaySerialPort = 0;
  Open();
  EXPECT_EQ(truck.Text, "SAME AS CONE");
  EXPECT_EQ(ascii.Text, "N/A");
  EXPECT_EQ(overlay.Text, "N/A");
}

TEST_F(ResetCommsTest, TellsALostPortAndHasNoEntryForIt) {
  world.ports.Wire(4).SetPresent(false);
  cone.TruckPortLost = -1;
  Open();
  EXPECT_EQ(form.lblTruckInterfaceSerialPort.Caption, "4, LOST");
  EXPECT_EQ(truck.ListIndex, -1);
  EXPECT_EQ(form.lblASCIIOutSerialPort.Caption, "5");
}

/// Its own port was 4, on which the cone answers now.
TEST_F(ResetCommsTest, ATruckWhoseNumberTheConeTookIsShownLostAndOnNoPort) {
  settings.ConeSerialPort = 4;
  session.StartConePort = 3;
  session.StartTruckPort = 4;
  cone.TruckPortLost = -1;
  Open();
  EXPECT_EQ(form.lblConeSerialPort.Caption, "4");
  EXPECT_EQ(form.lblTruckInterfaceSerialPort.Caption, "4, LOST");
  EXPECT_EQ(truck.Text, "");
  EXPECT_EQ(truck.ListIndex, -1);
  Choose(ascii, "4");
  EXPECT_EQ(Question(), "PORT 4 IS CURRENTLY BEING USED FOR THE CONE. CANNOT CONTINUE");
  Answer(BoxAnswer::Ok);
  Choose(truck, "N/A");
  Answer(BoxAnswer::No);
  EXPECT_EQ(truck.ListIndex, -1) << "a refused choice goes back to none";
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, WhatIsInUseIsToldAnewWithEachChange) {
  Open();
  cone.ASCIIPortLost = -1;
  Choose(truck, "7");
  EXPECT_EQ(form.lblASCIIOutSerialPort.Caption, "5, LOST");
  world.ports.Wire(4).SetPresent(false);
  cone.TruckPortLost = -1;
  Choose(ascii, "4");
  EXPECT_EQ(Question(), kChanged);
  EXPECT_EQ(form.lblTruckInterfaceSerialPort.Caption, "4, LOST") << "the lists are made anew";
  Answer(BoxAnswer::Ok);
  cone.ASCIIPortLost = 0;
  Choose(overlay, "AUTO-DETECT");
  EXPECT_EQ(form.lblASCIIOutSerialPort.Caption, "5");
}

TEST_F(ResetCommsTest, AListInWhichNothingWasChosenFollowsItsLink) {
  settings.TruckInterfaceSerialPort = 3;
  Open();
  Choose(ascii, "7");
  settings.TruckInterfaceSerialPort = 4;
  settings.ASCIIOutSerialPort = 0;
  Choose(overlay, "6");
  EXPECT_EQ(truck.Text, "4");
  EXPECT_EQ(truck.ListIndex, 4);
  EXPECT_EQ(ascii.Text, "7") << "what was chosen stands";
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{kNothing, 7, 6}));
}

TEST_F(ResetCommsTest, AFreePortIsTakenWithoutAQuestion) {
  Open();
  Choose(truck, "7");
  EXPECT_EQ(Question(), "");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{7, kNothing, kNothing}));
  EXPECT_FALSE(form.Visible);
}

TEST_F(ResetCommsTest, NothingIsAskedForBeforeOKNorAfterCancel) {
  Open();
  Choose(truck, "7");
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing}));
  Press(form, form.cmdCancel);
  EXPECT_FALSE(form.Visible);
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing}));
  Open();
  EXPECT_EQ(truck.Text, "4") << "a choice that was cancelled is forgotten";
}

TEST_F(ResetCommsTest, ThePortThatRunsCanBeAskedForAgain) {
  Open();
  Choose(ascii, "5");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{kNothing, 5, kNothing}));
}

TEST_F(ResetCommsTest, OffAsksFirstInTheWordsOfItsList) {
  const struct {
    ComboBox& list;
    const char* question;
    Numbers requests;
  } rows[] = {
      {truck,
       "THIS WILL DISABLE THE TRUCK INTERFACE. CONTINUE?",
       {kNoTruckPort, kNothing, kNothing}},
      {ascii, "This will disable ASCII output.  Continue?", {kNothing, 0, kNothing}},
      {overlay, "This will disable video overlay.  Continue?", {kNothing, kNothing, 0}},
  };
  for (const auto& row : rows) {
    for (const bool yes : {true, false}) {
      sounding = SoundingState{};
      Open();
      const std::string before = row.list.Text;
      Choose(row.list, "N/A");
      EXPECT_EQ(Question(), row.question);
      Answer(yes ? BoxAnswer::Yes : BoxAnswer::No);
      EXPECT_EQ(row.list.Text, yes ? "N/A" : before);
      Press(form, form.cmdOK);
      const Numbers none = {kNothing, kNothing, kNothing};
      EXPECT_EQ(Requests(), yes ? row.requests : none) << row.question;
    }
  }
}

TEST_F(ResetCommsTest, TheQuestionsAreThoseOfTheirLists) {
  const struct {
    ComboBox& list;
    const char* port;
    const char* text;
  } rows[] = {
      {truck, "6",
       "PORT 6 IS CURRENTLY BEING USED FOR VIDEO OVERLAY. WOULD YOU LIKE TO CONTINUE? VIDEO "
       "OVERLAY WILL BE SET TO AN ALTERNATE FREE PORT, IF AVAILABLE."},
      {truck, "5",
       "PORT 5 IS CURRENTLY BEING USED FOR ASCII OUTPUT. WOULD YOU LIKE TO CONTINUE? ASCII OUTPUT "
       "WILL BE SET TO AN ALTERNATE FREE PORT, IF AVAILABLE."},
      {ascii, "4", "PORT 4 IS CURRENTLY BEING USED FOR THE TRUCK INTERFACE. CANNOT CONTINUE"},
      {ascii, "3", "PORT 3 IS CURRENTLY BEING USED FOR THE CONE. CANNOT CONTINUE"},
      {ascii, "6",
       "Port 6 is currently being used for the video overlay output. Would you like to continue? "
       "Video overlay port will be switched to a free port, if available"},
      {overlay, "4", "Port 4 is currently being used for the truck interface. Cannot continue"},
      {overlay, "3", "Port 3 is currently being used for the cone. Cannot continue"},
      {overlay, "5",
       "Port 5 is currently being used for the ASCII output. Would you like to continue? ASCII "
       "output port will be switched to a free port."},
  };
  for (const auto& row : rows) {
    Open();
    const std::string before = row.list.Text;
    Choose(row.list, row.port);
    EXPECT_EQ(Question(), row.text);
    Answer(FrontBox()->buttons == BoxButtons::YesNoCareful ? BoxAnswer::No : BoxAnswer::Ok);
    EXPECT_EQ(row.list.Text, before) << row.text;
    Press(form, form.cmdOK);
    EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing})) << row.text;
  }
}

TEST_F(ResetCommsTest, AYesMovesTheOtherOutputToTheFirstFreePort) {
  const struct {
    ComboBox& list;
    const char* port;
    Numbers requests;
  } rows[] = {
      {truck, "6", {6, kNothing, 4}},  // the truck's own port is free then
      {truck, "5", {5, 4, kNothing}},
      {ascii, "6", {kNothing, 6, 5}},  // they change places
      {overlay, "5", {kNothing, 6, 5}},
  };
  for (const auto& row : rows) {
    sounding = SoundingState{};
    Open();
    Choose(row.list, row.port);
    Answer(BoxAnswer::Yes);
    EXPECT_EQ(Question(), "") << row.port;
    Press(form, form.cmdOK);
    EXPECT_EQ(Requests(), row.requests) << row.list.Name() << " " << row.port;
  }
}

TEST_F(ResetCommsTest, WithNoPortFreeNothingMovesAndItIsTold) {
  settings.VideoOverlaySerialPort = 7;
  const struct {
    ComboBox& list;
    const char* port;
    int ascii_port;
    const char* told;
  } rows[] = {
      {truck, "7", 5, "No free ports. Cannot assign video overlay output port"},
      {truck, "5", 5, "NO FREE PORTS. CANNOT ASSIGN ASCII OUT PORT"},
      {ascii, "7", 0, "No free ports. Cannot assign video overlay output port"},
      {overlay, "5", 5, "No free ports. Cannot assign ASCII output port"},
  };
  for (const auto& row : rows) {
    settings.ASCIIOutSerialPort = static_cast<std::int16_t>(row.ascii_port);
    // The truck interface rides on the cone's port, and no port is left over: the one that the
    // asking list gives up is not there any more.
    settings.TruckInterfaceSerialPort = row.list.Name() == truck.Name() ? 3 : 4;
    for (const int port : {4, 5, 6, 7}) {
      const bool is_truck = port == settings.TruckInterfaceSerialPort;
      world.ports.Wire(port).SetPresent(is_truck || port == row.ascii_port || port == 7);
    }
    if (row.list.Name() == overlay.Name()) world.ports.Wire(7).SetPresent(false);
    Open();
    const std::string before = row.list.Text;
    Choose(row.list, row.port);
    Answer(BoxAnswer::Yes);
    EXPECT_EQ(Question(), row.told) << row.list.Name() << " " << row.port;
    Answer(BoxAnswer::Ok);
    EXPECT_EQ(row.list.Text, before);
    Press(form, form.cmdOK);
    EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing})) << row.told;
  }
}

TEST_F(ResetCommsTest, APortUnpluggedSinceTheOpeningRedetects) {
  for (ComboBox* list : {&truck, &ascii, &overlay}) {
    world.ports.Wire(7).SetPresent(true);
    Open();
    world.ports.Wire(7).SetPresent(false);
    const std::string before = list->Text;
    Choose(*list, list->List.back());
    EXPECT_EQ(Question(), kChanged);
    EXPECT_EQ(list->Text, before);
    EXPECT_EQ(list->List.back(), "6") << "the lists are made anew";
    Answer(BoxAnswer::Ok);
    Choose(*list, before);
    EXPECT_EQ(Question(), "") << "the next try is judged by the new lists";
  }
}

TEST_F(ResetCommsTest, APortPluggedInSinceTheOpeningRedetects) {
  Open();
  world.ports.Wire(9);
  Choose(ascii, "N/A");
  EXPECT_EQ(Question(), kChanged);
  EXPECT_EQ(ascii.List.back(), "9");
  EXPECT_EQ(ascii.Text, "5");
}

TEST_F(ResetCommsTest, APortThatVanishesBehindAQuestionIsNotTaken) {
  Open();
  Choose(ascii, "6");
  world.ports.Wire(6).SetPresent(false);
  Answer(BoxAnswer::Yes);
  EXPECT_EQ(Question(), kChanged);
  EXPECT_EQ(ascii.Text, "5");
  EXPECT_EQ(overlay.Text, "6");
}

TEST_F(ResetCommsTest, APortThatVanishesBeforeOKKeepsTheScreen) {
  Open();
  Choose(truck, "7");
  world.ports.Wire(7).SetPresent(false);
  Press(form, form.cmdOK);
  EXPECT_EQ(Question(), kChanged);
  EXPECT_TRUE(form.Visible);
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, APortOnWhichTheConeAnswersMeanwhileIsGivenToNobody) {
  for (ComboBox* list : {&truck, &ascii, &overlay}) {
    settings.ConeSerialPort = 3;
    Open();
    const std::string before = list->Text;
    Choose(*list, "7");
    settings.ConeSerialPort = 7;
    Press(form, form.cmdOK);
    EXPECT_EQ(Question(), kChanged) << list->Name();
    EXPECT_TRUE(form.Visible);
    EXPECT_EQ(list->Text, before) << "it shows again what runs";
    EXPECT_EQ(form.lblConeSerialPort.Caption, "7");
    Answer(BoxAnswer::Ok);
    Press(form, form.cmdOK);
    EXPECT_FALSE(form.Visible);
    EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing})) << list->Name();
  }
}

/// The overlay gave its port away for a free one; without that one it would have to keep its own.
TEST_F(ResetCommsTest, OfTwoOutputsThatMoveNoneMovesAlone) {
  settings.ASCIIOutSerialPort = 0;
  world.ports.Wire(5).SetPresent(false);
  Open();
  Choose(ascii, "6");
  Answer(BoxAnswer::Yes);
  EXPECT_EQ(overlay.Text, "7");
  world.ports.Wire(7).SetPresent(false);
  Press(form, form.cmdOK);
  EXPECT_EQ(Question(), kChanged);
  Answer(BoxAnswer::Ok);
  EXPECT_EQ(ascii.Text, "N/A");
  EXPECT_EQ(overlay.Text, "6");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, SameAsConeIsTheNumberThatTheConeHasAtTheOK) {
  Open();
  Choose(truck, "SAME AS CONE");
  settings.ConeSerialPort = 7;
  Press(form, form.cmdOK);
  EXPECT_EQ(Question(), "");
  EXPECT_EQ(Requests(), (Numbers{7, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, SameAsConeTakesTheConesNumber) {
  Open();
  Choose(truck, "SAME AS CONE");
  EXPECT_EQ(Question(), "");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{3, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, AutoDetectNeverTakesThePortOfAConeOnTheTrucksNumber) {
  settings.TruckInterfaceSerialPort = settings.ConeSerialPort;
  session.StartConePort = settings.ConeSerialPort;
  session.StartTruckPort = 77;  // they differed at the start
  cone.TruckPortLost = -1;
  Open();
  Choose(truck, "AUTO-DETECT");
  EXPECT_NE(truck.Text, "SAME AS CONE");
  EXPECT_NE(truck.Text, "3");
}

TEST_F(ResetCommsTest, AutoDetectOfAnOutputNeverTakesTheConesPort) {
  settings.ASCIIOutSerialPort = settings.ConeSerialPort;
  Open();
  Choose(ascii, "AUTO-DETECT");
  EXPECT_NE(ascii.Text, "SAME AS CONE");
  EXPECT_NE(ascii.Text, "3");
}

TEST_F(ResetCommsTest, TheConesPortInTheTrucksListIsSameAsCone) {
  Open();
  Choose(truck, "3");
  EXPECT_EQ(truck.Text, "SAME AS CONE");
}

TEST_F(ResetCommsTest, SameAsTruckInterfaceAsksForTheScreenAnew) {
  settings.LumenProbePresent = 2;
  Open();
  Choose(overlay, "SAME AS TRUCK INT");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, 6})) << "its number stays";
}

TEST_F(ResetCommsTest, OffForAnOverlayWithoutABoardIsNumberZero) {
  for (const std::int16_t board : {std::int16_t{0}, std::int16_t{3}, std::int16_t{5}}) {
    settings.LumenProbePresent = board;
    Open();
    Choose(overlay, "N/A");
    EXPECT_EQ(Question(), "This will disable video overlay.  Continue?");
    Answer(BoxAnswer::Yes);
    Press(form, form.cmdOK);
    EXPECT_EQ(Requests(), (Numbers{kNothing, kNothing, 0})) << board;
  }
}

TEST_F(ResetCommsTest, AutoDetectTakesTheOwnPortThatIsThere) {
  Open();
  Choose(truck, "AUTO-DETECT");
  EXPECT_EQ(truck.Text, "4");
  Press(form, form.cmdOK);
  EXPECT_EQ(Requests(), (Numbers{4, kNothing, kNothing}));
}

TEST_F(ResetCommsTest, AutoDetectTakesTheFirstFreePortForOneThatIsGone) {
  world.ports.Wire(4).SetPresent(false);
  Open();
  world.ports.Wire(9);  // came meanwhile: searched anew, without a message
  Choose(truck, "AUTO-DETECT");
  EXPECT_EQ(Question(), "");
  EXPECT_EQ(truck.Text, "7");
}

TEST_F(ResetCommsTest, AutoDetectOfATruckOnTheConesPortStaysThere) {
  settings.TruckInterfaceSerialPort = 3;
  Open();
  Choose(truck, "AUTO-DETECT");
  EXPECT_EQ(truck.Text, "SAME AS CONE");
}

TEST_F(ResetCommsTest, AutoDetectDoesNotTakeWhatAnotherListHoldsMeanwhile) {
  Open();
  Choose(ascii, "N/A");
  Answer(BoxAnswer::Yes);
  Choose(truck, "5");
  Choose(ascii, "AUTO-DETECT");
  EXPECT_EQ(ascii.Text, "4");
}

TEST_F(ResetCommsTest, AutoDetectWithNoPortFreeIsTold) {
  for (const int port : {4, 7}) world.ports.Wire(port).SetPresent(false);
  Open();
  Choose(truck, "AUTO-DETECT");
  EXPECT_EQ(Question(), "NO FREE PORTS. CANNOT ASSIGN TRUCK INTERFACE PORT");
  EXPECT_EQ(truck.Text, "4");
}

TEST_F(ResetCommsTest, AnAnswerToAScreenThatWasLeftChangesNothing) {
  Open();
  Choose(ascii, "6");
  frmResetComms_cmdCancel_Click();
  OpenResetComms();
  Answer(BoxAnswer::Yes);
  EXPECT_EQ(ascii.Text, "5");
}

TEST_F(ResetCommsTest, IsReachedFromTheConsoleAndFromTheStatusWindow) {
  Main.Load = nullptr;
  frmWarning.Load = nullptr;
  Show(Main);
  Show(frmWarning);
  Press(Main, Main.cmdResetPorts);
  EXPECT_TRUE(form.Visible);
  Press(form, form.cmdCancel);
  EXPECT_FALSE(form.Visible);
  Press(frmWarning, frmWarning.mnuResetComms);
  EXPECT_TRUE(form.Visible);
}

TEST_F(ResetCommsTest, OpenedOnceMoreComesToTheFrontAsItIs) {
  Open();
  Choose(truck, "7");
  Show(frmWarning);
  OpenResetComms();
  EXPECT_EQ(ShownForms().back(), &form);
  EXPECT_EQ(truck.Text, "7");
}

TEST_F(ResetCommsTest, LeavesTheStatusWindowToItsTimer) {
  Open();
  frmWarning.Timer1.Stop();
  Press(form, form.cmdCancel);
  EXPECT_TRUE(frmWarning.Timer1.Running());
}

TEST_F(ResetCommsTest, DoesNotKeepTheOperatorFromTheConsole) {
  Main.Load = nullptr;
  Show(Main);
  Open();
  OperatorAction stop;
  stop.form = &Main;
  stop.control = &Main.cmdExit;
  stop.stamp = StampOf(Main, &Main.cmdExit);
  EXPECT_EQ(WhyRefused(stop), "");
}

TEST(FreePort, IsTheFirstEntryThatNobodyHolds) {
  const Entries list = {"AUTO-DETECT", "N/A", "3", "4", "5", "12"};
  const struct {
    int cone;
    Entries chosen;
    int entry;
  } rows[] = {
      {3, {"4"}, 4},      {3, {"4", "5"}, 5}, {3, {"4", "5", "12"}, -1},
      {0, {}, 2},         {9, {"N/A"}, 2},    {3, {"SAME AS CONE", "4"}, 4},
      {4, {"3", "1"}, 4},  // "1" is not "12"
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FreePortIn(list, {row.cone, row.chosen}), row.entry) << row.cone;
  }
  EXPECT_EQ(FreePortIn({"AUTO-DETECT", "N/A"}, {}), -1) << "a word is no port";
  EXPECT_EQ(FreePortIn({}, {}), -1);
}

}  // namespace
}  // namespace penlog
