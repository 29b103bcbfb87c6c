// Real soundings in the ground below the rig. The files lie beside the project and are not part of
// it; without them these tests are skipped.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "scenarios/log_rows.h"
#include "scenarios/scenario.h"

namespace penlog {
namespace {

const std::string kFolder = std::string(PENLOG_SOURCE_DIR) + "/../shared/data/gef/";

std::string RealFile(const std::string& name) {
  std::ifstream file(kFolder + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// One column of a GEF file over its penetration length, read without the rig's help.
class GefColumn {
 public:
  GefColumn(const std::string& text, int quantity) {
    std::map<int, int> place_of;
    std::map<int, double> empty;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("#COLUMNINFO=", 0) == 0) {
        place_of[std::atoi(line.substr(line.rfind(',') + 1).c_str())] = std::atoi(&line[12]) - 1;
      } else if (line.rfind("#COLUMNVOID=", 0) == 0) {
        empty[std::atoi(&line[12]) - 1] = LeadingNumber(line.substr(line.find(',') + 1));
      } else if (!line.empty() && line[0] != '#') {
        TakeRow(line, place_of.at(1), place_of.at(quantity), empty);
      }
    }
  }

  double At(double depth) const {
    const auto next = points_.upper_bound(depth);
    if (next == points_.end()) return points_.rbegin()->second;
    if (next == points_.begin()) return 0.0;
    const auto before = std::prev(next);
    const double part = (depth - before->first) / (next->first - before->first);
    return before->second + part * (next->second - before->second);
  }

 private:
  void TakeRow(std::string line, int length, int place, const std::map<int, double>& empty) {
    for (char& c : line) {
      if (c == ';' || c == '!') c = ' ';
    }
    std::istringstream words(line);
    std::vector<double> cells;
    for (double cell = 0; words >> cell;) cells.push_back(cell);
    const double value = cells.at(static_cast<std::size_t>(place));
    const auto nothing = empty.find(place);
    if (nothing != empty.end() && nothing->second == value) return;
    points_.emplace(cells.at(static_cast<std::size_t>(length)), value);
  }

  std::map<double, double> points_;
};

struct RealGround : testing::Test {
  void SetUp() override {
    if (!std::filesystem::exists(kFolder)) GTEST_SKIP() << kFolder << " is not here";
  }
};

/// The console records in the ground of that file.
struct RealSounding : Scenario {
  explicit RealSounding(const std::string& file) : clock(disk, "TemporaryData.txt") {
    const std::string path = "/ground/" + file;
    disk.Put(path, RealFile(file));
    At("ground", [this, path] {
      std::string reply;
      EXPECT_TRUE(rig.Command("ground " + path, reply)) << reply;
    });
    At("look", [this] { temporary = DataFile("TemporaryData.txt"); });
  }
  std::string Cpt() const { return File("/soundings/S1.cpt"); }

  RowClock clock;
  std::string temporary;
};

/// A number of a header line, 20 characters a column.
double HeaderNumber(const std::string& cpt, std::size_t line, int column) {
  const auto at = static_cast<std::size_t>(13 + 20 * column);
  return LeadingNumber(LinesOf(cpt).at(line - 1).substr(at, 20));
}

/// The value of a row in kPa, by the header's numbers alone.
double Engineering(const std::string& cpt, const std::string& line, int column) {
  const auto at = static_cast<std::size_t>(13 + 20 * column);
  const double raw = LeadingNumber(line.substr(at, 20));
  return (raw - HeaderNumber(cpt, 19, column)) / HeaderNumber(cpt, 18, column) *
         HeaderNumber(cpt, 20, column);
}

/// kPa that two roundings to the fifth place and the cone's own millionths come to: of the row,
/// and of the baseline.
double Resolution(const std::string& cpt, int column) {
  return 2 * 6.1e-6 / HeaderNumber(cpt, 18, column) * HeaderNumber(cpt, 20, column);
}

class RealGroundPush : public RealGround, public testing::WithParamInterface<const char*> {};

TEST_P(RealGroundPush, EachRowIsTheMeanOfTheLastFourRepliesBeforeIt) {
  RealSounding sounding(GetParam());
  sounding.Play(ScriptToRecording() + R"(rig test ground
rig push 8
expect Main.lblDepth "8.000 m" 700
wait 2
rig test look
)" + ScriptToEnd());
  const LogRows rows(sounding.rig.log, sounding.clock.Times(), DcsShape(0.02),
                     HeaderNumber(sounding.Cpt(), 19, 0));
  ASSERT_EQ(rows.Count(), 400);
  rows.ExpectCptRows(sounding.Cpt(), false);
  rows.ExpectTemporaryRows(sounding.temporary);
}

INSTANTIATE_TEST_SUITE_P(Files, RealGroundPush,
                         testing::Values("pygef_cpt.gef", "pygef_cpt2.gef", "pygef_example.gef"),
                         [](const auto& info) {
                           const std::string name = info.param;
                           return name.substr(0, name.find('.'));
                         });

TEST_F(RealGround, HeldAtEachStepForFiveReadingsTheRowsAreTheGroundItself) {
  RealSounding sounding("pygef_cpt.gef");
  // The first baseline of the sleeve still carries the drift of the tip's zero as a load: it was
  // read before the tip had its own. The second is free of it.
  sounding.Play(ScriptToMain() + R"(click Main.cmdTakeBaseline
wait 2
click Main.cmdTakeBaseline
click Main.cmdStart
expect Main.cmdStart "STOP"
rig test ground
rig hold 250 5
expect Main.lblDepth "5.000 m" 900
wait 2
)" + ScriptToEnd());
  const std::string text = RealFile("pygef_cpt.gef");
  const GefColumn tip(text, 2);
  const GefColumn sleeve(text, 3);
  const GefColumn pressure(text, 6);
  const std::string cpt = sounding.Cpt();
  const auto lines = LinesOf(cpt);
  ASSERT_EQ(lines.size(), 23U + 250U);
  for (int row = 1; row <= 245; ++row) {
    const std::string& line = lines[static_cast<std::size_t>(22 + row)];
    const double depth = row * 0.02;
    SCOPED_TRACE(line);
    EXPECT_NEAR(Engineering(cpt, line, 0), 1000 * tip.At(depth), Resolution(cpt, 0));
    EXPECT_NEAR(Engineering(cpt, line, 1), 1000 * sleeve.At(depth), Resolution(cpt, 1));
    EXPECT_NEAR(Engineering(cpt, line, 2), 1000 * pressure.At(depth), Resolution(cpt, 2));
  }
}

TEST_F(RealGround, ADissipationIsRefusedAsGround) {
  RealSounding sounding("pygef_cpt.gef");
  sounding.disk.Put("/ground/d.gef", RealFile("CPT000000036524_dissipation.gef"));
  std::string reply;
  EXPECT_FALSE(sounding.rig.Command("ground /ground/d.gef", reply));
  EXPECT_NE(reply.find("d.gef"), std::string::npos) << reply;
}

}  // namespace
}  // namespace penlog
