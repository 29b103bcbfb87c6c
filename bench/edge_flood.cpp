#include "bench/edge_flood.h"

#include <QCoreApplication>
#include <cstdio>

#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_server.h"
#include "platform/yield.h"
#include "rig/depth_counter.h"

namespace penlog {

namespace {

constexpr std::int64_t kUnsentLimit = 64 * 1024;
constexpr Nanometres kStep = kNanometresPerMetre / 500;

class Flood {
 public:
  Flood(RealClock& clock, long edges) : server_(clock), left_(edges) {
    ModemLines clamped;
    clamped.dsr = true;
    server_.SetLines(clamped);
    server_.OnOutputs = [this](bool, bool rts) { asked_ = rts; };
  }

  int Port() const { return server_.Port(); }

  void Run() {
    while (!asked_) WaitYield("the console");
    while (left_ > 0 && server_.HasClient()) {
      if (Send()) {
        Yield();
      } else {
        WaitYield("room on the connection");
      }
    }
    while (server_.HasClient()) WaitYield("the end of the console");
  }

 private:
  /// Fills the connection; false if it was full.
  bool Send() {
    const long before = left_;
    for (; left_ > 0 && server_.Unsent() < kUnsentLimit; --left_) {
      counter_.PassDown();
      server_.SetLines(counter_.Lines(server_.Lines()));
    }
    return left_ < before;
  }

  Rfc2217Server server_;
  DepthCounter counter_{CounterType::Encoder, 0, kStep};
  long left_;
  bool asked_ = false;
};

}  // namespace

int RunFlood(long edges) {
  RealClock clock;
  UseClock(&clock);
  UseIo(&clock.io());
  {
    Flood flood(clock, edges);
    std::printf("%d\n", flood.Port());
    std::fflush(stdout);
    flood.Run();
  }
  ResetYield();
  UseIo(nullptr);
  return 0;
}

EdgeFlood::EdgeFlood(long edges) {
  process_.start(QCoreApplication::applicationFilePath(), {"--flood", QString::number(edges)});
  if (process_.waitForReadyRead()) port_ = process_.readLine().trimmed().toInt();
}

EdgeFlood::~EdgeFlood() {
  process_.waitForFinished(2000);
}

}  // namespace penlog
