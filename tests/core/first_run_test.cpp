#include "core/first_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "core/first_run_data.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

class FirstRun : public ::testing::Test {
 protected:
  std::size_t FileCount() const {
    return static_cast<std::size_t>(
        std::count_if(world.disk.Files().begin(), world.disk.Files().end(),
                      [](const auto& file) { return StartsWith(file.first, "/data/"); }));
  }
  SettingsWorld world;
};

TEST_F(FirstRun, FilesAreThoseOfTheDataFolderByteByByte) {
  for (const FirstRunFile& file : FirstRunFiles()) {
    std::ifstream in(std::string(PENLOG_SOURCE_DIR) + "/data/" + std::string(file.name),
                     std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(content, file.content) << file.name;
    EXPECT_FALSE(file.content.empty()) << file.name;
  }
}

TEST_F(FirstRun, FilesAreSettingsChannelsLanguagesAndTheSoilTable) {
  for (int channel = 1; channel <= 30; ++channel) {
    EXPECT_NE(FirstRunContent("Channel" + std::to_string(channel) + ".txt"), "") << channel;
  }
  for (const char* name :
       {"System Setup Values.txt", "AvailableLanguages.txt", "Deutsch.txt", "intubc.asc"}) {
    EXPECT_NE(FirstRunContent(name), "") << name;
  }
  EXPECT_EQ(FirstRunContent("Channel31.txt"), "");
}

TEST_F(FirstRun, EmptyDirectoryGetsAllFiles) {
  LayDownFirstRunFiles();
  EXPECT_EQ(FileCount(), FirstRunFiles().size());
  for (const FirstRunFile& file : FirstRunFiles()) {
    EXPECT_EQ(world.disk.Read(DataPath(file.name)), file.content) << file.name;
  }
}

TEST_F(FirstRun, DirectoryWithOnlyASerialPortsFileIsANewOne) {
  world.disk.Put("/data/Serial Ports.txt", "3 /dev/ttyUSB0\n");
  LayDownFirstRunFiles();
  EXPECT_EQ(FileCount(), FirstRunFiles().size() + 1);
}

TEST_F(FirstRun, DirectoryInUseIsLeftAsItIs) {
  world.disk.Put("/data/Channel1.txt", "mine");
  LayDownFirstRunFiles();
  EXPECT_EQ(FileCount(), 1U) << "a missing channel file says that the channel is not known";
}

TEST_F(FirstRun, CutShortIsFinishedByTheNextStart) {
  world.disk.SetRoom(3000);
  EXPECT_THROW(LayDownFirstRunFiles(), RuntimeFault);
  EXPECT_LT(FileCount(), FirstRunFiles().size());
  world.disk.SetRoom(-1);
  LayDownFirstRunFiles();
  for (const FirstRunFile& file : FirstRunFiles()) {
    EXPECT_EQ(world.disk.Read(DataPath(file.name)), file.content) << file.name;
  }
  world.disk.Remove("/data/Channel9.txt");
  LayDownFirstRunFiles();
  EXPECT_FALSE(world.disk.FileExists("/data/Channel9.txt"));
}

/// The console's first start on a new machine.
void StartFirst() {
  session.DataDirectory = "/allusers/PENLOG(KQ)";
  WhyNotWritable(session.DataDirectory);
  LayDownFirstRunFiles();
}

TEST(FirstRunCutOff, AtAnyOperationIsFinishedByTheNextStart) {
  for (const Fate stop : {Fate::StopBefore, Fate::StopAmid}) {
    std::int64_t step = 0;
    for (bool stopped = true; stopped;) {
      ++step;
      SettingsWorld world;
      world.disk = MemoryDisk();  // a new machine's
      world.disk.fate = [&](std::string_view, const std::string&, std::int64_t number) {
        return number == step ? stop : Fate::Done;
      };
      try {
        StartFirst();
      } catch (const ProgramEnd&) {
      } catch (const RuntimeFault&) {  // behind a close that stopped it
      }
      ForgetEnd();
      stopped = world.disk.Stopped();
      const MemoryDisk left = world.disk;
      for (const Loss loss : {Loss::Nothing, Loss::ContentsAndNames, Loss::HalfTail}) {
        world.disk = left.After(loss);
        StartFirst();
        ASSERT_EQ(world.disk.List(session.DataDirectory).size(), FirstRunFiles().size())
            << step << " " << static_cast<int>(loss);
        for (const FirstRunFile& file : FirstRunFiles()) {
          ASSERT_EQ(world.disk.Read(DataPath(file.name)), file.content)
              << file.name << " " << step << " " << static_cast<int>(loss);
        }
      }
    }
    EXPECT_GT(step, 150) << "each file takes six";
  }
}

TEST_F(FirstRun, SettingsNameNoPorts) {
  LayDownFirstRunFiles();
  const std::string text = world.Setup();
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find("\r\n", at);
    lines.push_back(text.substr(at, end - at));
    at = end + 2;
  }
  ASSERT_EQ(lines.size(), 62U);
  for (const std::size_t position : {41U, 42U, 43U, 55U, 56U, 60U}) {
    EXPECT_EQ(lines[position - 1], "0") << position;
  }
}

TEST(DataDirectory, IsChosenByVersionAndEnvironment) {
  struct Row {
    std::optional<int> version;
    const char* all_users;
    const char* directory;
  };
  for (const Row& row :
       {Row{std::nullopt, "/allusers", "/allusers/PENLOG(KQ)"},
        Row{6, "/allusers", "/allusers/PENLOG(KQ)"}, Row{10, "/allusers/", "/allusers/PENLOG(KQ)"},
        Row{5, "/allusers", "/program"}, Row{5, "", "/program"},
        Row{std::nullopt, "", "/user/PENLOG(KQ)"}}) {
    World world;
    world.host.system_version = row.version;
    world.host.all_users = row.all_users;
    EXPECT_EQ(FindDataDirectory(), row.directory);
  }
}

TEST(DataDirectory, IsMadeWhenMissing) {
  SettingsWorld world;
  session.DataDirectory = "/allusers/PENLOG(KQ)";
  EXPECT_EQ(WhyNotWritable(session.DataDirectory), "");
  EXPECT_TRUE(world.disk.FolderExists("/allusers/PENLOG(KQ)"));
  EXPECT_TRUE(world.disk.List("/allusers/PENLOG(KQ)").empty()) << "the probe leaves nothing";
}

TEST(DataDirectory, MadeAtAStartOutlivesAPowerLossWithWhatIsSyncedInIt) {
  SettingsWorld world;
  session.DataDirectory = "/allusers/PENLOG(KQ)";
  WhyNotWritable(session.DataDirectory);
  AppendToFile(DataPath("TemporaryData.txt"), "row\r\n");
  world.disk.LosePower();
  EXPECT_TRUE(world.disk.FileExists("/allusers/PENLOG(KQ)/TemporaryData.txt"));
}

TEST(DataDirectory, ThatCannotBeWrittenSaysWhy) {
  SettingsWorld world;
  world.disk.SetReadOnly("/data");
  EXPECT_NE(WhyNotWritable(session.DataDirectory).find("Permission denied"), std::string::npos);
}

}  // namespace
}  // namespace penlog
