// The readings that fill the averages behind a resume: no row is taken meanwhile, the strip says
// so, and the rods may move already.
#include <set>
#include <string>

#include "display/status_strip.h"
#include "sounding/fake_cone.h"
#include "sounding/resume_rebuild.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

constexpr std::int32_t kRowsBefore = 3;

/// A resumed sounding of three rows, its files begun.
struct Filling : FakeCone {
  Filling() {
    status_strip = {};
    session.ResumeConeId = "DSE1234";
    session.ReadingsAveraged = 4;
    sounding.ReadingsTaken = 0;
    CreateSoundingFiles();
    sounding.RowCount = kRowsBefore;
    for (std::int32_t row = 1; row <= kRowsBefore; ++row) {
      sounding.Rows(row, 0) = 0.02F * static_cast<float>(row);
    }
    sounding.DepthCounts = 2 * kRowsBefore;
  }
  ~Filling() { status_strip = {}; }

  /// One count of the encoder, edge by edge.
  void CountAt(Micros time) {
    const ModemLines held = truck().Lines();
    ModemLines none = held;
    none.cd = none.cts = false;
    ModemLines half = none;
    half.cd = true;
    ModemLines first = held;
    first.cd = false;
    Micros at = time;
    for (const ModemLines& lines : {first, none, half, held}) {
      PostCall(at, this, [this, lines] { truck().SetLines(lines); });
      at += kMillisecond;
    }
  }
  /// A row falls due each half second, `count` times.
  void Push(int count) {
    for (int row = 1; row <= count; ++row) {
      for (int step = 0; step < 2; ++step) {
        CountAt(Now() + row * kSecond / 2 - 300 * kMillisecond + step * 10 * kMillisecond);
      }
    }
  }
  void Look(std::set<std::string>& words) {
    PostCall(
        Now() + 20 * kMillisecond, this,
        [this, &words] {
          words.insert(Main.lblState.Caption);
          Look(words);
        },
        EventKind::RepeatingCall);
  }
};

TEST(FillingReadings, OfAResumeAreNoRecordingYet) {
  Filling filling;
  World::RunFor(100 * kMillisecond);
  std::set<std::string> words;
  filling.Look(words);
  RebuildResumedSounding();
  DropCalls(&filling);
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(sounding.ReadingsTaken, 10);
  EXPECT_EQ(words, std::set<std::string>{"WAITING"});
  World::RunFor(100 * kMillisecond);
  EXPECT_EQ(Main.lblState.Caption, "RECORDING");
}

TEST(FillingReadings, OfAResumeUnderAPushLeaveTheFirstRowAloneWithAnotherSpeed) {
  Filling filling;
  filling.Push(12);
  RebuildResumedSounding();
  EXPECT_GT(Now(), kSecond) << "rows fell due meanwhile";
  EXPECT_EQ(sounding.RowCount, kRowsBefore) << "and none was taken";
  EXPECT_EQ(sounding.RecordPending, kTrue);
  for (int pass = 0; pass < 200 && sounding.RowCount < kRowsBefore + 5; ++pass) MainloopPass();
  ASSERT_EQ(sounding.RowCount, kRowsBefore + 5);
  for (std::int32_t row = kRowsBefore + 2; row <= kRowsBefore + 5; ++row) {
    EXPECT_GT(sounding.RowSpeed(row - 1), 2.5F) << row;
    EXPECT_LT(sounding.RowSpeed(row - 1), 6.5F) << row;
  }
}

}  // namespace
}  // namespace penlog
