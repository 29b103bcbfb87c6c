// One reading of 29 fields outside its waits. In virtual time a wait costs nothing, so what is left
// is the console's own work: port supervision, the exchange, fields, averages, engineering values,
// labels, inclination, friction ratio, soil type, and the yields' events.
#include <benchmark/benchmark.h>

#include "bench/aims.h"
#include "bench/full_console.h"
#include "conelink/value_coding.h"
#include "core/session.h"
#include "sounding/reading_cycle.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

void OneReading(benchmark::State& state) {
  const FullConsole console("/data");
  for (int i = 0; i < session.ReadingsAveraged; ++i) GetConeData();  // fills the averages
  const double begin = ProcessorSeconds();
  for (auto _ : state) GetConeData();
  const double seconds = ProcessorSeconds() - begin;
  if (sounding.Readings(30) == 0.0f) state.SkipWithError("nothing was read");
  if (sounding.Readings(21) == 0.0f) state.SkipWithError("there is no soil type");
  ReportFigure("a reading of 29 fields outside its waits",
               seconds * 1e6 / static_cast<double>(state.iterations()), "us", 100, Better::Smaller);
}
BENCHMARK(OneReading)->Unit(benchmark::kMicrosecond);

/// The part of it from the reply's text to the labels.
void FieldsToLabels(benchmark::State& state) {
  const FullConsole console("/data");
  GetConeData();
  std::string reply;
  for (int field = 1; field < 30; ++field) reply += "0.3" + std::to_string(field + 10000) + " ";
  for (auto _ : state) {
    SplitConeReply(reply, sounding.ReplyTokens);
    TakeReadings();
  }
}
BENCHMARK(FieldsToLabels)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace penlog
