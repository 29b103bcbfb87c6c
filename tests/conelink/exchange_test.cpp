#include "conelink/exchange.h"

#include <gtest/gtest.h>

#include <functional>

#include "conelink/link_world.h"
#include "conelink/plain_exchange.h"

namespace penlog {
namespace {

class PlainLink : public ::testing::Test {
 protected:
  PlainLink() { LinkWorld::Open(StartUp.ConeComm, 3); }
  ~PlainLink() override { StartUp.ConeComm.Close(); }

  std::string Say(std::string command, const Dialect& dialect) {
    return PlainExchange(StartUp.ConeComm, StartUp.CommTick, command, dialect, "GIVE UP");
  }

  LinkWorld world;
  ScriptedCone far{world.ports.Wire(3)};
};

TEST_F(PlainLink, WritesTheCommandAndACarriageReturn) {
  far.On("Y", "BANNER\r\n");
  StartUp_CommStringCheck("Y");
  EXPECT_EQ(far.raw, "Y\r");
}

TEST_F(PlainLink, ReturnsTheReplyWithoutItsLineEnd) {
  far.On("Y", "BANNER COPYRIGHT\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "BANNER COPYRIGHT");
  EXPECT_EQ(cone.CommFailed, kFalse);
  EXPECT_EQ(StartUp.CommTick, 0);
}

TEST_F(PlainLink, TakesTheReplyInPiecesAndWhatStandsBehindTheLineFeed) {
  far.OnPieces(
      "Y", {{kTick, "BAN"}, {15 * kTick, "NER"}, {30 * kTick, "\r\nTA"}, {30 * kTick, "IL\r\n"}});
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "BANNER\r\nTAIL");
}

TEST_F(PlainLink, EachCharacterStartsTheSilenceAnew) {
  far.OnPieces("Y", {{18 * kTick, "A"}, {36 * kTick, "B"}, {54 * kTick, "\r\n"}});
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "AB");
  EXPECT_EQ(cone.CommFailed, kFalse);
}

TEST_F(PlainLink, OldInputIsClearedBeforeTheCommand) {
  far.SendLater(0, "OLD\r\n");
  World::RunFor(kMillisecond);
  far.On("Y", "NEW\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "NEW");
}

TEST_F(PlainLink, SilenceLastsTwoTicksToOneTickLessThanItsLimit) {
  const struct {
    const Dialect& dialect;
    int limit;
  } rows[] = {{kStartUpDialect, 21},
              {kSystemSetupDialect, 21},
              {kTroubleshootDialect, 31},
              {kResistivityDialect, 31},
              {kZOLDialect, 61}};
  for (const auto& row : rows) {
    for (const Micros after : {Micros{0}, Micros{1}, kTick - 1}) {
      LinkWorld::GoToTick(after);
      const Micros start = Now();
      EXPECT_EQ(Say("Y", row.dialect), "");
      // The end falls on a tick; the first of the limit's ticks comes within one of them.
      EXPECT_EQ(Now() - start, (row.limit - 1) * kTick - after) << row.limit;
      EXPECT_EQ(cone.CommFailed, kTrue);
    }
  }
}

TEST_F(PlainLink, ReplyThatEndsInCarriageReturnFailsButItsTextIsKept) {
  far.On("Y", "BANNER\r");
  LinkWorld::GoToTick();
  const Micros start = Now();
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "BANNE") << "the last two characters are stripped";
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(Now() - start, 20 * kTick);
}

TEST_F(PlainLink, TwoCharactersStayUnstrippedAtTheStartAndEmptyATroubleshootReply) {
  far.On("Y", "\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "\r\n");
  EXPECT_EQ(Say("Y", kTroubleshootDialect), "");
  far.Once("C 1 2", "\r\n");
  far.On("C 1 2", "AB\r\n");
  EXPECT_EQ(Say("C 1 2", kTroubleshootDialect), "AB") << "the attempt counts as empty";
  EXPECT_EQ(far.Count("C 1 2"), 2);
}

TEST_F(PlainLink, OnlyMemoryReadsAreRepeated) {
  for (const std::string command : {"Y", "X", "Z TF", "D", " 3C 1 2"}) {
    EXPECT_EQ(StartUp_CommStringCheck(command), "");
    EXPECT_EQ(far.Count(command), 1) << command;
  }
  far.Once("C 3 7", "");
  far.Once("C 3 7", "");
  far.On("C 3 7", "DCS0001\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("C 3 7"), "DCS0001");
  EXPECT_EQ(far.Count("C 3 7"), 3);
}

TEST_F(PlainLink, PartOfAMemoryReadIsNotRepeated) {
  far.On("C 3 7", "DCS0");
  EXPECT_EQ(StartUp_CommStringCheck("C 3 7"), "DC");
  EXPECT_EQ(far.Count("C 3 7"), 1);
  EXPECT_EQ(cone.CommFailed, kTrue);
}

TEST_F(PlainLink, MemoryReadUnansweredAtTheLastAttemptTellsAndEndsTheProgram) {
  const struct {
    const Dialect& dialect;
    int attempts;
  } rows[] = {{kStartUpDialect, 10}, {kSystemSetupDialect, 20}, {kTroubleshootDialect, 20}};
  for (const auto& row : rows) {
    ResetYield();
    StartUp.Timer1.Stop();
    StartUp.Timer1.Start();
    far.heard.clear();
    std::string text;
    world.AnswerNextBox(text);
    EXPECT_THROW(Say("C 1 2", row.dialect), ProgramEnd);
    EXPECT_EQ(text, "GIVE UP");
    EXPECT_EQ(far.Count("C 1 2"), row.attempts);
  }
  ResetYield();
}

TEST_F(PlainLink, StartScreenTellsThatNoConeIsDetected) {
  std::string text;
  world.AnswerNextBox(text);
  EXPECT_THROW(StartUp_CommStringCheck("C 1 2"), ProgramEnd);
  EXPECT_EQ(text, "Cone not detected.  Plug in a cone and restart the program.");
  ResetYield();
}

TEST_F(PlainLink, ReplyAtTheLastAttemptEndsTheProgramToo) {
  for (int i = 0; i < 9; ++i) far.Once("C 1 2", "");
  far.On("C 1 2", "AB\r\n");
  std::string text;
  world.AnswerNextBox(text);
  EXPECT_THROW(Say("C 1 2", kStartUpDialect), ProgramEnd);
  ResetYield();
}

TEST_F(PlainLink, ResistivityEndsBySilenceAloneAndAlwaysFails) {
  far.On("M", "1.5 2.5?\r\n");
  LinkWorld::GoToTick();
  const Micros start = Now();
  EXPECT_EQ(ResistivityCommStringCheck("M"), "1.5 2.5?");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_EQ(far.raw, "M\r");
  EXPECT_GE(Now() - start, 29 * kTick);
}

TEST_F(PlainLink, ResistivityGivesUpAfterTwentyAttemptsWithoutAMessage) {
  EXPECT_EQ(ResistivityCommStringCheck("C 1 2"), "");
  EXPECT_EQ(far.Count("C 1 2"), 20);
  EXPECT_EQ(FrontBox(), nullptr);
}

TEST_F(PlainLink, ZolEndsAtChr4AndStripsThatOneCharacter) {
  far.terminator = '\x04';
  far.On("M", "VALUE\x04");
  std::string command = "M";
  EXPECT_EQ(ZOLCommStringCheck(command), "VALUE");
  EXPECT_EQ(command, "M\x04") << "the end character is added to the caller's own text";
  EXPECT_EQ(cone.CommFailed, kFalse);
}

TEST_F(PlainLink, ZolAddsAnotherChr4WithEachAttempt) {
  far.terminator = '\r';  // nothing is answered
  std::string command = "C1";
  std::string text;
  world.AnswerNextBox(text);
  EXPECT_THROW(ZOLCommStringCheck(command), ProgramEnd);
  EXPECT_EQ(command, "C1" + std::string(20, '\x04'));
  EXPECT_EQ(far.raw.substr(0, 7),
            "C1\x04"
            "C1\x04\x04");
  EXPECT_EQ(text, "Cone not detected.  Plug in a cone and restart the program.");
  ResetYield();
}

TEST_F(PlainLink, ReplyOfAMegabyteFailsAtItsBound) {
  for (const char* end : {"", "\r\n"}) {
    far.On("Y", std::string(1 << 20, 'U') + end);
    const Micros start = Now();
    EXPECT_EQ(StartUp_CommStringCheck("Y").size(), ReplyBound::kCharacters - 2);
    EXPECT_EQ(cone.CommFailed, kTrue);
    EXPECT_LT(Now() - start, kTick);
  }
  far.On("Y", "COPYRIGHT\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "COPYRIGHT") << "nothing of it is left";
  far.On("Y", std::string(ReplyBound::kCharacters - 2, 'U') + "\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y").size(), ReplyBound::kCharacters - 2);
  EXPECT_EQ(cone.CommFailed, kFalse) << "one that just fits";
}

TEST_F(PlainLink, NoiseThatNeverEndsALineHoldsTheExchangeNoLongerThanItsBound) {
  std::function<void()> noise = [&] {
    far.SendLater(0, "~");
    PostCall(Now() + 9 * kTick, this, noise);
  };
  noise();
  const Micros start = Now();
  StartUp_CommStringCheck("Y");
  DropCalls(this);
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_GE(Now() - start, ReplyBound::kTime);
  EXPECT_LT(Now() - start, ReplyBound::kTime + kSecond);
}

TEST_F(PlainLink, ReplyMayHoldAnyByte) {
  const std::string bytes("\0\xff\x80\r\n\0A", 7);
  far.On("Y", bytes + "\r\n");
  EXPECT_EQ(StartUp_CommStringCheck("Y"), bytes);
  EXPECT_EQ(cone.CommFailed, kFalse);
}

TEST_F(PlainLink, ClosedPortIsSilence) {
  StartUp.ConeComm.Close();
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
}

TEST_F(PlainLink, VanishedPortIsSilence) {
  world.ports.Wire(3).SetPresent(false);
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
}

TEST_F(PlainLink, HandlerThatTakesTheCounterCutsTheWaitShort) {
  LinkWorld::GoToTick();
  const Micros start = Now();
  PostCall(Now() + 3 * kTick + 1, this, [] { StartUp.CommTick = 0; });
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "");
  EXPECT_EQ(cone.CommFailed, kTrue);
  EXPECT_LE(Now() - start, 4 * kTick);
}

}  // namespace
}  // namespace penlog
