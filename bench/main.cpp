// penlog-bench: the measurements. `--flood N` is the far end of one of them, see edge_flood.h.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/aims.h"
#include "bench/edge_flood.h"

int main(int argc, char** argv) {
  const bool display =
      std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
  if (!display) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  if (argc == 3 && std::string(argv[1]) == "--flood") return penlog::RunFlood(std::atol(argv[2]));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  std::printf("\n%s", penlog::FigureTable().c_str());
  return 0;
}
