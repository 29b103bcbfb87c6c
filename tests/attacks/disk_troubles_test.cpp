// Disks that are full, read only, gone or dead at the worst moment: the operator is told, no row is
// lost, and with the disk well again the sounding ends whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "attacks/calm_operator.h"
#include "attacks/crash_judge.h"
#include "attacks/stick.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr int kHeaderLines = 23;
const std::string kCpt = "/soundings/S1.cpt";

std::int64_t LinesIn(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

/// The sounding file is whole and the recovery copy says so.
void ExpectWhole(CalmOperator& calm, const std::string& what) {
  ASSERT_TRUE(calm.ended) << what << "\n" << calm.Told();
  EXPECT_GE(calm.rows, 14) << what;
  EXPECT_EQ(LinesIn(calm.disk.Files().at(kCpt)), kHeaderLines + calm.rows) << what;
  EXPECT_EQ(calm.disk.Files().at(calm.Data("TemporaryData.txt")), "DONE\r\n") << what;
}

/// Undoes what was done to the disk after a time, over and over.
void Heal(CalmOperator& calm, Micros after) {
  PostCall(Now() + after, &calm, [&calm] {
    calm.disk.SetRoom(-1);
    calm.disk.SetReadOnly("");
    calm.disk.Trouble(0);
    calm.disk.before = {};
  });
}

TEST(FullDisk, AtAnyRoomLosesNoRow) {
  for (int room = 0; room < 4700; room += 233) {
    CalmOperator calm;
    calm.LayDown();
    calm.at = [&](const std::string& moment) {
      if (moment != "START") return;
      calm.disk.SetRoom(room);
      Heal(calm, 25 * kSecond);
    };
    calm.Run();
    ExpectWhole(calm, "room " + std::to_string(room));
    EXPECT_TRUE(calm.WasTold("COULD NOT BE")) << room;
  }
}

TEST(FullDisk, AtTheEndKeepsTheSoundingOpenUntilThereIsRoom) {
  for (const int room : {0, 100, 600, 900}) {
    CalmOperator calm;
    calm.LayDown();
    calm.at = [&](const std::string& moment) {
      if (moment != "STOP") return;
      calm.disk.SetRoom(room);
      Heal(calm, 40 * kSecond);
    };
    calm.Run();
    ExpectWhole(calm, "room " + std::to_string(room));
  }
}

TEST(ReadOnlyDisk, OfTheSoundingsIsToldAndRecordsOnceItIsMended) {
  CalmOperator calm;
  calm.LayDown();
  calm.at = [&](const std::string& moment) {
    if (moment != "START") return;
    calm.disk.SetReadOnly("/soundings");
    Heal(calm, 20 * kSecond);
  };
  calm.Run();
  EXPECT_TRUE(calm.WasTold("THE SOUNDING COULD NOT BE STARTED"));
  EXPECT_TRUE(calm.WasTold("Permission denied"));
  ExpectWhole(calm, "read only");
}

TEST(ReadOnlyDisk, OfTheDataDirectoryIsToldAtTheStartAndTheConsoleLivesOn) {
  CalmOperator calm;
  calm.LayDown();
  calm.disk.SetReadOnly(VirtualSession::DataDirectory());
  calm.at = [&](const std::string& moment) {
    if (moment == "START") Heal(calm, 20 * kSecond);
  };
  calm.Run();
  EXPECT_TRUE(calm.WasTold("THE DATA DIRECTORY CANNOT BE WRITTEN"));
  ExpectWhole(calm, "read only data directory");
}

TEST(DyingDisk, ThatFailsAndHealsAgainAndAgainLosesNoRow) {
  for (const std::uint32_t one_in : {1U, 2U, 3U, 5U, 11U}) {
    CalmOperator calm;
    calm.LayDown();
    calm.at = [&](const std::string& moment) {
      if (moment == "recording") calm.disk.Trouble(one_in);
      if (moment == "STOP") Heal(calm, 15 * kSecond);
    };
    calm.Run();
    ExpectWhole(calm, "one in " + std::to_string(one_in));
  }
}

// A stick pulled out leaves an empty folder behind in its place.
TEST(VanishedDisk, IsToldNoNewFileIsBegunAndTheRowsFollowWhenItIsBack) {
  CalmOperator calm;
  calm.LayDown();
  std::string away;
  calm.at = [&](const std::string& moment) {
    if (moment != "recording") return;
    PostCall(Now() + 5 * kSecond, &calm, [&] {
      away = calm.disk.Files().at(kCpt);
      calm.disk.Remove(kCpt);
    });
    PostCall(Now() + 12 * kSecond, &calm, [&] {
      EXPECT_FALSE(calm.disk.FileExists(kCpt));
      EXPECT_GT(sounding.RowsHeldBack, 0);
      calm.disk.Put(kCpt, away);
    });
  };
  calm.Run();
  EXPECT_TRUE(calm.WasTold(kCpt + " is no longer there"));
  ExpectWhole(calm, "vanished");
}

TEST(VanishedDisk, ThatNeverComesBackLeavesTheRecoveryCopyWhole) {
  CalmOperator calm;
  calm.LayDown();
  calm.at = [&](const std::string& moment) {
    if (moment != "recording") return;
    PostCall(Now() + 5 * kSecond, &calm, [&] { calm.disk.Remove(kCpt); });
  };
  calm.Run(5 * 60 * kSecond);
  EXPECT_FALSE(calm.ended);
  EXPECT_TRUE(calm.WasTold("THE SOUNDING IS NOT CLOSED YET"));
  EXPECT_EQ(LinesIn(calm.disk.Files().at(calm.Data("TemporaryData.txt"))), 17 + calm.rows);
  EXPECT_GE(calm.rows, 14);
}

/// The stick is pulled at that work of the end on the sounding's file, and comes back.
struct PulledAtTheEnd : CalmOperator {
  PulledAtTheEnd(const std::string& work, bool raises) {
    LayDown();
    at = [=, this](const std::string& moment) {
      if (moment != "STOP") return;
      disk.before = [=, this](std::string_view operation, const std::string& path) {
        if (pulled || operation != work || path != kCpt) return;
        Pull();
        if (raises) throw RuntimeFault(path + ": No such device");
      };
    };
    Run();
  }
  void Pull() {
    pulled = true;
    stick.Pull(Loss::ContentsAndNames);
    PostCall(Now() + 8 * kSecond, this, [this] {
      EXPECT_FALSE(disk.FileExists(kCpt)) << "nothing is begun in its place";
      EXPECT_EQ(LinesIn(disk.Files().at(Data("TemporaryData.txt"))), 17 + sounding.RowCount)
          << "not done, and nothing lost";
      EXPECT_TRUE(WasTold("THE SOUNDING IS NOT CLOSED YET"));
      stick.PutBack();
    });
  }
  bool pulled = false;
  Stick stick{disk};
};

TEST(VanishedDisk, AtTheEndIsToldAndTheSoundingIsClosedWhenItIsBack) {
  for (const bool raises : {true, false}) {
    for (const char* work : {"append", "write", "sync", "close"}) {
      SCOPED_TRACE(std::string(work) + (raises ? ", raises" : ""));
      PulledAtTheEnd calm(work, raises);
      EXPECT_TRUE(calm.pulled);
      ExpectWhole(calm, work);
    }
  }
}

/// The stick is pulled right before one of the disk's works, counted from the press of START on,
/// and comes back with what it held then.
struct PulledInside : CalmOperator {
  struct Pulling {
    int step = 0;
    bool raises = true;  ///< or its folder stays, empty
    Loss loss = Loss::ContentsAndNames;
  };
  explicit PulledInside(const Pulling& pulling) : how(pulling) {
    LayDown();
    at = [this](const std::string& moment) {
      if (moment == "START") Watch();
    };
    Run();
    if (stick.IsAway()) ComeBack();  // the console has ended meanwhile
  }
  void Watch() {
    disk.before = [this](std::string_view work, const std::string& path) {
      if (stick.IsBeingPulled()) return;
      works.push_back(std::string(work) + " " + path);
      if (static_cast<int>(works.size()) == how.step) {
        stick.Pull(how.loss);
        PostCall(Now() + 8 * kSecond, this, [this] { ComeBack(); });
      }
      if (how.raises) stick.RefuseWork(path);
    };
  }
  void ComeBack() {
    EXPECT_FALSE(disk.FileExists(kCpt)) << "nothing is begun in its place";
    stick.PutBack();
  }
  /// The number of the first of those works, or of the last; 0 for none.
  int StepOf(const std::string& work, bool is_last) const {
    int found = 0;
    for (std::size_t i = 0; i < works.size(); ++i) {
      if (works[i] == work && (is_last || found == 0)) found = static_cast<int>(i) + 1;
    }
    return found;
  }
  Pulling how;
  std::vector<std::string> works;
  Stick stick{disk};
};

/// Rows on their depths, none doubled, torn or with a hole.
void ExpectRowsOnTheGrid(const std::string& cpt, const std::string& what) {
  std::size_t at = 0;
  for (int line = 0; line < kHeaderLines; ++line) at = cpt.find('\n', at) + 1;
  float depth = 0;
  for (std::size_t end = cpt.find('\n', at); end != cpt.npos; end = cpt.find('\n', at)) {
    const std::string row = cpt.substr(at, end - at);
    EXPECT_EQ(row.find('\0'), row.npos) << what;
    const float next = ParseSingle(row.substr(0, 7));
    EXPECT_NEAR(next, depth + 0.02F, 0.0011F) << what << ": " << row;
    depth = next;
    at = end + 1;
  }
}

struct NamedPull {
  const char* name;
  bool raises;
  Loss loss;
};

struct PulledAtEachWork : testing::TestWithParam<NamedPull> {};

TEST_P(PulledAtEachWork, TheStickComesBackAndTheSoundingEndsWhole) {
  const NamedPull& pull = GetParam();
  const PulledInside whole({});
  const std::string temporary = whole.Data("TemporaryData.txt");
  const int first_row = whole.StepOf("append " + temporary, false);
  const int done = whole.StepOf("create " + temporary + ".new", true);
  const auto last = static_cast<int>(whole.works.size());
  ASSERT_GT(first_row, 8);
  ASSERT_GT(done, first_row + 100);
  ASSERT_GE(last, done + 5);
  // An empty folder takes a start's files: the stick would not bring them back.
  for (const std::int64_t number : StepsOfPart(last, 0, 1)) {
    const auto step = static_cast<int>(number);
    if (step < first_row && !pull.raises) continue;
    const std::string what = std::to_string(step) + ", " +
                             whole.works[static_cast<std::size_t>(step - 1)] + ", " + pull.name;
    PulledInside calm({step, pull.raises, pull.loss});
    ExpectWhole(calm, what);
    ExpectRowsOnTheGrid(calm.disk.Files().at(kCpt), what);
    EXPECT_TRUE(step >= done || calm.WasTold("/soundings")) << what << " not told";
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PulledAtEachWork,
    testing::Values(NamedPull{"synced alone, raises", true, Loss::ContentsAndNames},
                    NamedPull{"half the tail, raises", true, Loss::HalfTail},
                    NamedPull{"synced alone, empty folder", false, Loss::ContentsAndNames},
                    NamedPull{"half the tail, empty folder", false, Loss::HalfTail}));

TEST(DeletedFolder, BetweenOkAndStartIsToldAndTakenUpOnceItIsThereAgain) {
  CalmOperator calm;
  calm.LayDown();
  calm.at = [&](const std::string& moment) {
    if (moment != "START") return;
    calm.disk.before = [](std::string_view operation, const std::string& path) {
      if (operation == "create" && path.starts_with("/soundings")) {
        throw RuntimeFault(path + ": No such file or directory");
      }
    };
    Heal(calm, 20 * kSecond);
  };
  calm.Run();
  EXPECT_TRUE(calm.WasTold("No such file or directory"));
  ExpectWhole(calm, "folder");
}

TEST(TakenName, BetweenOkAndStartIsMovedBesideAndNotOverwritten) {
  CalmOperator calm;
  calm.LayDown();
  calm.at = [&](const std::string& moment) {
    if (moment == "START") calm.disk.Put(kCpt, "another's rows");
  };
  calm.Run();
  ExpectWhole(calm, "taken name");
  EXPECT_EQ(calm.disk.Files().at("/soundings/S1 (2).cpt"), "another's rows");
}

// The machine dies at the n-th operation on the disk, from the press of START on.
TEST(PowerLoss, AtAnyOperationKeepsEachAcknowledgedRow) {
  for (int stop_at = 1; stop_at < 190; stop_at += 9) {
    CalmOperator calm;
    calm.LayDown();
    calm.disk.Put(calm.Data("TemporaryData.txt"), "an older sounding\r\n");
    int count = 0;
    calm.at = [&](const std::string& moment) {
      if (moment != "START") return;
      calm.disk.before = [&](std::string_view, const std::string&) {
        if (++count == stop_at) RequestEnd();
        if (count >= stop_at) throw RuntimeFault("the power is gone");
      };
    };
    calm.Run();
    const std::int64_t told_rows = sounding.RowCount - sounding.RowsHeldBack;
    calm.disk.before = {};
    calm.disk.LosePower();
    bool old_is_there = false;
    std::int64_t rows = 0;
    for (const auto& [path, content] : calm.disk.Files()) {
      if (path.find("TemporaryData") == std::string::npos) continue;
      old_is_there = old_is_there || content == "an older sounding\r\n";
      if (LinesIn(content) >= 17) rows = LinesIn(content) - 17;
      if (content == "DONE\r\n") rows = LinesIn(calm.disk.Files().at(kCpt)) - kHeaderLines;
    }
    EXPECT_TRUE(old_is_there) << stop_at;
    EXPECT_GE(rows, told_rows) << stop_at;
    // And the next start works with what is left.
    calm.at = {};
    calm.name = "S2";
    calm.Run();
    EXPECT_TRUE(calm.ended) << stop_at << "\n" << calm.Told();
  }
}

}  // namespace
}  // namespace penlog
