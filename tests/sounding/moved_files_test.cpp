// A sounding whose folder refuses is taken up in another one, with all that stood beside it.
#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "platform/runtime_fault.h"
#include "sounding/held_rows.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

using FilesByPath = std::map<std::string, std::string>;

const std::string kRefused = "THE SOUNDING FILE CANNOT BE WRITTEN.";
const std::string kTimHead =
    "Lumen Probe Time File.  Each line a represents a 5mm depth increment.\r\n 34200.5 \r\n";

const FilesByPath& Beside() {
  static const FilesByPath files = {{"/data/s.dis", "dissipation"},
                                    {"/data/s.smc", "seismic"},
                                    {"/data/s.tim", kTimHead + "-000.510 34262.75\r\n"},
                                    {"/data/s.res", "results"}};
  return files;
}

/// The same files in the new folder.
FilesByPath Moved() {
  FilesByPath moved;
  for (const auto& [path, text] : Beside()) moved["/stick/moved" + path.substr(7)] = text;
  return moved;
}

/// Rows 4 to the last are missing in the sounding file, and its folder takes nothing any more.
struct Refused : TakenUp {
  explicit Refused(const FilesByPath& beside = Beside()) {
    settings.LumenProbePresent = 1;
    disk.Put(kCpt, Head(true) + CptRows(3));
    for (const auto& [path, text] : beside) disk.Put(path, text);
    disk.PutFolder("/stick");
    disk.before = [](std::string_view work, const std::string& path) {
      const bool reads = work == "close" || work == "sync folder";
      if (path.starts_with("/data/s") && !reads) throw RuntimeFault(path + ": Permission denied");
    };
    ChooseFile({"/stick/moved.cpt"});
  }
  MemoryDisk OnMedium() const { return disk.After(Loss::ContentsAndNames); }
  void ExpectMoved() const {
    const FilesByPath files = OnMedium().Files();
    EXPECT_EQ(files.at("/stick/moved.cpt"), WholeCpt());
    EXPECT_TRUE(files.at(kTemporary).starts_with("/stick/moved.cpt\r\n"));
    for (const auto& [path, text] : Moved()) {
      ASSERT_TRUE(files.contains(path)) << path;
      EXPECT_EQ(files.at(path), text) << path;
    }
  }
  void ExpectHomeUntouched() const {
    EXPECT_EQ(disk.Files().at(kCpt), Head(true) + CptRows(3));
    for (const auto& [path, text] : Beside()) EXPECT_EQ(disk.Files().at(path), text);
  }
};

TEST(Move, TakesTheOtherFilesOfTheSoundingAlongAndLeavesTheOldOnes) {
  Refused taken;
  taken.TakeUp();
  taken.ExpectMoved();
  taken.ExpectHomeUntouched();
  EXPECT_EQ(session.HasDissipationFile, kTrue);
  EXPECT_EQ(session.HasSeismicFile, kTrue);
  EXPECT_EQ(taken.boxes.texts.size(), 2U) << "the refusal, and what was mended";
  EXPECT_TRUE(AppendOrHold(kTimFile, "000.270 34263.75\r\n"));
  EXPECT_EQ(taken.File("/stick/moved.tim"), Beside().at("/data/s.tim") + "000.270 34263.75\r\n");
}

TEST(Move, OfASoundingWithoutThemTakesNoneAndClearsTheFlags) {
  Refused taken(FilesByPath{});
  taken.TakeUp();
  EXPECT_FALSE(taken.Has("/stick/moved.dis"));
  EXPECT_FALSE(taken.Has("/stick/moved.smc"));
  EXPECT_FALSE(taken.Has("/stick/moved.res"));
  EXPECT_EQ(session.HasDissipationFile, 0);
  EXPECT_EQ(session.HasSeismicFile, 0);
  EXPECT_TRUE(taken.WasTold("WHAT STANDS THERE OF THEM STAYS THERE: /data/s.tim"))
      << "the probe has marked depths";
  EXPECT_EQ(taken.File("/stick/moved.tim").find("Lumen Probe Time File."), 0U);
}

TEST(Move, RenamesAnothersFilesBesideWhetherTheSoundingHasSuchOrNot) {
  for (const FilesByPath& beside : {Beside(), FilesByPath{}}) {
    Refused taken(beside);
    for (const auto& [path, text] : Moved()) taken.disk.Put(path, "another's " + path);
    taken.TakeUp();
    for (const auto& [path, text] : Moved()) {
      const std::string renamed = path.substr(0, 12) + " (2)" + path.substr(12);
      ASSERT_TRUE(taken.OnMedium().Files().contains(renamed)) << renamed;
      EXPECT_EQ(taken.File(renamed), "another's " + path);
    }
    EXPECT_EQ(session.HasDissipationFile, beside.empty() ? 0 : kTrue);
    if (!beside.empty()) taken.ExpectMoved();
  }
}

TEST(Move, ToCopiesOfAnAttemptThatWasCutOffRenamesNothing) {
  Refused taken;
  for (const auto& [path, text] : Moved()) taken.disk.Put(path, text);
  taken.TakeUp();
  taken.ExpectMoved();
  EXPECT_FALSE(taken.Has("/stick/moved (2).dis"));
}

TEST(Move, ToAFolderThatHoldsTheSoundingAlreadyUsesWhatTheOldOneLacks) {
  Refused taken(FilesByPath{});
  taken.disk.Put("/stick/moved.cpt", WholeCpt());
  for (const auto& [path, text] : Moved()) taken.disk.Put(path, text);
  taken.TakeUp();
  taken.ExpectMoved();
  EXPECT_EQ(session.HasDissipationFile, kTrue);
  EXPECT_FALSE(taken.Has("/stick/moved (2).dis"));
}

/// A medium that doesn't give the files of some tests.
struct UnreadableDis : MemoryDisk {
  std::string Read(const std::string& path) override {
    if (path == "/data/s.dis" && refusals-- > 0) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::Read(path);
  }
  int refusals = 0;
};

TEST(Move, AFileThatCannotBeReadIsTriedAgainOrLeftByName) {
  const std::string asks = "/data/s.dis CANNOT BE COPIED TO /stick.";
  for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Cancel}) {
    Refused taken;
    UnreadableDis disk;
    for (const auto& [path, text] : taken.disk.Files()) disk.Put(path, text);
    disk.PutFolder("/stick");
    disk.before = taken.disk.before;
    disk.refusals = 1;
    UseDisk(&disk);
    taken.boxes.Answer(asks, answer);
    taken.TakeUp();
    EXPECT_TRUE(taken.WasTold(asks));
    EXPECT_EQ(disk.FileExists("/stick/moved.dis"), answer == BoxAnswer::Ok);
    EXPECT_EQ(session.HasDissipationFile, answer == BoxAnswer::Ok ? kTrue : 0);
    EXPECT_EQ(session.HasSeismicFile, kTrue) << "the others go along";
    EXPECT_EQ(disk.Files().at("/data/s.dis"), "dissipation");
    UseDisk(&taken.disk);
  }
}

/// What stands beside the sounding can be read and renamed but for some files.
struct StubbornDisk : MemoryDisk {
  std::string Read(const std::string& path) override {
    if (path.starts_with(unreadable)) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::Read(path);
  }
  void Rename(const std::string& from, const std::string& to) override {
    const bool is_main = from.find(".cpt") != std::string::npos;
    if (from.starts_with(unmovable) && !is_main) {
      throw RuntimeFault(from + ": Operation not permitted");
    }
    MemoryDisk::Rename(from, to);
  }
  std::string unreadable = "-";
  std::string unmovable = "-";
};

/// Each of the files at home, if any, and another sounding's under each new name.
void ExpectAnothersLeftAlone(const FilesByPath& beside, bool is_read, bool is_moved) {
  Refused taken(beside);
  StubbornDisk disk;
  for (const auto& [path, text] : taken.disk.Files()) disk.Put(path, text);
  for (const auto& [path, text] : Moved()) disk.Put(path, "another's " + path);
  disk.before = taken.disk.before;
  UseDisk(&disk);
  if (!is_read) disk.unreadable = "/data/s.";
  if (!is_moved) disk.unmovable = "/stick/moved.";
  for (const auto& [path, text] : Beside()) {
    taken.boxes.Answer(path + " CANNOT BE COPIED", BoxAnswer::Cancel);
  }
  for (const auto& [path, text] : Moved()) {
    taken.boxes.Answer(path + " IS ANOTHER SOUNDING'S", BoxAnswer::Cancel);
  }
  taken.TakeUp();
  EXPECT_TRUE(AppendOrHold(kTimFile, "000.270 34263.75\r\n"));
  for (const auto& [path, text] : Moved()) {
    const std::string at = is_moved ? path.substr(0, 12) + " (2)" + path.substr(12) : path;
    ASSERT_TRUE(disk.FileExists(at)) << at;
    EXPECT_EQ(disk.Files().at(at), "another's " + path);
  }
  EXPECT_EQ(session.HasDissipationFile, 0);
  EXPECT_EQ(session.HasSeismicFile, 0);
  EXPECT_EQ(sounding.Held[kTimFile].GivenUp, !is_moved);
  UseDisk(&taken.disk);
}

TEST(Move, OfAFileThatIsNotGivenTakesNoOtherSoundingsUp) {
  ExpectAnothersLeftAlone(Beside(), false, true);
}

TEST(Move, ToNamesThatAnothersFilesCannotGiveUpTakesNoneOfThemUp) {
  for (const FilesByPath& beside : {Beside(), FilesByPath{}}) {
    SCOPED_TRACE(beside.empty() ? "none of its own" : "its own");
    ExpectAnothersLeftAlone(beside, true, false);
  }
}

TEST(Move, FromAMediumThatIsAwayTellsByNameWhatMayStayThere) {
  Refused taken;
  Texts lines = StoredLines(kRows);
  lines[0] = "/pulled/s.cpt";
  taken.disk.Put(kTemporary, JoinedLines(lines));
  taken.TakeUp();
  EXPECT_TRUE(
      taken.WasTold("STAYS THERE: /pulled/s.dis, /pulled/s.smc, /pulled/s.tim, "
                    "/pulled/s.res"));
  EXPECT_EQ(taken.File("/stick/moved.cpt"), WholeCpt());
}

TEST(Move, LeavesTheFilmWhereItIsAndSaysSo) {
  Refused taken;
  taken.disk.Put("/data/s.mp4", "film");
  taken.TakeUp();
  EXPECT_TRUE(taken.WasTold("STAYS WHERE IT IS: /data/s.mp4"));
  EXPECT_FALSE(taken.Has("/stick/moved.mp4"));
}

TEST(Move, ToAFolderThatRefusesTooLeavesTheSoundingAtHome) {
  Refused taken;
  taken.disk.PutFolder("/full");
  const auto home = taken.disk.before;
  taken.disk.before = [&](std::string_view work, const std::string& path) {
    home(work, path);
    if (work == "write" && path.starts_with("/full")) throw RuntimeFault("No space left on device");
  };
  taken.ChooseFile({"/full/moved.cpt", "/stick/moved.cpt"});
  taken.TakeUp();
  EXPECT_EQ(taken.dialogs, 2);
  taken.ExpectMoved();
  EXPECT_FALSE(taken.Has("/full/moved.dis"));

  Refused again;
  again.disk.before = taken.disk.before;
  again.disk.PutFolder("/full");
  again.ReadBack();
  again.ChooseFile({"/full/moved.cpt"});
  again.boxes.Answer(kRefused + "  /data", BoxAnswer::Yes);
  again.boxes.Answer(kRefused + "  No space", BoxAnswer::No);
  again.boxes.Answer("THE FILE OF THE TIME MARKS", BoxAnswer::Cancel);
  EXPECT_TRUE(TakeUpSounding());
  EXPECT_EQ(session.SoundingFiles[kCptFile], kCpt) << "as the recovery copy says";
  EXPECT_TRUE(again.File(kTemporary).starts_with("/data/s.cpt\r\n"));
  again.disk.before = nullptr;
  TakenUp::Row();
  EXPECT_EQ(again.File(kCpt), Head(true) + CptRows(kAligned + 1)) << "held until it takes rows";
}

TEST(Move, CutOffAtAnyOperationIsAtHomeOrWholeInItsNewPlace) {
  for (const Fate stop : {Fate::StopBefore, Fate::StopAmid, Fate::StopAfter}) {
    bool stopped = true;
    for (std::int64_t step = 1; stopped; ++step) {
      SCOPED_TRACE("operation " + PlainNumber(static_cast<int>(step)));
      ASSERT_LT(step, 80);
      Refused taken;
      taken.disk.Put("/stick/moved.dis", "another's");
      taken.ReadBack();
      const std::int64_t before = taken.disk.OperationCount();
      stopped = false;
      taken.disk.fate = [&](std::string_view, const std::string&, std::int64_t number) {
        if (number - before != step) return Fate::Done;
        stopped = true;
        return stop;
      };
      try {
        TakeUpSounding();
      } catch (const ProgramEnd&) {
        ForgetEnd();
      }
      ForgetEnd();
      taken.ExpectHomeUntouched();
      for (const Loss loss : {Loss::Nothing, Loss::Contents, Loss::ContentsAndNames}) {
        const FilesByPath files = taken.disk.After(loss).Files();
        EXPECT_TRUE(std::any_of(files.begin(), files.end(), [](const auto& file) {
          return file.second == "another's";
        })) << "never overwritten";
        const std::string& copy = files.at(kTemporary);
        if (copy == JoinedLines(StoredLines(kRows))) continue;
        EXPECT_TRUE(copy.starts_with("/stick/moved.cpt\r\n"));
        for (const auto& [path, text] : Moved()) EXPECT_EQ(files.at(path), text) << path;
        EXPECT_EQ(files.at("/stick/moved.cpt"), WholeCpt());
      }
      if (::testing::Test::HasFailure()) return;
    }
  }
}

// The way back.

TEST(GoBack, LeavesTheFilesAndTheTablesAsTheyWere) {
  Refused taken;
  taken.ReadBack();
  channels.RecordMode(3) = 2;
  channels.RecordMode(1) = 0;
  const FilesByPath files = taken.disk.Files();
  taken.ChooseFile({""});
  taken.boxes.Answer("NO OTHER FOLDER WAS CHOSEN.", BoxAnswer::Cancel);
  EXPECT_FALSE(TakeUpSounding());
  EXPECT_EQ(taken.disk.Files(), files);
  EXPECT_EQ(channels.RecordMode(1), 0);
  EXPECT_EQ(channels.RecordMode(3), 2);
  EXPECT_EQ(channels.ChannelPresent(20), 0);
  EXPECT_EQ(cone.DelayRows, 99);
  for (const SoundingFile file : {kTemporaryFile, kCptFile, kTimFile}) EXPECT_FALSE(IsBegun(file));
}

TEST(GoBack, OfASoundingWithAMissingChannelKeepsNoColumnForTheNext) {
  Refused taken;
  taken.ReadBack();
  channels.ChannelPresent(2) = kFalse;
  taken.ChooseFile({""});
  taken.boxes.Answer("NO OTHER FOLDER WAS CHOSEN.", BoxAnswer::Cancel);
  EXPECT_FALSE(TakeUpSounding());
  EXPECT_TRUE(taken.WasTold("RECORDED CHANNELS ARE MISSING NOW."));
  EXPECT_EQ(sounding.KeptColumn(2), 0);
  EXPECT_EQ(sounding.RowForm, CptForm::OfSettings);
}

// What a failed sync forgot.

TEST(TakeUpOfUnsyncedFiles, IsOnTheMediumThoughASyncFailedAndWasForgotten) {
  bool struck = true;
  for (int first = 1; struck; ++first) {
    SCOPED_TRACE(first);
    TakenUp taken;
    settings.LumenProbePresent = 1;
    const FilesByPath written = {
        {kTemporary, JoinedLines(StoredLines(kRows))}, {kCpt, WholeCpt()}, {kTim, kTimHead}};
    for (const auto& [path, text] : written) {  // by a process that did not live to sync it
      const Disk::Handle handle = taken.disk.Create(path);
      taken.disk.Write(handle, text);
      taken.disk.Close(handle);
    }
    taken.ReadBack();
    taken.ChooseFile({""});
    struck = false;
    taken.disk.fate = [&, syncs = 0](std::string_view work, const std::string&,
                                     std::int64_t) mutable {
      if (work != "sync" || ++syncs != first) return Fate::Done;
      struck = true;
      return Fate::RefusedAndForgotten;
    };
    EXPECT_TRUE(TakeUpSounding());
    const FilesByPath files = taken.disk.After(Loss::ContentsAndNames).Files();
    for (const auto& [path, text] : written) {
      ASSERT_TRUE(files.contains(path)) << path;
      EXPECT_TRUE(files.at(path) == text) << path;
    }
    ASSERT_LT(first, 20);
  }
}

TEST(TakeUpOfUnsyncedFiles, HeldAtTheFolderThatRefusedASyncIsWrittenAnewLater) {
  TakenUp taken;
  const Disk::Handle handle = taken.disk.Create(kCpt);
  taken.disk.Write(handle, WholeCpt());
  taken.disk.Close(handle);
  taken.boxes.Answer(kRefused, BoxAnswer::No);
  taken.disk.fate = [](std::string_view work, const std::string& path, std::int64_t) {
    return work == "sync" && path.starts_with("/data/s.cpt") ? Fate::RefusedAndForgotten
                                                             : Fate::Done;
  };
  taken.TakeUp();
  taken.disk.fate = nullptr;
  TakenUp::Row();
  EXPECT_EQ(taken.disk.After(Loss::ContentsAndNames).Files().at(kCpt),
            Head(true) + CptRows(kAligned + 1));
}

}  // namespace
}  // namespace penlog
