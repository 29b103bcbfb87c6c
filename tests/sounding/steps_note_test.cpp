// What may be missing in the depth outlives the program: kept while rows are recorded, known again
// behind a resume, gone with the sounding.
#include "sounding/steps_note.h"

#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/missing_steps.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

constexpr const char* kNote = "/data/Missing Steps.txt";
const std::string kHead = "2026-06-15 09:30:00\r\nHARBOUR(007)\r\n";

/// A sounding that is recorded, and whose truck interface was away at two depths.
struct Noted : Console {
  Noted() {
    Forget();
    sounding = {};
    session.SoundingDateTime = "2026-06-15 09:30:00";
    session.SoundingName = "HARBOUR(007)";
    CreateSoundingFiles();
    cpt = disk.Read("/data/s.cpt");
    sounding.ConsoleMode = 2;
  }
  ~Noted() { Forget(); }
  static void Forget() {
    missing_steps = {};
    steps_note = {};
  }
  static void Away(float depth) {
    sounding.CurrentDepth = depth;
    NoteStepsMayBeMissing();
    KeepMissingSteps();
  }
  /// Past the pause behind an attempt.
  static void Later() {
    KeepMissingSteps();
    RunFor(10 * kSecond);
  }
  /// The next life of the program.
  static void Restart() {
    Forget();
    sounding = {};
    session.ResumeConeId = "DSE1234";
    TakeUpMissingSteps();
  }
  std::string Note() { return disk.FileExists(kNote) ? disk.Read(kNote) : ""; }

  std::string cpt;
};

TEST(MissingSteps, AreKeptWithTheirDepthsAndTakenUpByAResume) {
  Noted noted;
  Noted::Away(1.25F);
  EXPECT_EQ(noted.Note(), kHead + "1\r\n1.250\r\n1.250\r\n0\r\n");
  Noted::Later();
  missing_steps.EdgesLost = 4;
  Noted::Away(3.5F);
  EXPECT_EQ(noted.Note(), kHead + "2\r\n1.250\r\n3.500\r\n4\r\n");
  Noted::Restart();
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 3.5F);
  EXPECT_EQ(missing_steps.TimesAway, 2);
  EXPECT_EQ(missing_steps.TimesAwayBefore, 2);
  EXPECT_EQ(missing_steps.FirstDepth, 1.25F);
  EXPECT_EQ(missing_steps.EdgesLostBefore, 4);
  EXPECT_EQ(missing_steps.EdgesLost, 0);
}

TEST(MissingSteps, OfBothLivesAreKeptTogether) {
  Noted noted;
  missing_steps.EdgesLost = 2;
  Noted::Away(1.25F);
  Noted::Restart();
  sounding.ConsoleMode = 2;
  StartFile(kTemporaryFile, "");
  missing_steps.EdgesLost = 3;
  Noted::Away(-0.75F);
  EXPECT_EQ(noted.Note(), kHead + "2\r\n1.250\r\n-0.750\r\n5\r\n");
}

TEST(MissingSteps, AreWrittenOnceAndNotWithEachTick) {
  Noted noted;
  int works = 0;
  noted.disk.before = [&works](std::string_view work, const std::string&) {
    works += work == "create" ? 1 : 0;
  };
  Noted::Away(1.25F);
  for (int tick = 0; tick < 100; ++tick) KeepMissingSteps();
  EXPECT_EQ(works, 1);
  Noted::Restart();
  sounding.ConsoleMode = 2;
  StartFile(kTemporaryFile, "");
  KeepMissingSteps();
  EXPECT_EQ(works, 1) << "as it was taken up";
}

TEST(MissingSteps, AreKeptWhileTheDepthOfASoundingCountsAlone) {
  struct Case {
    const char* what;
    int mode;
    float waits;
    bool begun, missing, kept;
  };
  for (const Case& row :
       {Case{"recording", 2, 0, true, true, true}, Case{"on the way down", 1, 1, true, true, true},
        Case{"before the start or behind the stop", 1, 0, true, true, false},
        Case{"without a recovery copy", 2, 0, false, true, false},
        Case{"nothing is missing", 2, 0, true, false, false}}) {
    Noted noted;
    sounding.ConsoleMode = static_cast<std::int16_t>(row.mode);
    session.ResumeDepthStatus = row.waits;
    if (!row.begun) ForgetFile(kTemporaryFile);
    sounding.StepsMayBeMissing = row.missing ? kTrue : kFalse;
    KeepMissingSteps();
    EXPECT_EQ(!noted.Note().empty(), row.kept) << row.what;
  }
}

TEST(MissingSteps, OfAnotherSoundingADamagedNoteOrNoResumeAreNotTakenUp) {
  struct Case {
    const char* what;
    std::string note;
    const char* resumed = "DSE1234";
  };
  for (const Case& row :
       {Case{"none", ""},
        Case{"another day", "2026-06-14 09:30:00\r\nHARBOUR(007)\r\n1\r\n1\r\n1\r\n0\r\n"},
        Case{"another name", "2026-06-15 09:30:00\r\nHARBOUR(008)\r\n1\r\n1\r\n1\r\n0\r\n"},
        Case{"cut", kHead + "1\r\n1.250\r\n"}, Case{"no number", kHead + "1\r\nx\r\n1\r\n0\r\n"},
        Case{"too large", kHead + "9999999999\r\n1\r\n1\r\n7\r\n"},
        Case{"no resume", kHead + "1\r\n1\r\n1\r\n7\r\n", ""}}) {
    Noted noted;
    if (!row.note.empty()) noted.disk.Put(kNote, row.note);
    session.ResumeConeId = row.resumed;
    TakeUpMissingSteps();
    EXPECT_EQ(sounding.StepsMayBeMissing, 0) << row.what;
    EXPECT_EQ(missing_steps.EdgesLostBefore, 0) << row.what;
  }
}

TEST(MissingSteps, ThatADiskRefusesAreToldOnceAndKeptAsSoonAsItTakesThem) {
  Noted noted;
  noted.disk.SetRoom(0);
  Noted::Away(1.25F);
  for (int attempt = 0; attempt < 5; ++attempt) {
    Noted::Later();
    KeepMissingSteps();
  }
  ASSERT_EQ(OpenBoxes().size(), 1U);
  EXPECT_TRUE(FrontBox()->text.starts_with("THAT DEPTH STEPS MAY BE MISSING COULD NOT BE NOTED"));
  EXPECT_EQ(noted.Note(), "");
  noted.disk.SetRoom(-1);
  Noted::Later();
  KeepMissingSteps();
  EXPECT_EQ(noted.Note(), kHead + "1\r\n1.250\r\n1.250\r\n0\r\n");
}

TEST(MissingSteps, ThatGoOnComingAreWrittenOnceInTenSecondsAndBehindTheRows) {
  Noted noted;
  int works = 0;
  noted.disk.before = [&works](std::string_view work, const std::string&) {
    works += work == "create" ? 1 : 0;
  };
  const auto minute = [] {
    for (int tick = 0; tick < 60 * 5; ++tick) {
      ++missing_steps.EdgesLost;
      KeepMissingSteps();
      Noted::RunFor(200 * kMillisecond);
    }
  };
  minute();
  EXPECT_EQ(works, 6);
  sounding.Held[kTemporaryFile].Failed = true;
  minute();
  EXPECT_EQ(works, 6) << "the rows come first";
  sounding.Held[kTemporaryFile].Failed = false;
  KeepMissingSteps();
  EXPECT_TRUE(noted.Note().ends_with("\r\n601\r\n") || noted.Note().ends_with("\r\n600\r\n"));
}

// The depth begins at the start.
TEST(MissingSteps, OfBeforeTheStartAreNoneOfTheSoundings) {
  const Noted noted;
  missing_steps.EdgesLost = 3;
  ForgetMissingSteps();
  EXPECT_EQ(missing_steps.EdgesLost, 0);
  EXPECT_EQ(missing_steps.EdgesLostAtStart, 3);
  missing_steps.EdgesLost = 2;
  ForgetMissingSteps();
  EXPECT_EQ(missing_steps.EdgesLostAtStart, 5);
}

TEST(MissingSteps, GoWithTheSoundingAndNotBefore) {
  Noted noted;
  Noted::Away(1.25F);
  noted.disk.Remove("/data/s.cpt");
  EXPECT_FALSE(CloseSounding());
  EXPECT_NE(noted.Note(), "") << "it can still be resumed";
  noted.disk.Put("/data/s.cpt", noted.cpt);
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(noted.Note(), "");
}

TEST(MissingSteps, OfAnotherSoundingStayAtTheEnd) {
  Noted noted;
  noted.disk.Put(kNote, "2026-06-14 09:30:00\r\nHARBOUR(006)\r\n1\r\n1\r\n1\r\n0\r\n");
  EXPECT_TRUE(CloseSounding());
  EXPECT_NE(noted.Note(), "");
}

}  // namespace
}  // namespace penlog
