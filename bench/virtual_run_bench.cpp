// A whole sounding of 30 m in virtual time, from the start to the closed file: how many times as
// fast as life, and how close its readings come to what the link allows.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/aims.h"
#include "bench/reading_rate.h"
#include "bench/sounding_script.h"
#include "operator/virtual_session.h"
#include "rig/rig_setups.h"

namespace penlog {
namespace {

std::string ThirtyMetres() {
  return ScriptToRecording() + "rig push 30\nexpect Main.lblDepth \"~^(29[.]99|30)\" 4000\n" +
         ScriptToEnd();
}

/// The readings of the push alone.
ReadingRate RateOf(const RigLog& log) {
  ReadingRate rate;
  bool pushing = false;
  for (const RigRecord& record : log.Records()) {
    if (record.kind == RigLogKind::Motion && record.text.starts_with("push")) pushing = true;
    if (record.kind == RigLogKind::Motion && record.text == "stands") pushing = false;
    if (!pushing) continue;
    if (record.kind == RigLogKind::Command && record.text == "D") rate.asked.push_back(record.time);
    if (record.kind == RigLogKind::Reply) rate.reply_length = record.text.size();
  }
  return rate;
}

void ThirtyMetresInVirtualTime(benchmark::State& state) {
  const Script script = ParseScript("thirty metres", ThirtyMetres());
  double life = 0;
  const double begin = RealSeconds();
  const double processor = ProcessorSeconds();
  for (auto _ : state) {
    VirtualSession session(MakeRigSetup("dcs"), {});
    const SessionResult result = session.Play(script);
    if (result.exit_code != 0) state.SkipWithError(result.report.c_str());
    life += static_cast<double>(session.clock.Now()) / static_cast<double>(kSecond);
    state.PauseTiming();
    ReportFigure("readings over what the link allows, virtual",
                 ShareOfAllowed(RateOf(session.rig.log)), "", 0.95, Better::Larger);
    state.ResumeTiming();
  }
  const auto runs = static_cast<double>(state.iterations());
  const double seconds = RealSeconds() - begin;
  const double used = ProcessorSeconds() - processor;
  state.counters["times life"] = life / used;
  ReportFigure("30 m in virtual time", seconds / runs, "s", 1, Better::Smaller);
  ReportFigure("  processor time of it", used / runs, "s", 1, Better::Smaller);
  ReportFigure("  life over its processor time", life / used, "", 10'000, Better::Larger);
}
BENCHMARK(ThirtyMetresInVirtualTime)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
