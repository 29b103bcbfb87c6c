// Faults of another kind than a disk's: no memory for a file, or a file that is none of a sounding.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <new>

#include "core/temporary_data.h"
#include "platform/small_file.h"
#include "sounding/held_rows.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

/// Some of its files are longer than they look, or take more memory than there is.
struct LongFiles : MemoryDisk {
  std::string Read(const std::string& path) override {
    reads.push_back(path);
    if (path == too_much) throw std::bad_alloc();
    return MemoryDisk::Read(path);
  }
  std::int64_t SizeOf(const std::string& path) override {
    const auto size = sizes.find(path);
    return size == sizes.end() ? MemoryDisk::SizeOf(path) : size->second;
  }
  std::string too_much;
  std::map<std::string, std::int64_t> sizes;
  Texts reads;
};

/// With its sounding on such a disk.
struct OnLongFiles : TakenUp {
  OnLongFiles() {
    for (const auto& [path, text] : disk.Files()) files.Put(path, text);
    UseDisk(&files);
  }
  ~OnLongFiles() { UseDisk(&disk); }
  LongFiles files;
};

TEST(TakeUp, WithoutMemoryForAFileLeavesTheTablesAsTheyWere) {
  for (const char* path : {kTemporary, kCpt}) {
    OnLongFiles taken;
    taken.ReadBack();
    channels.RecordMode(3) = 2;
    const auto before = taken.files.Files();
    taken.files.too_much = path;
    EXPECT_THROW(TakeUpSounding(), std::bad_alloc);
    EXPECT_EQ(taken.files.Files(), before);
    EXPECT_EQ(channels.RecordMode(1), 0);
    EXPECT_EQ(channels.RecordMode(3), 2);
    EXPECT_EQ(channels.ChannelPresent(20), 0);
    EXPECT_EQ(cone.DelayRows, 99);
    for (const SoundingFile file : {kTemporaryFile, kCptFile}) EXPECT_FALSE(IsBegun(file));
  }
}

TEST(TakeUp, WithoutMemoryForTheTimeMarksGoesOnWithoutThem) {
  OnLongFiles taken;
  taken.files.Put(kTim, "marks");
  settings.LumenProbePresent = 1;
  taken.files.too_much = kTim;
  taken.boxes.Answer("THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN.", BoxAnswer::Cancel);
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts.size(), 1U);
  EXPECT_TRUE(sounding.Held[kTimFile].GivenUp);
  TakenUp::Row();
  EXPECT_EQ(taken.files.Files().at(kCpt), Head(true) + CptRows(kAligned + 1));
}

TEST(LongFile, InPlaceOfTheRecoveryCopyIsRefusedInWordsUnread) {
  OnLongFiles taken;
  taken.files.sizes[kTemporary] = kMostOfSmallFile + 1;
  StartUp_cmdResume_Click();
  EXPECT_EQ(taken.boxes.texts,
            Texts{"THE LAST SOUNDING CANNOT BE RESUMED.  /data/TemporaryData.txt IS LONGER THAN 64 "
                  "MB: IT IS NO FILE OF A SOUNDING"});
  EXPECT_EQ(taken.files.reads, Texts{});
  taken.files.sizes[kTemporary] = kMostOfSmallFile;
  taken.TakeUp();
  EXPECT_TRUE(IsBegun(kTemporaryFile)) << "as long as it may be";
}

TEST(LongFile, InPlaceOfTheRecoveryCopyIsPutBesideByAStart) {
  OnLongFiles taken;
  taken.files.sizes[kTemporary] = kMostOfSmallFile + 1;
  const std::string before = taken.files.Files().at(kTemporary);
  CreateSoundingFiles();
  EXPECT_EQ(taken.files.Files().at("/data/TemporaryData (2).txt"), before);
  EXPECT_EQ(taken.files.reads, Texts{});
}

TEST(LongFile, InPlaceOfTheCptFileIsPutBesideUnreadAndTold) {
  OnLongFiles taken;
  taken.ReadBack();
  taken.files.sizes[kCpt] = kMostOfSmallFile + 1;
  taken.files.Put(kCpt, "long");
  taken.files.reads.clear();
  TakeUpSounding();
  EXPECT_EQ(taken.files.reads, Texts{kTemporary});
  EXPECT_EQ(taken.files.Files().at(kCpt), WholeCpt());
  EXPECT_EQ(taken.files.Files().at("/data/s (2).cpt"), "long");
  EXPECT_TRUE(taken.WasTold(
      "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  IT COULD NOT BE READ: /data/s.cpt IS "
      "LONGER THAN 64 MB: IT IS NO FILE OF A SOUNDING."));
}

TEST(DamagedLines, AreCountedAndTheFirstOnesTold) {
  TextLines lines = StoredLines(1);
  for (int i = 0; i < 1000; ++i) lines.emplace_back("damaged");
  const StoredSounding stored = ReadTemporaryData(
      JoinedLines(lines), [](int) { return false; }, 10'000);
  EXPECT_EQ(stored.damage.size(), 100U) << "they take memory";
  EXPECT_EQ(stored.damage_untold, 900U);
  TakenUp taken(JoinedLines(lines));
  StartUp_cmdResume_Click();
  EXPECT_TRUE(taken.WasTold("LINE 23: IT IS NO WHOLE ROW  AND 995 MORE"));
}

}  // namespace
}  // namespace penlog
