// What the console says of a cone that gives one reading for ever.
#include "sounding/repeated_reading.h"

#include "sounding/fake_cone.h"

namespace penlog {
namespace {

constexpr const char* kNotice = "COMM ERR: cone repeats";

struct RepeatedReading : FakeCone, testing::Test {
  RepeatedReading() { repeated_reading = {}; }

  /// The same reply for `seconds`, ten times a second, while the rods go down by `metres`.
  void Repeat(const std::string& reply, double seconds, float metres) {
    const int readings = static_cast<int>(seconds * 10);
    const float start = sounding.CurrentDepth;
    for (int i = 1; i <= readings; ++i) {
      Run(kSecond / 10);
      sounding.CurrentDepth = start + metres * static_cast<float>(i) / static_cast<float>(readings);
      NoteReply(reply);
    }
  }
  static void Run(Micros time) {
    const Micros end = Now() + time;
    while (Now() < end) WaitYield("time to pass");
  }
};

TEST_F(RepeatedReading, IsToldAfterThreeSecondsAndADepthStep) {
  NoteReply("1.0 2.0 ");
  Repeat("1.0 2.0 ", 2.5, 0.05f);
  EXPECT_EQ(Main.lblCommError.Caption, "");
  Repeat("1.0 2.0 ", 1, 0.02f);
  EXPECT_EQ(Main.lblCommError.Caption, kNotice);
}

TEST_F(RepeatedReading, OfRodsAtRestIsNotTold) {
  NoteReply("1.0 2.0 ");
  Repeat("1.0 2.0 ", 60, 0.015f);
  EXPECT_EQ(Main.lblCommError.Caption, "");
}

TEST_F(RepeatedReading, IsToldOnTheWayUpToo) {
  NoteReply("1.0 2.0 ");
  Repeat("1.0 2.0 ", 4, -0.08f);
  EXPECT_EQ(Main.lblCommError.Caption, kNotice);
}

TEST_F(RepeatedReading, GoesWithTheFirstOtherOne) {
  NoteReply("1.0 2.0 ");
  Repeat("1.0 2.0 ", 4, 0.08f);
  NoteReply("1.0 2.1 ");
  EXPECT_EQ(Main.lblCommError.Caption, "");
}

TEST_F(RepeatedReading, OfOneFieldAloneIsNone) {
  for (int i = 0; i < 40; ++i) Repeat("1.0 " + std::to_string(i) + " ", 0.1, 0.002f);
  EXPECT_EQ(Main.lblCommError.Caption, "");
}

TEST_F(RepeatedReading, TakesBackNoOtherWords) {
  NoteReply("1.0 2.0 ");
  Repeat("1.0 2.0 ", 4, 0.08f);
  Main.lblCommError.Caption = "COMM ERR: timeout 1 ";
  NoteReply("1.0 2.1 ");
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1 ");
}

}  // namespace
}  // namespace penlog
