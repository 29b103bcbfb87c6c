// One recorded row of 29 channels to its two files, each with a write and a sync of its own.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/aims.h"
#include "bench/full_console.h"
#include "core/channel_table.h"
#include "platform/files.h"
#include "platform/posix/posix_disk.h"
#include "sounding/reading_cycle.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr int kRows = 500;

double Rows(benchmark::State& state, const std::string& folder) {
  GetConeData();
  double seconds = 0;
  for (auto _ : state) {
    TheDisk().MakeFolder(folder);
    CreateSoundingFiles();
    sounding.RowCount = 0;
    const double begin = RealSeconds();
    while (sounding.RowCount < kRows) {
      ++sounding.RowCount;
      RecordRow();
    }
    seconds += RealSeconds() - begin;
  }
  if (sounding.RowsHeldBack != 0) state.SkipWithError("the disk refused rows");
  const double rows = static_cast<double>(state.iterations()) * kRows;
  state.counters["us/row"] = seconds * 1e6 / rows;
  return seconds * 1e6 / rows;
}

/// Microseconds of what no row can do without: two files, each written and synced.
double BareAppends(const std::string& folder) {
  const std::string line(300, 'x');
  const double begin = RealSeconds();
  for (int row = 0; row < kRows; ++row) {
    for (const char* name : {"/bare 1", "/bare 2"}) AppendToFile(folder + name, line);
  }
  return (RealSeconds() - begin) * 1e6 / kRows;
}

void RowsToTheDisk(benchmark::State& state) {
  const std::string folder = BenchFolder() + "/rows";
  const FullConsole console(folder);
  PosixDisk real_disk;
  UseDisk(&real_disk);
  const double row = Rows(state, folder);
  ReportFigure("a row on both files, synced, on the disk", row, "us");
  ReportFigure("  over two bare appends with their syncs", row / BareAppends(folder), "");
}
BENCHMARK(RowsToTheDisk)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

void RowsToMemory(benchmark::State& state) {
  const FullConsole console("/data");
  ReportFigure("a row on both files, disk in memory", Rows(state, "/data"), "us");
}
BENCHMARK(RowsToMemory)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
