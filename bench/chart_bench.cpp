// The strip charts: four of them with all their traces, drawn whole and row by row, in a window.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <cmath>
#include <cstdint>

#include "bench/aims.h"
#include "bench/full_console.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_data.h"
#include "display/set_display.h"
#include "forms/main_form.h"
#include "platform/qt/mirror.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr float kApart = 0.01F;  // m between two rows
constexpr int kFewRows = 1'000;  // over which the cost of one is averaged

/// Layers with some noise, in volts.
float Reading(int channel, std::int32_t row) {
  const auto at = static_cast<float>(row);
  const auto layer = static_cast<float>(row / 700 * 7 % 5) * 0.6F;
  const float noise = 0.05F * std::sin(at * 1.7F) + 0.03F * std::sin(at * 12.9F);
  return 0.5F + layer + noise + 0.05F * static_cast<float>(channel);
}

/// Tip with Qt, sleeve, the three pore pressures with the water line, and one more: eight traces.
struct Charts {
  Charts() : console("/data") {
    settings.TipPlotValues = settings.CombinePPPlots = settings.Gridlines = 1;
    session.WaterTable = 1;
    display.GraphCount = 4;
    display.GraphChannel = {0, 1, 2, 3, 7};
    display.GraphAutoScale.fill(-1);
    Main.Load = nullptr;
    Show(Main);
    SetDisplay();
    for (std::int32_t row = 1; row <= kMostRows; ++row) FillRow(row);
    sounding.ConsoleMode = 2;
    SetRow(kMostRows);
    for (int g = 1; g <= 4; ++g) RebuildRange(g);
    GraphData();  // the axes hold all rows from here on
    Frame();
  }

  static void FillRow(std::int32_t row) {
    sounding.Rows(row, 0) = static_cast<float>(row) * kApart;
    for (int channel = 1; channel <= kChannels; ++channel) {
      sounding.Rows(row, channel) = Reading(channel, row);
    }
    sounding.RowQt(row) = 3000 * Reading(1, row);
  }
  static void SetRow(std::int32_t row) {
    sounding.RowCount = row;
    sounding.CurrentDepth = sounding.Rows(row, 0);
  }
  void Frame() {
    mirror.Follow();
    QCoreApplication::processEvents();
  }
  /// Milliseconds of processor time of a row behind `first`: its segments on the charts, and the
  /// window's painting of all that the row changes.
  struct Cost {
    double drawn = 0;
    double painted = 0;
  };
  Cost CostOfRow(std::int32_t first) {
    SetRow(first);
    display.GraphRedraw.fill(-1);
    GraphData();
    Frame();
    Cost cost;
    for (std::int32_t row = first + 1; row <= first + kFewRows; ++row) {
      const double begin = ProcessorSeconds();
      SetRow(row);
      GraphData();
      mirror.Follow();
      const double drawn = ProcessorSeconds();
      QCoreApplication::processEvents();
      cost.drawn += (drawn - begin) * 1e3 / kFewRows;
      cost.painted += (ProcessorSeconds() - drawn) * 1e3 / kFewRows;
    }
    return cost;
  }

  FullConsole console;
  WindowMirror mirror;
};

void ChartsDrawnWhole(benchmark::State& state) {
  Charts charts;
  double geometry = 0;
  const double begin = ProcessorSeconds();
  for (auto _ : state) {
    const double before = ProcessorSeconds();
    display.GraphRedraw.fill(-1);
    GraphData();
    geometry += ProcessorSeconds() - before;
    charts.Frame();
  }
  const double runs = static_cast<double>(state.iterations()) / 1e3;
  ReportFigure("full redraw of four charts of 10,000 rows", (ProcessorSeconds() - begin) / runs,
               "ms", 10, Better::Smaller);
  ReportFigure("  of it the segments' places", geometry / runs, "ms");
}
BENCHMARK(ChartsDrawnWhole)->Unit(benchmark::kMillisecond);

void ChartsRowByRow(benchmark::State& state) {
  Charts charts;
  Charts::Cost early;
  Charts::Cost late;
  const auto add = [](Charts::Cost& sum, const Charts::Cost& cost) {
    sum = {sum.drawn + cost.drawn, sum.painted + cost.painted};
  };
  for (auto _ : state) {
    add(early, charts.CostOfRow(10));
    add(late, charts.CostOfRow(kMostRows - kFewRows));
  }
  const auto runs = static_cast<double>(state.iterations());
  ReportFigure("one row more on four charts", late.drawn / runs, "ms", 0.2, Better::Smaller);
  ReportFigure("  at row 10,000 over row 10", late.drawn / early.drawn, "", 1.2, Better::Smaller);
  ReportFigure("  the window's painting of it, with values and bars", late.painted / runs, "ms");
  ReportFigure("  at row 10,000 over row 10, painting too",
               (late.drawn + late.painted) / (early.drawn + early.painted), "", 1.2,
               Better::Smaller);
}
BENCHMARK(ChartsRowByRow)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
