// The console as a program of its own, beside a rig that is another one.
#include <algorithm>
#include <memory>

#include "app/programs.h"
#include "support/project_file.h"

namespace penlog {
namespace {

/// The rows behind the 17 lines of its header.
int RowsOf(const std::string& temporary) {
  const auto lines = std::count(temporary.begin(), temporary.end(), '\n');
  return static_cast<int>(std::max<std::ptrdiff_t>(0, lines - 17));
}

struct ConsoleProgram : Programs {
  void StartRig() {
    rig = std::make_unique<Program>(
        "penlog-rig",
        std::vector<std::string>{"--control", "0", "--links", folder.Path(), "--log",
                                 folder / "rig.log", "--ports-file", data + "/Serial Ports.txt"});
    ASSERT_TRUE(Until([this] { return rig->Printed().find("truck COM4") != std::string::npos; }))
        << rig->Printed();
    const std::string told = "control 127.0.0.1:";
    const auto at = rig->Printed().find(told);
    ASSERT_NE(at, std::string::npos) << rig->Printed();
    control = std::to_string(std::stoi(rig->Printed().substr(at + told.size())));
  }

  /// A console that plays up to the recording, and waits until that has begun.
  void StartRecording() {
    std::string script = ProjectFile("tests/app/record.txt");
    script.replace(script.find("@FOLDER@"), 8, folder.Path());
    console = std::make_unique<Program>(
        "penlog-operator",
        std::vector<std::string>{WriteScript(script), "--rig", control, "--out", folder.Path()});
    ASSERT_TRUE(Until([this] { return RowsOf(Temporary()) >= 4 || console->Ended(); }, 90));
    ASSERT_FALSE(console->Ended()) << console->Printed();
  }

  /// Behind the last order to the rig.
  bool TruckWasClosed() const {
    const std::string log = Content(folder / "rig.log");
    return log.find("truck closed", log.rfind(" control ")) != std::string::npos;
  }
  std::string Temporary() const { return Content(data + "/TemporaryData.txt"); }

  std::unique_ptr<Program> rig;
  std::unique_ptr<Program> console;
  std::string control;
};

TEST_F(ConsoleProgram, HelpGivesTheUsageAndZero) {
  Program asked("penlog", {"--help"});
  ASSERT_TRUE(Until([&] { return asked.Ended(); }));
  EXPECT_EQ(asked.ExitCode(), 0);
  EXPECT_EQ(asked.Printed().find("usage: penlog [--place"), 0u);
}

TEST_F(ConsoleProgram, UnknownWordGivesTheUsageAndTwo) {
  Program wrong("penlog", {"--dance"});
  ASSERT_TRUE(Until([&] { return wrong.Ended(); }));
  EXPECT_EQ(wrong.ExitCode(), 2);
  EXPECT_NE(wrong.Printed().find("penlog: unknown word \"--dance\"\n"), std::string::npos);
  EXPECT_NE(wrong.Printed().find("usage: penlog [--place"), std::string::npos);
}

TEST_F(ConsoleProgram, PlaceThatIsNoneGivesTheUsageAndTwo) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--place"}, {"--place", "top"}, {"--place", "left", "right"}}) {
    Program wrong("penlog", words);
    ASSERT_TRUE(Until([&] { return wrong.Ended(); }));
    EXPECT_EQ(wrong.ExitCode(), 2);
    EXPECT_NE(wrong.Printed().find("penlog: --place needs left, right, whole or"),
              std::string::npos)
        << wrong.Printed();
  }
}

TEST_F(ConsoleProgram, WithoutADisplayItSaysSo) {
  for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) unsetenv(name);
  Program blind("penlog", {});
  ASSERT_TRUE(Until([&] { return blind.Ended(); }));
  EXPECT_EQ(blind.ExitCode(), 2);
  EXPECT_NE(blind.Printed().find("there is no display"), std::string::npos) << blind.Printed();
}

TEST_F(ConsoleProgram, SigtermEndsItAtOnce) {
  Program idle("penlog", {});
  ASSERT_TRUE(Until([this] { return std::filesystem::exists(data + "/System Setup Values.old"); }));
  const auto start = Clock::now();
  idle.Signal(SIGTERM);
  ASSERT_TRUE(Until([&] { return idle.Ended(); }));
  EXPECT_LT(SecondsSince(start), 5.0);
  EXPECT_EQ(idle.ExitCode(), 0) << idle.Printed();
}

TEST_F(ConsoleProgram, SecondOneOnTheSameDataDirectoryIsRefusedWithAMessage) {
  Program first("penlog", {});
  ASSERT_TRUE(Until([this] { return std::filesystem::exists(data + "/penlog.lock"); }));
  const auto start = Clock::now();
  EXPECT_EQ(Play("answer ok \"PENLOG IS ALREADY RUNNING WITH THE DATA DIRECTORY " + data + "\"\n",
                 {"--out", folder.Path()}),
            0)
      << printed;
  EXPECT_GE(SecondsSince(start), 9.5) << "a console that was started anew is waited for";
  EXPECT_FALSE(first.Ended());
}

TEST_F(ConsoleProgram, OneThatWaitsGetsTheDataDirectoryWhenTheFirstEnds) {
  Program first("penlog", {});
  ASSERT_TRUE(Until([this] { return std::filesystem::exists(data + "/penlog.lock"); }));
  const std::string script = WriteScript(
      "expect StartUp.lblLoad \"ANOTHER PENLOG IS RUNNING. WAITING FOR IT TO END\"\n"
      "shot waiting.png\nexpect StartUp.cmdStart enabled 9\nend\n");
  Program second("penlog-operator", {script, "--out", folder.Path(), "--shots", folder / "shots"});
  ASSERT_TRUE(Until([&] {
    return second.Ended() || std::filesystem::exists(folder / "shots/waiting.png");
  })) << second.Printed();
  first.Signal(SIGTERM);
  ASSERT_TRUE(Until([&] { return second.Ended(); }));
  EXPECT_EQ(second.ExitCode(), 0) << second.Printed();
}

TEST_F(ConsoleProgram, SigtermWhileRecordingEndsItAtOnceAndTheSoundingCanBeResumed) {
  StartRig();
  StartRecording();
  const auto start = Clock::now();
  console->Signal(SIGTERM);
  ASSERT_TRUE(Until([&] { return console->Ended(); }));
  EXPECT_LT(SecondsSince(start), 5.0);

  const std::string temporary = Temporary();
  EXPECT_EQ(temporary.find(folder / "QUAY(001).cpt\r\n"), 0u) << temporary;
  EXPECT_EQ(temporary.substr(temporary.size() - 3), "\"\r\n") << "the last row is whole";
  EXPECT_GE(RowsOf(temporary), 4);
  const std::string cpt = Content(folder / "QUAY(001).cpt");
  const auto aligned = std::count(cpt.begin(), cpt.end(), '\n') - 23;
  EXPECT_EQ(aligned, std::max(0, RowsOf(temporary) - 5)) << "rows wait for the sensor behind them";

  EXPECT_TRUE(Until([this] { return TruckWasClosed(); })) << Content(folder / "rig.log");
  EXPECT_EQ(Play("screen StartUp\nclick StartUp.cmdStart\n"
                 "answer ok \"THE LAST SOUNDING WAS NOT FINISHED: " +
                     (folder / "QUAY(001).cpt") + "\"\nend\n",
                 {"--rig", control, "--out", folder.Path()}),
            0)
      << printed;
  EXPECT_EQ(Temporary(), temporary);
}

}  // namespace
}  // namespace penlog
