// The table "intubc.asc" against the published chart: zone and N at 10,000 random points. The
// digitised polygons of the chart lie beside the project where it is developed; elsewhere the
// comparison is skipped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "sounding/soil_type.h"
#include "tests/support/project_file.h"

namespace penlog {
namespace {

struct Point {
  double ratio = 0;  // percent
  double tip = 0;    // log10 of bar
};
using Polygon = std::vector<Point>;
using Polygons = std::map<int, Polygon>;

constexpr const char* kChart = "../shared/data/chart/robertson1986_polygons_bar.json";

// How near to a boundary table and chart may differ: the table draws straight lines between
// columns 0.1 % apart where the chart has corners.
constexpr double kRatioTolerance = 0.03;  // percent
constexpr double kTipTolerance = 0.006;   // log10

// `"polygons": {"1": [[x, y], ...], ...}`: the numbers of each list in turn are x and y.
Polygons ParsePolygons(const std::string& text) {
  Polygons polygons;
  std::vector<double> numbers;
  std::size_t at = text.find("\"polygons\"");
  int zone = 0;
  for (at = text.find('{', at); at != std::string::npos && at < text.size(); ++at) {
    if (text[at] == '"') {
      zone = static_cast<int>(LeadingNumber(text.substr(at + 1, 3)));
      at = text.find('"', at + 1);
    } else if (text[at] == '[' && text[at + 1] != '[') {
      const std::size_t comma = text.find(',', at);
      polygons[zone].push_back({LeadingNumber(text.substr(at + 1, 24)),
                                std::log10(LeadingNumber(text.substr(comma + 1, 24)))});
    }
  }
  return polygons;
}

bool Inside(const Polygon& polygon, const Point& point) {
  bool inside = false;
  for (std::size_t i = 0; i + 1 < polygon.size(); ++i) {
    const Point a = polygon[i];
    const Point b = polygon[i + 1];
    if ((a.ratio <= point.ratio) == (b.ratio <= point.ratio)) continue;
    const double edge = a.tip + (b.tip - a.tip) * (point.ratio - a.ratio) / (b.ratio - a.ratio);
    if (edge > point.tip) inside = !inside;
  }
  return inside;
}

int ZoneAt(const Polygons& polygons, const Point& point) {
  for (const auto& [zone, polygon] : polygons) {
    if (Inside(polygon, point)) return zone;
  }
  return 0;
}

// Distance to the line from a to b, in tolerances.
double Distance(const Point& a, const Point& b, const Point& point) {
  const double dx = (b.ratio - a.ratio) / kRatioTolerance;
  const double dy = (b.tip - a.tip) / kTipTolerance;
  const double px = (point.ratio - a.ratio) / kRatioTolerance;
  const double py = (point.tip - a.tip) / kTipTolerance;
  const double length = dx * dx + dy * dy;
  const double t = length > 0 ? std::clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
  return std::hypot(px - t * dx, py - t * dy);
}

bool NearBoundary(const Polygons& polygons, const Point& point) {
  for (const auto& [zone, polygon] : polygons) {
    for (std::size_t i = 0; i + 1 < polygon.size(); ++i) {
      if (Distance(polygon[i], polygon[i + 1], point) <= 1.0) return true;
    }
  }
  return false;
}

// The places that docs/files.md lists: seven bands are too few there.
bool LeftOut(double ratio, int chart, int table) {
  struct Place {
    double from, to;
    int chart, table;
  };
  constexpr Place places[] = {{1.916, 2.2, 3, 1},  {2.2, 2.428, 8, 7},  {2.1, 2.2, 7, 8},
                              {1.837, 1.9, 12, 8}, {1.837, 1.9, 12, 9}, {1.8, 1.837, 8, 9}};
  return std::any_of(std::begin(places), std::end(places), [&](const Place& place) {
    return ratio >= place.from && ratio < place.to && chart == place.chart && table == place.table;
  });
}

std::string ChartText() {
  std::ifstream file(std::string(PENLOG_SOURCE_DIR) + "/" + kChart, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class SoilChart : public testing::Test {
 protected:
  void SetUp() override {
    const std::string text = ChartText();
    if (text.empty()) GTEST_SKIP() << "the digitised chart isn't there";
    polygons_ = ParsePolygons(text);
    ASSERT_EQ(polygons_.size(), 12u);
    ValueReader reader("intubc.asc", ProjectFile("data/intubc.asc"));
    LoadSoilTables(reader);
  }
  void TearDown() override { soil = {}; }

  Polygons polygons_;
};

// N of the chart's zone for a tip in bar.
float ChartN(float qt, int zone) {
  constexpr double divisors[] = {2, 1, 1, 1.5, 2, 2.5, 3, 4, 5, 6, 1, 2};
  return static_cast<float>(std::floor(double{qt * 0.01f} / divisors[zone - 1] + 0.5));
}

TEST_F(SoilChart, TableGivesZoneAndNOfTheChart) {
  constexpr unsigned kSeed = 19860623;
  constexpr int kPoints = 10000;
  std::mt19937 random(kSeed);
  const auto fraction = [&] { return static_cast<double>(random()) / 4294967296.0; };
  std::map<int, int> seen;
  int near = 0;
  int left_out = 0;
  for (int i = 0; i < kPoints; ++i) {
    const Point point{8.0 * fraction(), 3.0 * fraction()};
    const auto qt = static_cast<float>(100.0 * std::pow(10.0, point.tip));
    const SoilTypeAndN table = SoilType(qt, static_cast<float>(qt * point.ratio / 100.0), soil);
    const int zone = ZoneAt(polygons_, point);
    ++seen[zone];
    if (table.zone != static_cast<float>(zone)) {
      if (LeftOut(point.ratio, zone, static_cast<int>(table.zone))) {
        ++left_out;
        continue;
      }
      ++near;
      EXPECT_TRUE(NearBoundary(polygons_, point))
          << "seed " << kSeed << ": " << point.ratio << " %, 10^" << point.tip << " bar: chart "
          << zone << ", table " << table.zone;
      continue;
    }
    EXPECT_NEAR(table.n, ChartN(qt, zone), 0.0f) << point.ratio << " %, 10^" << point.tip;
  }
  for (int zone = 1; zone <= 12; ++zone) EXPECT_GT(seen[zone], 20) << "zone " << zone;
  EXPECT_EQ(seen[0], 0);
  EXPECT_LE(near, kPoints / 1000);     // measured 2
  EXPECT_LE(left_out, kPoints / 200);  // measured 25
  RecordProperty("near", near);
  RecordProperty("left_out", left_out);
}

TEST_F(SoilChart, TableHasTheChartsBoundsAtItsColumns) {
  for (int index = 0; index <= 80; ++index) {
    for (int step = 1; step < 300; ++step) {
      const double ratio = std::clamp(0.1 * index, 1e-6, 8.0 - 1e-6) + (index < 80 ? 1e-4 : 0.0);
      const Point point{ratio, 0.01 * step + 0.0013};
      const int zone = ZoneAt(polygons_, point);
      const auto qt = static_cast<float>(100.0 * std::pow(10.0, point.tip));
      const float found = SoilType(qt, static_cast<float>(qt * ratio / 100.0), soil).zone;
      if (LeftOut(ratio, zone, static_cast<int>(found))) continue;
      if (found != static_cast<float>(zone)) {
        const Point low{ratio, point.tip - 0.002};
        const Point high{ratio, point.tip + 0.002};
        EXPECT_NE(ZoneAt(polygons_, low), ZoneAt(polygons_, high))
            << ratio << " %, 10^" << point.tip << " bar: chart " << zone << ", table " << found;
      }
    }
  }
}

TEST_F(SoilChart, PlacesLeftOutAreReallyDifferent) {
  struct Row {
    double ratio, log_tip;
    int chart;
    float table;
  };
  constexpr Row rows[] = {
      {2.05, 0.60, 3, 1}, {2.15, 0.60, 3, 1}, {2.25, 2.48, 8, 7}, {2.19, 2.32, 7, 8}};
  for (const Row& row : rows) {
    const auto qt = static_cast<float>(100.0 * std::pow(10.0, row.log_tip));
    EXPECT_EQ(ZoneAt(polygons_, {row.ratio, row.log_tip}), row.chart) << row.ratio;
    EXPECT_EQ(SoilType(qt, static_cast<float>(qt * row.ratio / 100.0), soil).zone, row.table)
        << row.ratio;
  }
}

}  // namespace
}  // namespace penlog
