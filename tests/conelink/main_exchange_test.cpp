#include "conelink/main_exchange.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "conelink/exchange.h"
#include "conelink/link_world.h"
#include "conelink/watched_ports.h"

namespace penlog {
namespace {

/// A console on COM 3 with a truck interface of its own on COM 4.
class MainLink : public ::testing::Test {
 protected:
  MainLink() {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    world.ports.Wire(4);
    cone.ConeLinkUp = kTrue;
    LinkWorld::Open(Main.ConeComm, 3);
    LinkWorld::ShowConsole();
    LinkWorld::GoToTick(kMillisecond);
  }

  LinkWorld world;
  ScriptedCone far{world.ports.Wire(3)};
};

using Calls = std::vector<std::string>;

std::string Block() {
  std::string bytes;
  for (int i = 1; i <= 128; ++i) bytes += static_cast<char>(i + 100);
  return bytes;
}

TEST_F(MainLink, ReturnsTheReplyWithoutItsLineEnd) {
  far.On("C 3 7", "DCS0001\r\n");
  EXPECT_EQ(Main_CommStringCheck("C 3 7"), "DCS0001");
  EXPECT_EQ(far.raw, "C 3 7\r");
  EXPECT_EQ(cone.CommFailed, kFalse);
  EXPECT_EQ(Main.CommTick, 0);
}

TEST_F(MainLink, ReplyThatEndsInCarriageReturnIsWhole) {
  far.On("X", "OK\r");
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_EQ(cone.CommFailed, kFalse);
}

TEST_F(MainLink, WaitsOneFullTickForTrailingCharacters) {
  const Micros after_tick = Now() % kTick;
  far.On("X", "OK\r", 0);
  far.OnPieces("X", {{0, "OK\r"}, {kTick - after_tick - 1, "\n\r"}, {kTick, "LATE\r"}});
  const Micros start = Now();
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_EQ(Now() - start, kTick - after_tick);
}

TEST_F(MainLink, EveryLineEndBehindTheReplyIsStripped) {
  far.On("X", "A\rB\r\n\r\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "A\rB") << "one inside stays: the reading is damaged";
}

TEST_F(MainLink, ReadingEndsInOneBlank) {
  far.On("D", " 0.5 -1.25\r\n");
  EXPECT_EQ(Main_CommStringCheck("D"), " 0.5 -1.25 ");
  far.On("D", "\r\n");
  EXPECT_EQ(Main_CommStringCheck("D"), " ");
}

TEST_F(MainLink, ModuleReadingKeepsItsEnd) {
  far.On("D3", "x0.5\r\n");
  EXPECT_EQ(Main_CommStringCheck("D3"), "x0.5");
}

TEST_F(MainLink, OneCharacterReadingHasNeitherBlankNorStrip) {
  far.On("D", "\n");
  EXPECT_EQ(Main_CommStringCheck("D"), "\n");
  far.On("D", "?");
  EXPECT_EQ(Main_CommStringCheck("D"), "?");
}

TEST_F(MainLink, SilenceOfElevenTicksFailsAndIsCounted) {
  for (const Micros after : {Micros{0}, Micros{1}, kTick - 1}) {
    cone.CommTimeoutCount = 6;
    LinkWorld::GoToTick(after);
    const Micros start = Now();
    EXPECT_EQ(Main_CommStringCheck("X"), "");
    EXPECT_EQ(Now() - start, 10 * kTick - after) << "between nine and ten ticks";
    EXPECT_EQ(cone.CommFailed, kTrue);
    EXPECT_EQ(cone.CommTimeoutCount, 7);
    EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 7");
    EXPECT_EQ(far.heard.back(), "X");
  }
  EXPECT_EQ(far.Count("X"), 3) << "no further attempt";
}

TEST_F(MainLink, EachCharacterStartsTheSilenceAnew) {
  far.OnPieces("X", {{8 * kTick, "A"}, {16 * kTick, "B"}, {24 * kTick, "\r\n"}});
  EXPECT_EQ(Main_CommStringCheck("X"), "AB");
}

TEST_F(MainLink, FailedReplyHoldsWhatArrived) {
  far.On("D", " 0.5 -1.");
  EXPECT_EQ(Main_CommStringCheck("D"), " 0.5 -1. ");
  EXPECT_EQ(cone.CommFailed, kTrue);
}

TEST_F(MainLink, TimeoutTakesTheLinkDownAndRaisesTheStatusWindow) {
  Main.frmLocalWarning.Visible = true;
  EXPECT_EQ(Main_CommStringCheck("Z TF"), "");
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_TRUE(frmWarning.frmModuleWarning.Visible);
  EXPECT_FALSE(frmWarning.frmModulesConnected.Visible);
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  EXPECT_EQ(cone.WarningShown, kTrue);
  EXPECT_FALSE(Main.cmdWarningOK1.Visible);
  EXPECT_FALSE(Main.cmdWarningOK2.Visible);
  EXPECT_FALSE(Main.cmdWarningCancel.Visible);
}

TEST_F(MainLink, StopDialogThatIsOpenedDuringTheLossKeepsItsButtons) {
  Main.frmLocalWarning.Visible = true;
  Main_CommStringCheck("Z TF");
  EXPECT_FALSE(Main.cmdWarningOK1.Visible) << "the loss itself takes them";
  for (Button* button : {&Main.cmdWarningOK1, &Main.cmdWarningOK2, &Main.cmdWarningCancel}) {
    button->Visible = true;  // the operator presses STOP again
  }
  for (const char* command : {"X", "X", "D", "D"}) Main_CommStringCheck(command);
  EXPECT_TRUE(Main.cmdWarningOK1.Visible);
  EXPECT_TRUE(Main.cmdWarningOK2.Visible);
  EXPECT_TRUE(Main.cmdWarningCancel.Visible);
}

TEST_F(MainLink, TimeoutsAreCountedOnAcrossGoodReplies) {
  Main_CommStringCheck("Y");
  far.On("X", "OK\r\n");
  Main_CommStringCheck("X");
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1") << "a good reply leaves it";
  Main_CommStringCheck("Y");
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 2");
}

TEST_F(MainLink, EachCommandSupervisesThePortsFirst) {
  far.On("X", "OK\r\n");
  Main_CommStringCheck("X");
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  world.ports.Wire(4).SetPresent(false);
  EXPECT_EQ(Main_CommStringCheck("X"), "OK") << "the cone is served on";
  EXPECT_EQ(cone.TruckPortLost, kTrue);
  EXPECT_TRUE(frmWarning.frmEncoderWarning.Visible);
}

TEST_F(MainLink, ReadingOfABareLineEndIsOneBlank) {
  far.On("D", "\r\n");
  EXPECT_EQ(Main_CommStringCheck("D"), " ");
  EXPECT_EQ(cone.ConeLinkUp, kTrue) << "two characters are no empty reply";
}

TEST_F(MainLink, ReplyOfAMegabyteFailsAtItsBound) {
  far.On("D", std::string(1 << 20, '7') + "\r\n");
  const Micros start = Now();
  EXPECT_EQ(Main_CommStringCheck("D"), std::string(ReplyBound::kCharacters, '7') + ' ');
  EXPECT_LT(Now() - start, kTick);
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1");
  far.On("D", " 1.5\r\n");
  EXPECT_EQ(Main_CommStringCheck("D"), " 1.5 ");
}

TEST_F(MainLink, NoiseThatNeverEndsALineHoldsTheExchangeNoLongerThanItsBound) {
  std::function<void()> noise = [&] {
    far.SendLater(0, "~");
    PostCall(Now() + 9 * kTick, this, noise);
  };
  noise();
  const Micros start = Now();
  Main_CommStringCheck("D");
  DropCalls(this);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_LT(Now() - start, ReplyBound::kTime + kSecond);
}

TEST_F(MainLink, BannerThatTimesOutLeavesTheLinkUp) {
  EXPECT_EQ(Main_CommStringCheck("Y"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(cone.CommTimeoutCount, 1);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
}

TEST_F(MainLink, DuringTheSeismicWaitATimeoutIsShownButTheLinkStaysUp) {
  sounding.ConsoleMode = 9;
  EXPECT_EQ(Main_CommStringCheck("X"), "");
  EXPECT_EQ(cone.CommTimeoutCount, 1);
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1");
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
}

TEST_F(MainLink, EmptyReadingRaisesTheWindowThoughTheFailureWasHandled) {
  sounding.ConsoleMode = 9;  // the failure itself is then no alarm
  EXPECT_EQ(Main_CommStringCheck("D"), "");
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  EXPECT_TRUE(frmWarning.frmModuleWarning.Visible);
}

TEST_F(MainLink, EmptyReadingLeavesAPinnedWindowAsItIs) {
  sounding.ConsoleMode = 9;
  cone.WarningPinned = kTrue;
  EXPECT_EQ(Main_CommStringCheck("D"), "");
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
  EXPECT_EQ(cone.WarningShown, kFalse);
}

TEST_F(MainLink, LostPortReturnsAtOnceWithoutAByteAndLeavesTheFailureFlag) {
  world.ports.Wire(3).SetPresent(false);
  for (const std::int16_t before : {kTrue, kFalse}) {
    cone.CommFailed = before;
    const Micros start = Now();
    EXPECT_EQ(Main_CommStringCheck("D"), "");
    EXPECT_EQ(Now(), start);
    EXPECT_EQ(cone.CommFailed, before);
  }
  EXPECT_EQ(far.raw, "");
  EXPECT_EQ(cone.ConePortLost, kTrue);
}

TEST_F(MainLink, ClosedPortIsOpened) {
  Main.ConeComm.Close();
  far.On("X", "OK\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_EQ(far.openings.back(), ParsePortSettings("19200,N,8,1"));
}

TEST_F(MainLink, PortThatWentAndCameBetweenTwoCommandsIsOpenedAgain) {
  world.ports.Wire(3).SetPresent(false);
  World::RunFor(kMillisecond);
  world.ports.Wire(3).SetPresent(true);
  far.On("X", "OK\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_FALSE(Main.ConeComm.Gone());
}

TEST_F(MainLink, PortThatRefusesToOpenIsATimeout) {
  Main.ConeComm.Close();
  world.ports.SetRefused(3, true);
  EXPECT_EQ(Main_CommStringCheck("X"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
}

TEST_F(MainLink, OldInputIsClearedBeforeTheCommand) {
  far.SendLater(0, "OLD\r\n");
  World::RunFor(kMillisecond);
  far.On("X", "NEW\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "NEW");
}

TEST_F(MainLink, OutputThatWasNotSentYetIsClearedBeforeTheCommand) {
  WatchedPorts watched(world.ports);
  Main.ConeComm.Close();
  far.On("X", "OK\r\n");
  far.On("B", Block());
  for (const std::string command : {"X", "B"}) {
    Main_CommStringCheck(command);
    EXPECT_EQ(watched.calls.at(3), (Calls{"discard output", "write " + command + "\r"}));
    watched.calls.at(3).clear();
  }
  ReconnectCommStringCheck("Y");
  EXPECT_EQ(watched.calls.at(3), (Calls{"discard output", "write Y\r"}));
}

TEST_F(MainLink, BlockIsAwaitedInBinaryModeAndAReplyInTextMode) {
  const std::pair<std::string, InputModes> rows[] = {
      {"B", InputModes::Binary}, {"X", InputModes::Text}, {"B", InputModes::Binary}};
  for (const auto& [command, mode] : rows) {
    std::vector<InputModes> during;
    far.OnAny = [&](const std::string& heard) {
      during.push_back(Main.ConeComm.InputMode());
      PostCall(Now() + 2 * kTick, this, [&, heard] {
        during.push_back(Main.ConeComm.InputMode());
        far.SendLater(0, heard == "B" ? Block() : "OK\r\n");
      });
    };
    Main_CommStringCheck(command);
    EXPECT_EQ(during, (std::vector<InputModes>{mode, mode})) << command;
  }
}

TEST_F(MainLink, ReplyThatEndsALineButFailedBeforeIsCleared) {
  cone.CommFailed = kTrue;
  far.On("X", "OK\r\n");
  Main_CommStringCheck("X");
  EXPECT_EQ(cone.CommFailed, kFalse);
}

TEST_F(MainLink, HandlerThatTakesTheCounterCutsTheWaitShort) {
  const Micros start = Now();
  PostCall(Now() + 3 * kTick, this, [] { Main.CommTick = 0; });
  EXPECT_EQ(Main_CommStringCheck("Y"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_LE(Now() - start, 4 * kTick);
}

TEST_F(MainLink, BlockTakes126BytesAndTheRestIsClearedByTheNextCommand) {
  far.On("B", Block());
  EXPECT_EQ(Main_CommStringCheck("B"), "SEISDATA");
  for (std::size_t i = 1; i <= 126; ++i) EXPECT_EQ(cone.SeismicBlock[i], i + 100) << i;
  EXPECT_EQ(cone.SeismicBlock[127], 0);
  EXPECT_EQ(Main.ConeComm.InBufferCount(), 2);
  EXPECT_EQ(Main.ConeComm.InputLen(), 0);
  EXPECT_EQ(Main.CommTick, 0);
  far.On("X", "OK\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_EQ(Main.ConeComm.InputMode(), InputModes::Text);
}

TEST_F(MainLink, BlockWaitsFor128Bytes) {
  far.OnPieces("B", {{kMillisecond, Block().substr(0, 127)}, {2 * kTick, Block().substr(127)}});
  const Micros start = Now();
  EXPECT_EQ(Main_CommStringCheck("B"), "SEISDATA");
  EXPECT_GE(Now() - start, 2 * kTick);
  EXPECT_EQ(far.Count("B"), 1);
}

TEST_F(MainLink, BlockIsAskedForAgainAfterFiveTicks) {
  far.Once("B", "");
  far.On("B", Block());
  EXPECT_EQ(Main_CommStringCheck("B"), "SEISDATA");
  ASSERT_EQ(far.heard_at.size(), 2u);
  EXPECT_EQ(far.heard_at[1] - far.heard_at[0], 5 * kTick - kMillisecond);
}

TEST_F(MainLink, BlockIsAskedForOnEveryPassOnceFiveTicksAreOver) {
  for (int i = 0; i < 4; ++i) far.Once("B", "");
  far.On("B", Block());
  EXPECT_EQ(Main_CommStringCheck("B"), "SEISDATA");
  ASSERT_EQ(far.heard_at.size(), 5u);
  for (std::size_t i = 2; i < 5; ++i) {
    EXPECT_EQ(far.heard_at[i] - far.heard_at[i - 1], kTick) << "the count is not reset";
  }
}

TEST_F(MainLink, BlockGivesUpAfterTwentyResends) {
  EXPECT_EQ(Main_CommStringCheck("B"), "");
  World::RunFor(kMillisecond);
  EXPECT_EQ(far.Count("B"), 21);
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(cone.CommTimeoutCount, 0) << "only text replies are counted";
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(Main.ConeComm.InputLen(), 0);
}

TEST_F(MainLink, BlockThatFailsDuringTheSeismicWaitLeavesTheLinkUp) {
  sounding.ConsoleMode = 9;
  EXPECT_EQ(Main_CommStringCheck("B"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(MainLink, BlockEndsWhenAHandlerTakesTheCounter) {
  PostCall(Now() + 2 * kTick, this, [] { Main.CommTick = 0; });
  const Micros start = Now();
  EXPECT_EQ(Main_CommStringCheck("B"), "");
  EXPECT_EQ(far.Count("B"), 1);
  EXPECT_LE(Now() - start, 3 * kTick);
}

TEST_F(MainLink, EdgesOfAModemLineAreNoPassOfTheWaitForABlock) {
  settings.TruckInterfaceSerialPort = 3;
  std::function<void()> edges = [&] {
    const bool cts = world.ports.Wire(3).Lines().cts;
    world.ports.Wire(3).SetLines({!cts, false, false});
    PostCall(Now() + kMillisecond, this, edges);
  };
  edges();
  const Micros start = Now();
  EXPECT_EQ(Main_CommStringCheck("B"), "");
  DropCalls(this);
  World::RunFor(kMillisecond);
  EXPECT_EQ(far.Count("B"), 21);
  EXPECT_GE(Now() - start, 24 * kTick) << "a resend a tick, however many edges come";
}

TEST_F(MainLink, BlockMayHoldLineEndsAndAnyByte) {
  std::string bytes = "\r\n";
  bytes += std::string(62, '\xff') + std::string(62, '\0') + "\r\n";
  far.On("B", bytes);
  EXPECT_EQ(Main_CommStringCheck("B"), "SEISDATA");
  EXPECT_EQ(cone.SeismicBlock[1], 13);
  EXPECT_EQ(cone.SeismicBlock[3], 255);
  EXPECT_EQ(cone.SeismicBlock[126], 0);
}

TEST_F(MainLink, ScanReplyKeepsItsLineEnd) {
  far.On("Y", "COPYRIGHT\r\n");
  EXPECT_EQ(ReconnectCommStringCheck("Y"), "COPYRIGHT\r\n");
  EXPECT_EQ(Main.CommTick, 0);
}

TEST_F(MainLink, ScanWaitsTwoTicksForTheTail) {
  LinkWorld::GoToTick();
  far.OnPieces("Y", {{kMillisecond, "A\r"}, {kTick + kMillisecond, "B"}});
  const Micros start = Now();
  EXPECT_EQ(ReconnectCommStringCheck("Y"), "A\rB");
  EXPECT_EQ(Now() - start, 2 * kTick);
}

TEST_F(MainLink, ScanSilenceIsCountedAndLeavesTheLinkAlone) {
  LinkWorld::GoToTick();
  const Micros start = Now();
  EXPECT_EQ(ReconnectCommStringCheck("X"), "");
  EXPECT_EQ(Now() - start, 10 * kTick);
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1");
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
}

TEST_F(MainLink, ScanDoesNotSupervise) {
  settings.TruckInterfaceSerialPort = 99;
  far.On("Y", "A\r\n");
  ReconnectCommStringCheck("Y");
  EXPECT_EQ(cone.TruckPortLost, kFalse);
}

TEST_F(MainLink, TimeoutCountStopsAtItsLargestValue) {
  cone.CommTimeoutCount = 32767;
  Main_CommStringCheck("Y");
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 32767");
}

TEST_F(MainLink, FieldCountThatDiffersIsShownByTheRoutineThatNothingCalls) {
  const struct {
    std::string reply;
    int count;
    bool failed;
  } rows[] = {{" 0.5 -1 2 ", 3, false}, {" 0.5 -1 2 ", 2, true}, {"0.5 1 ", 2, true},
              {" 1 +? 2", 3, false},    {" A B ", 0, false},     {"", 0, false},
              {" 1  2", 3, false}};
  for (const auto& row : rows) {
    cone.CommFailed = kFalse;
    Main.lblCommError.Caption = "";
    cone.ChannelCount = static_cast<std::int16_t>(row.count);
    CountReplyFields(row.reply);
    EXPECT_EQ(cone.CommFailed == kTrue, row.failed) << row.reply;
    EXPECT_EQ(Main.lblCommError.Caption, row.failed ? "COMM ERR: nchans" : "") << row.reply;
  }
}

}  // namespace
}  // namespace penlog
