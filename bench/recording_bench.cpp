// The console as it stands in the truck: recording in real time at the cone's own pace, windows
// shown, files on the real disk, the rig in a process of its own.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <string>

#include "app/console.h"
#include "bench/aims.h"
#include "bench/reading_rate.h"
#include "bench/sounding_script.h"
#include "core/data_directory.h"
#include "core/languages.h"
#include "core/reset_state.h"
#include "core/session.h"
#include "operator/player.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/qt/mirror.h"
#include "platform/qt/real_machine.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

std::string Folder() {
  return BenchFolder() + "/recording";
}

QString InFolder(const char* name) {
  return QString::fromStdString(Folder() + "/" + name);
}

/// `penlog-rig`, with the cone on a pseudo terminal and the truck on RFC 2217.
class RigProcess {
 public:
  RigProcess() {
    process_.setStandardOutputFile(InFolder("rig.txt"));
    process_.setStandardErrorFile(InFolder("rig.txt"));
    process_.start(QCoreApplication::applicationDirPath() + "/penlog-rig",
                   {"--links", InFolder("."), "--log", InFolder("rig.log"), "--ports-file",
                    InFolder("PENLOG(KQ)/Serial Ports.txt")});
    process_.waitForStarted();
  }
  ~RigProcess() { Stop(); }
  RigProcess(const RigProcess&) = delete;
  RigProcess& operator=(const RigProcess&) = delete;

  void Order(const std::string& words) {
    process_.write((words + "\n").c_str());
    process_.waitForBytesWritten();
  }
  /// Its log is whole then.
  void Stop() {
    process_.terminate();
    process_.waitForFinished(2000);
  }

 private:
  QProcess process_;
};

/// Memory of this process that stands in the machine's.
double ResidentMegabytes() {
  QFile file("/proc/self/statm");
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QList<QByteArray> pages = file.readAll().split(' ');
  return pages.size() < 2 ? 0 : pages[1].toDouble() * 4096 / 1e6;
}

/// Between the orders "measure" and "measured" of the script.
struct Span {
  double real = 0;
  double processor = 0;
  int rows = 0;
  double memory = 0;  ///< resident at the end, MB

  void Begin() { *this = {RealSeconds(), ProcessorSeconds(), sounding.RowCount, 0}; }
  void End() {
    *this = {RealSeconds() - real, ProcessorSeconds() - processor, sounding.RowCount - rows,
             ResidentMegabytes()};
  }
};

/// The readings of the push from the rig's log: seconds, kind, number, depth, text.
ReadingRate RateInLog() {
  ReadingRate rate;
  QFile log(InFolder("rig.log"));
  if (!log.open(QIODevice::ReadOnly)) return rate;
  bool pushing = false;
  while (!log.atEnd()) {
    const QList<QByteArray> words = log.readLine().simplified().split(' ');
    if (words.size() < 5) continue;
    if (words[1] == "motion") pushing = words[4] == "push";
    if (!pushing) continue;
    if (words[1] == "command" && words[4] == "D") {
      rate.asked.push_back(static_cast<Micros>(words[0].toDouble() * 1e6));
    } else if (words[1] == "reply") {
      std::size_t length = 0;
      for (qsizetype i = 4; i < words.size(); ++i) {
        length += static_cast<std::size_t>(words[i].size()) + 1;
      }
      rate.reply_length = length - 3;  // the log shows a line end as four characters
    }
  }
  return rate;
}

RealMachineSetup MachineSetup() {
  setenv("allusersprofile", Folder().c_str(), 1);
  RealMachineSetup setup;
  setup.port_list = [] {
    return session.DataDirectory.empty() ? std::string() : DataPath("Serial Ports.txt");
  };
  return setup;
}

/// Plays to the recording console, and measures it for 20 s; what went wrong, if anything.
std::string Record(Span& span) {
  QDir(QString::fromStdString(Folder())).removeRecursively();
  QDir().mkpath(InFolder("PENLOG(KQ)"));
  RealMachine machine(MachineSetup());
  ResetState();
  ResetBoxes();
  RigProcess rig;
  WindowMirror mirror;
  UseView(&mirror);
  UseTranslation(Translate);
  PlayerHands hands;
  hands.rig = [&](const std::string& words) {
    if (words == "measure") {
      span.Begin();
    } else if (words == "measured") {
      span.End();
    } else {
      rig.Order(words);
    }
    return std::string();
  };
  Player player(ParseScript("recording", ScriptToRecording(Folder()) +
                                             "rig push 5\nwait 5\n"
                                             "rig measure\nwait 20\nrig measured\n"),
                std::move(hands));
  player.Start();
  RunConsole();
  const int code = player.Close();
  UseView(nullptr);
  ResetState();
  ResetYield();
  return code == 0 ? std::string() : player.Report();
}

void Recording(benchmark::State& state) {
  for (auto _ : state) {
    Span span;
    const std::string fault = Record(span);
    if (!fault.empty()) {
      state.SkipWithError(fault.c_str());
      break;
    }
    const double share = 100 * span.processor / span.real;
    state.counters["% of a core"] = share;
    ReportFigure("recording with windows, 20 s", share, "% of a core", 3, Better::Smaller);
    ReportFigure("  resident memory meanwhile", span.memory, "MB", 100, Better::Smaller);
    ReportFigure("  rows meanwhile", span.rows / span.real, "1/s");
    ReportFigure("  readings over what the link allows", ShareOfAllowed(RateInLog()), "", 0.95,
                 Better::Larger);
  }
}
BENCHMARK(Recording)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
