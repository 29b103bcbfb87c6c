// From the start of a process to its first screen with a button that can be pressed: the operator
// program with its windows, which ends itself at once then.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <string>

#include "bench/aims.h"
#include "platform/posix/posix_disk.h"

namespace penlog {
namespace {

void StartToFirstScreen(benchmark::State& state) {
  const QString folder = QString::fromStdString(BenchFolder()) + "/start";
  double seconds = 0;
  int runs = 0;
  for (auto _ : state) {
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    PosixDisk disk;
    const auto script = disk.Create((folder + "/start.txt").toStdString());
    disk.Write(script, "expect StartUp.cmdStart enabled\nkill\n");
    disk.Close(script);
    const double start = RealSeconds();
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/penlog-operator",
                  {folder + "/start.txt", "--out", folder});
    process.waitForFinished(30'000);
    seconds += RealSeconds() - start;
    ++runs;
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
      state.SkipWithError("the operator program failed");
      return;
    }
  }
  ReportFigure("start of the program to its first screen", seconds / runs, "s", 0.5,
               Better::Smaller);
}
BENCHMARK(StartToFirstScreen)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace penlog
