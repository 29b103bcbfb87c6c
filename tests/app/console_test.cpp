// The console from its first screen to its end.
#include "app/console.h"

#include "core/session.h"
#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "sounding/held_rows.h"
#include "support/state.h"

namespace penlog {
namespace {

/// A disk on which one file can't even be looked for.
class BrokenDisk : public MemoryDisk {
 public:
  bool FileExists(const std::string& path) override {
    if (path.ends_with(broken)) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::FileExists(path);
  }
  std::string broken = "Channel7.txt";
};

/// Runs the console for that long; `look` sees it just before its end.
void RunConsoleFor(Micros time, const std::function<void()>& look) {
  PostCall(Now() + time, nullptr, [&] {
    look();
    RequestEnd();
  });
  RunConsole();
}

TEST(Console, BeginsWithTheStartScreenAndEndsWithNothingLeft) {
  ClearedWorld world;
  bool shown = false;
  RunConsoleFor(kSecond, [&] { shown = StartUp.Visible && StartUp.cmdStart.IsUsable(); });
  EXPECT_TRUE(shown);
  EXPECT_FALSE(StartUp.Loaded);
  EXPECT_FALSE(Main.Loaded);
  EXPECT_FALSE(BoxIsOpen());
  EXPECT_TRUE(world.disk.Lock("/allusers/PENLOG(KQ)/penlog.lock")) << "the lock is given back";
}

TEST(Console, TellsOfAFaultInTheFirstLoadAndShowsTheScreen) {
  ClearedWorld world;
  BrokenDisk disk;
  disk.MakeFolder("/allusers/PENLOG(KQ)");
  disk.Put("/allusers/PENLOG(KQ)/Channel1.txt", "");  // no first run
  UseDisk(&disk);
  bool shown = false;
  std::vector<std::string> told;
  // The load waits at the boxes of the damaged files; each is answered.
  const std::function<void()> answer = [&] {
    if (const MessageBox* box = FrontBox(); box != nullptr) {
      if (told.empty() || told.back() != box->text) told.push_back(box->text);
      if (!StartsWith(box->text, "RUN-TIME FAULT")) AnswerBox(box->id, BoxAnswer::Ok);
    }
    PostCall(Now() + kMillisecond, &told, answer, EventKind::RepeatingCall);
  };
  answer();
  RunConsoleFor(10 * kSecond, [&] { shown = StartUp.Visible; });
  DropCalls(&told);
  UseDisk(&world.disk);
  EXPECT_TRUE(shown);
  ASSERT_FALSE(told.empty());
  EXPECT_TRUE(StartsWith(told.back(), "RUN-TIME FAULT: ")) << told.back();
  EXPECT_NE(told.back().find("Channel7.txt: Input/output error"), std::string::npos);
}

TEST(Console, TriesOnceMoreToWriteWhatIsHeldAtItsEnd) {
  for (const SoundingFile file : {kTemporaryFile, kCptFile, kTimFile}) {
    ClearedWorld world;
    const std::string path = "/data/held.txt";
    world.disk.MakeFolder("/data");
    RunConsoleFor(kSecond, [&] {
      session.SoundingFiles[static_cast<std::size_t>(file)] = path;
      world.disk.Put(path, "begun\r\n");
      StartFile(file, "begun\r\n");
      world.disk.SetRoom(0);
      AppendOrHold(file, "a line\r\n");
      world.disk.SetRoom(-1);
      EXPECT_EQ(LinesHeld(file), 1);
    });
    EXPECT_EQ(world.disk.Read(path), "begun\r\na line\r\n") << file;
  }
}

TEST(Console, TellsAFaultThatComesAgainOnce) {
  ClearedWorld world;
  std::size_t open = 0;
  for (int i = 1; i <= 3; ++i) {
    PostCall(Now() + i * 100 * kMillisecond, &open, [] { throw RuntimeFault("DISK GONE"); });
  }
  RunConsoleFor(kSecond, [&] { open = OpenBoxes().size(); });
  EXPECT_EQ(open, 1U);
}

}  // namespace
}  // namespace penlog
