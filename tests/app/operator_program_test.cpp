// The operator's program from outside: its words, its exit codes and the last line that it prints.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QColor>
#include <QImage>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "app/program.h"
#include "support/temp_folder.h"

namespace penlog {
namespace {

struct Outcome {
  int exit_code = -1;
  std::string printed;
  std::string LastLine() const {
    const std::string text = printed.substr(0, printed.find_last_not_of('\n') + 1);
    return text.substr(text.rfind('\n') + 1);
  }
};

struct OperatorProgram : testing::Test {
  OperatorProgram() {
    ::setenv("TMPDIR", folder.Path().c_str(), 1);
    ::unsetenv("DISPLAY");
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("QT_QPA_PLATFORM");
  }
  ~OperatorProgram() override { ::unsetenv("TMPDIR"); }

  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
    return folder / name;
  }

  static Outcome Run(const std::vector<std::string>& words) {
    Program program("penlog-operator", words);
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!program.Ended() && std::chrono::steady_clock::now() < until) {
      program.Printed();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(program.Ended()) << program.Printed();
    return {program.ExitCode(), program.Printed()};
  }

  TempFolder folder;
};

struct EachTime : OperatorProgram, testing::WithParamInterface<const char*> {
  static Outcome Play(const std::string& script) {
    std::vector<std::string> words = {script};
    if (*GetParam() != '\0') words.emplace_back(GetParam());
    return Run(words);
  }
};

TEST_P(EachTime, PlayedToItsEndGivesZero) {
  const Outcome outcome = Play(Write(
      "good script.txt", "screen StartUp\nexpect StartUp.cmdStart \"START NEW SOUNDING\"\nend\n"));
  EXPECT_EQ(outcome.exit_code, 0) << outcome.printed;
}

TEST_P(EachTime, ProgramThatEndsBehindTheLastActionGivesZero) {
  const Outcome outcome = Play(Write("exit.txt", "screen StartUp\nclick StartUp.cmdExit\n"));
  EXPECT_EQ(outcome.exit_code, 0) << outcome.printed;
}

TEST_P(EachTime, WhatIsNotAsExpectedGivesOneAndSaysSoInTheLastLine) {
  const std::string script =
      Write("bad.txt", "screen StartUp\n\nexpect StartUp.cmdStart \"GO ON\" 0.5\n");
  const Outcome outcome = Play(script);
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.LastLine(),
            script + ":3: expected StartUp.cmdStart \"GO ON\", was \"START NEW SOUNDING\"");
}

TEST_P(EachTime, UnreadableScriptGivesTwo) {
  const std::string script = Write("odd.txt", "screen StartUp\nfly StartUp.cmdStart\n");
  const Outcome outcome = Play(script);
  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.LastLine(), script + ":2: unknown action \"fly\"");
  EXPECT_EQ(Play(folder / "missing.txt").exit_code, 2);
}

INSTANTIATE_TEST_SUITE_P(, EachTime, testing::Values("--virtual", ""),
                         [](const auto& row) { return *row.param != '\0' ? "Virtual" : "Real"; });

TEST_F(OperatorProgram, FilesOfADataFolderLieThereBeforeTheStart) {
  std::filesystem::create_directory(folder / "data");
  std::ofstream(folder / "data/TemporaryData.txt") << "/old/hole.cpt\r\n";
  const std::string script =
      Write("data.txt",
            "screen StartUp\nclick StartUp.cmdStart\n"
            "answer ok \"THE LAST SOUNDING WAS NOT FINISHED: /old/hole.cpt\"\n"
            "answer no \"CONE SERIAL PORT NOT DETECTED\"\n"
            "answer ok \"PROGRAM CANNOT CONTINUE\"\nend\n");
  for (const char* time : {"--virtual", "--hash"}) {
    const Outcome outcome = Run({script, time, "--data", folder / "data"});
    EXPECT_EQ(outcome.exit_code, 0) << time << outcome.printed;
  }
  EXPECT_EQ(Run({script, "--virtual", "--data", folder / "none"}).exit_code, 2);
}

TEST_F(OperatorProgram, WrongWordsGiveTheUsageAndTwo) {
  for (const auto& words : std::vector<std::vector<std::string>>{{},
                                                                 {"a.txt", "b.txt"},
                                                                 {"a.txt", "--fly"},
                                                                 {"a.txt", "--shots"},
                                                                 {"a.txt", "--size", "big"},
                                                                 {"a.txt", "--cone", "string"}}) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.exit_code, 2);
    EXPECT_NE(outcome.printed.find("usage: penlog-operator SCRIPT"), std::string::npos);
  }
}

TEST_F(OperatorProgram, HelpGivesTheUsageAndZero) {
  const Outcome outcome = Run({"--help"});
  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_NE(outcome.printed.find("usage: penlog-operator SCRIPT"), std::string::npos);
}

TEST_P(EachTime, RigTakesOrders) {
  const Outcome outcome = Play(Write("rig.txt", "screen StartUp\nrig speed 5\nrig status\nend\n"));
  EXPECT_EQ(outcome.exit_code, 0) << outcome.printed;
}

TEST_P(EachTime, TellsTheLinesOfTheScriptAndTakesBoxesWhereItIsAsked) {
  const std::string script = Write("tell.txt",
                                   "screen StartUp\n\nclick StartUp.cmdResume\n"
                                   "expect StartUp.cmdStart enabled\nwait 0.5\nend\n");
  std::vector<std::string> words = {script, "--tell", "--boxes"};
  if (*GetParam() != '\0') words.emplace_back(GetParam());
  const Outcome outcome = Run(words);
  EXPECT_EQ(outcome.exit_code, 0) << outcome.printed;
  for (const char* turn : {"at 1\n", "at 3\n", "at 4\n", "at 5\n", "at 6\n"}) {
    EXPECT_NE(outcome.printed.find(turn), std::string::npos) << outcome.printed;
  }
  EXPECT_EQ(outcome.printed.find("at 2\n"), std::string::npos) << "an empty line";
}

TEST_P(EachTime, OrderThatTheRigRefusesGivesOne) {
  const std::string script = Write("rig.txt", "screen StartUp\nrig dance\nend\n");
  const Outcome outcome = Play(script);
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.LastLine(),
            script +
                ":2: expected \"rig dance\" to succeed, was no such word: \"dance\" (help "
                "lists them)");
}

TEST_P(EachTime, EndBeforeTheScriptsEndGivesOne) {
  const std::string script = Write("early.txt", "click StartUp.cmdExit\nscreen StartUp\n");
  const Outcome outcome = Play(script);
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.LastLine(),
            script + ":2: expected \"screen\" to be played, was the end of the program");
}

TEST_F(OperatorProgram, StandstillIsReportedAboveTheLastLine) {
  const std::string script = Write("long.txt", "screen StartUp\nscreen Main 7200\nend\n");
  const Outcome outcome = Run({script, "--virtual"});
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_NE(outcome.printed.find("nothing but ticks happened"), std::string::npos);
  EXPECT_NE(outcome.printed.find("waiting for: the operator"), std::string::npos);
  EXPECT_EQ(outcome.LastLine().rfind(script + ":2: expected the screen Main, was ", 0), 0u)
      << outcome.LastLine();
}

TEST_F(OperatorProgram, AScriptMayWaitForHours) {
  const std::string script = Write("night.txt", "screen StartUp\nwait 40000\nend\n");
  const Outcome outcome = Run({script, "--virtual"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome.printed;
}

TEST_F(OperatorProgram, PicturesAreTakenWithoutADisplayInBothTimes) {
  const std::string script = Write("shot.txt", "screen StartUp\nshot start.png StartUp\nend\n");
  EXPECT_EQ(Run({script, "--virtual", "--shots", folder / "a"}).exit_code, 0);
  EXPECT_EQ(Run({script, "--shots", folder / "b"}).exit_code, 0);
  EXPECT_GT(std::filesystem::file_size(folder / "a/start.png"), 5000u);
  EXPECT_GT(std::filesystem::file_size(folder / "b/start.png"), 5000u);
}

TEST_F(OperatorProgram, KillEndsAtOnceAndLeavesWhatWasWritten) {
  const std::string script = Write("kill.txt", "screen StartUp\nkill\n");
  EXPECT_EQ(Run({script, "--virtual", "--out", folder / "disk"}).exit_code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "disk/allusers/PENLOG(KQ)/System Setup Values.txt"));
  EXPECT_EQ(Run({script, "--out", folder / "real"}).exit_code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "real/PENLOG(KQ)/System Setup Values.txt"));
}

/// What a start without a display plays.
struct Demo : OperatorProgram {
  static std::string ScriptFile(const std::string& name) {
    return std::string(PENLOG_SOURCE_DIR) + "/operator/scripts/" + name;
  }
  static std::vector<std::string> LinesOf(const std::filesystem::path& path) {
    std::vector<std::string> lines;
    std::ifstream in(path, std::ios::binary);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }
  /// The files that the script's `shot` lines make, in their order.
  static std::vector<std::string> ShotsOf(const std::string& script) {
    std::vector<std::string> files;
    for (const std::string& line : LinesOf(ScriptFile(script))) {
      std::istringstream words(line);
      std::string verb;
      std::string file;
      if (words >> verb >> file && verb == "shot") files.push_back(file);
    }
    return files;
  }
  /// The files of "![title](pictures/FILE)" in a document, in their order.
  static std::vector<std::string> PicturesToldIn(const std::string& document) {
    const std::string beginning = "](pictures/";
    std::vector<std::string> files;
    for (const std::string& line : LinesOf(document)) {
      for (auto at = line.find(beginning); at != std::string::npos; at = line.find(beginning, at)) {
        at += beginning.size();
        files.push_back(line.substr(at, line.find(')', at) - at));
      }
    }
    return files;
  }
  /// A picture for each `shot` of the script, and one that shows something.
  void ExpectShots(const std::string& script) const {
    const std::vector<std::string> files = ShotsOf(script);
    EXPECT_FALSE(files.empty()) << script << " takes pictures";
    for (const std::string& file : files) {
      const auto path = std::filesystem::path(shots) / file;
      ASSERT_TRUE(std::filesystem::exists(path)) << script << ": " << file;
      EXPECT_GT(std::filesystem::file_size(path), 2000u) << script << ": " << file;
    }
  }
  const std::string shots = folder / "shots";
};

/// Whether two pictures look the same from afar: a widget that was moved, coloured or taken away
/// is told, another rendering of a letter is not.
void ExpectAlike(const std::string& kept, const std::string& made) {
  const QImage one(QString::fromStdString(kept));
  const QImage other(QString::fromStdString(made));
  ASSERT_EQ(one.size(), other.size()) << kept;
  const QSize coarse(48, 27);
  const QImage left = one.scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const QImage right = other.scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  int off = 0;
  for (int y = 0; y < coarse.height(); ++y) {
    for (int x = 0; x < coarse.width(); ++x) {
      const QColor a = left.pixelColor(x, y);
      const QColor b = right.pixelColor(x, y);
      const int most = std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                 std::abs(a.blue() - b.blue())});
      off += most > 40 ? 1 : 0;
    }
  }
  EXPECT_LE(off, 6) << kept << " is not what the program shows: make it anew by ./pictures --guide";
}

TEST_F(Demo, RecordsASoundingAndTakesItsPictures) {
  const std::string out = folder / "out";
  const Outcome outcome = Run({ScriptFile("demo.txt"), "--virtual", "--look", "day", "--size",
                               "1366x768", "--out", out, "--shots", shots});
  ASSERT_EQ(outcome.exit_code, 0) << outcome.printed;
  std::vector<std::filesystem::path> soundings;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(out)) {
    if (entry.path().extension() == ".cpt") soundings.push_back(entry.path());
  }
  ASSERT_EQ(soundings.size(), 1u);
  constexpr std::size_t kHeader = 23;
  EXPECT_GE(LinesOf(soundings[0]).size(), kHeader + 240);
  EXPECT_EQ(LinesOf(std::filesystem::path(out) / "allusers/PENLOG(KQ)/TemporaryData.txt"),
            std::vector<std::string>{"DONE\r"});
  ExpectShots("demo.txt");
  ExpectAlike(std::string(PENLOG_SOURCE_DIR) + "/docs/pictures/main_recording.png",
              shots + "/main_recording.png");
}

TEST_F(Demo, GuideIsPlayedAndShowsEachOfItsPicturesOnce) {
  const Outcome outcome = Run({ScriptFile("guide.txt"), "--virtual", "--look", "day", "--size",
                               "1366x768", "--shots", shots});
  ASSERT_EQ(outcome.exit_code, 0) << outcome.printed;
  ExpectShots("guide.txt");
  const std::string docs = std::string(PENLOG_SOURCE_DIR) + "/docs";
  const std::vector<std::string> told = PicturesToldIn(docs + "/operator-guide.md");
  EXPECT_EQ(told, ShotsOf("guide.txt"));
  for (const std::string& file : told) {
    ASSERT_TRUE(std::filesystem::exists(docs + "/pictures/" + file)) << file;
    ExpectAlike(docs + "/pictures/" + file, shots + "/" + file);
  }
}

TEST_F(Demo, ShowsTheScreensOfMissingOutputPorts) {
  const std::string source = std::string(PENLOG_SOURCE_DIR) + "/data";
  const std::string settings = folder / "settings";
  std::filesystem::copy(source, settings);
  const std::string name = "/System Setup Values.txt";
  std::ofstream changed(settings + name, std::ios::binary);
  // The lumen probe, and the ports of cone, truck interface, ASCII out and video overlay.
  const std::map<int, std::string> values = {
      {22, "1"}, {41, "3"}, {42, "4"}, {55, "21"}, {56, "22"}};
  int number = 0;
  for (const std::string& line : LinesOf(source + name)) {
    const auto value = values.find(++number);
    changed << (value == values.end() ? line : value->second + "\r") << "\n";
  }
  changed.close();
  const Outcome outcome =
      Run({ScriptFile("output_ports.txt"), "--virtual", "--data", settings, "--shots", shots});
  ASSERT_EQ(outcome.exit_code, 0) << outcome.printed;
  ExpectShots("output_ports.txt");
}

}  // namespace
}  // namespace penlog
