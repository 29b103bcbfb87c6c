// Edges of the encoder through a network port into depth, as fast as they come: none may be lost,
// every tick served, the picture kept up.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench/aims.h"
#include "bench/edge_flood.h"
#include "core/reset_state.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "platform/files.h"
#include "platform/qt/mirror.h"
#include "platform/qt/real_machine.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {
namespace {

constexpr long kEdges = 2'000'000;
constexpr double kTickSeconds = 0.055;
constexpr int kPort = 4;

RealMachineSetup MachineSetup(const std::string& list) {
  RealMachineSetup setup;
  setup.port_list = [list] { return list; };
  return setup;
}

/// The console with its window, recording; a due row is only counted, as the disk has its own
/// measurement.
class DepthConsole {
 public:
  explicit DepthConsole(int tcp_port)
      : list_(BenchFolder() + "/edges/Serial Ports.txt"), machine_(MachineSetup(list_)) {
    TheDisk().MakeFolder(FolderOf(list_));
    ReplaceFile(list_,
                std::to_string(kPort) + " rfc2217://127.0.0.1:" + std::to_string(tcp_port) + "\n");
    ResetState();
    UseView(&mirror_);
    Main.Load = nullptr;
    Show(Main);
    settings.TruckInterfaceSerialPort = kPort;
    settings.DepthResolution = 0.002f;
    settings.DepthStep = 0.02f;
    settings.DepthStepCounts = 10;
    sounding.ConsoleMode = 2;
    Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
    Main.Timer1.OnTick = [this] { ++ticks; };
    Main.Timer1.Start();
    while (!EnumSerPorts(kPort)) WaitYield("the server");
    OpenTruckPort("19200,N,8,1");
  }
  ~DepthConsole() {
    Main.EncoderComm.Close();
    UseView(nullptr);
    ResetState();
    ResetYield();
  }
  DepthConsole(const DepthConsole&) = delete;
  DepthConsole& operator=(const DepthConsole&) = delete;

  std::int64_t Frames() const { return mirror_.Frames(); }
  long ticks = 0;

 private:
  std::string list_;
  RealMachine machine_;
  WindowMirror mirror_;
};

const char* WhatIsWrong(double seconds, long ticks) {
  const bool all_edges = Main.EncoderComm.EdgeCount() == kEdges;
  if (!all_edges || Main.EncoderComm.EdgesLostCount() != 0) return "edges were lost";
  if (sounding.DepthCounts != static_cast<float>(kEdges / 4)) return "the depth is wrong";
  if (static_cast<double>(ticks + 2) < seconds / kTickSeconds) return "ticks were left out";
  return nullptr;
}

void EdgesIntoDepth(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    const EdgeFlood flood(kEdges);
    DepthConsole console(flood.Port());
    const auto frames = console.Frames();
    console.ticks = 0;
    state.ResumeTiming();
    const double begin = RealSeconds();
    const double processor = ProcessorSeconds();
    Main.EncoderComm.SetRTSEnable(true);
    while (Main.EncoderComm.EdgeCount() < kEdges) WaitYield("edges");
    const double seconds = RealSeconds() - begin;
    const double used = ProcessorSeconds() - processor;
    state.PauseTiming();
    const double pictures = static_cast<double>(console.Frames() - frames) / seconds;
    if (const char* wrong = WhatIsWrong(seconds, console.ticks)) state.SkipWithError(wrong);
    ReportFigure("edges into depth, none lost, all ticks", kEdges / seconds, "edges/s", 500'000,
                 Better::Larger);
    ReportFigure("  the same by the console's processor time", kEdges / used, "edges/s", 500'000,
                 Better::Larger);
    ReportFigure("  pictures meanwhile", pictures, "1/s", 30, Better::Larger);
    state.counters["edges/s"] = kEdges / seconds;
    state.counters["pictures/s"] = pictures;
    state.ResumeTiming();
  }
}
BENCHMARK(EdgesIntoDepth)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
