// A frame of the main screen: what it costs to see that nothing changed, and to show it when all
// controls changed.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <string>

#include "bench/aims.h"
#include "bench/full_console.h"
#include "forms/main_form.h"
#include "platform/qt/mirror.h"

namespace penlog {
namespace {

void Paint() {
  QCoreApplication::processEvents();
}

struct ShownMain {
  ShownMain() : console("/data") {
    Main.Load = nullptr;
    Show(Main);
    mirror.Follow();
    Paint();
  }
  FullConsole console;
  WindowMirror mirror;
};

void ChangeAll(int round) {
  const bool odd = round % 2 != 0;
  for (Control* control : Main.Controls()) {
    control->Caption = odd ? "12.34" : "56.78";
    control->ForeColor = odd ? kRed : kBlue;
    control->Fill = odd ? FillStyle::Solid : FillStyle::Hollow;
  }
}

template <class Work>
double MicrosecondsOf(benchmark::State& state, Work work) {
  const double begin = ProcessorSeconds();
  for (auto _ : state) work();
  return (ProcessorSeconds() - begin) * 1e6 / static_cast<double>(state.iterations());
}

void FrameOfNothing(benchmark::State& state) {
  ShownMain shown;
  const double cost = MicrosecondsOf(state, [&] {
    shown.mirror.Follow();
    Paint();
  });
  state.counters["controls"] = static_cast<double>(Main.Controls().size());
  ReportFigure("a frame in which nothing changed", cost, "us");
}
BENCHMARK(FrameOfNothing)->Unit(benchmark::kMicrosecond);

void FrameOfAll(benchmark::State& state) {
  ShownMain shown;
  int round = 0;
  const double cost = MicrosecondsOf(state, [&] {
    ChangeAll(++round);
    shown.mirror.Follow();
    Paint();
  });
  ReportFigure("a frame in which all controls changed", cost, "us");
  ReportFigure("  the same 30 times a second", cost * 30 / 1e4, "% of a core");
}
BENCHMARK(FrameOfAll)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace penlog
