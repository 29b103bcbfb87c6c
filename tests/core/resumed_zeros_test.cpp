// Channels of a resumed sounding that have no baseline of it are named.
#include "core/resumed_zeros.h"

#include "sounding/resumed_world.h"

namespace penlog {
namespace {

constexpr const char* kTold =
    "THE LAST SOUNDING SAVED NO BASELINE OF THESE CHANNELS.  THEY GO ON WITH THE ZERO OF THE "
    "CONE'S CALIBRATION: ";

TEST(ZerosOfRecord, AreToldOfChannelsThatTakeABaselineAndHaveNone) {
  struct Case {
    const char* what;
    int channel;
    int keeps_zero;
    bool present;
    int computed;
    std::string told;
  };
  const std::string told = std::string(kTold) + "5 (Channel 5)";
  for (const Case& row :
       {Case{"not recorded", 5, 1, true, 0, told}, Case{"always of the record", 5, 0, true, 0, ""},
        Case{"not there", 5, 1, false, 0, ""}, Case{"computed", 5, 1, true, 1, ""},
        Case{"saved", 3, 1, true, 0, ""}}) {
    SCOPED_TRACE(row.what);
    TakenUp taken;
    taken.ReadBack();
    Console::AddChannel(row.channel);
    channels.ChannelPresent(row.channel) = row.present ? kTrue : kFalse;
    channels.ChannelComputed(row.channel) = static_cast<std::int16_t>(row.computed);
    channels.ChannelKeepZero(row.channel) = static_cast<std::int16_t>(row.keeps_zero);
    TakeUpSounding();
    EXPECT_EQ(taken.boxes.texts, row.told.empty() ? Texts{} : Texts{row.told});
  }
}

TEST(ZerosOfRecord, AreNotToldWhereTheHeadOfTheFileHadTheZeroThatTheRecoveryCopyLost) {
  for (const bool has_file : {true, false}) {
    TextLines lines = StoredLines(kRows);
    lines[16] = StoredColumns({"0.25310", "x", "0.50070"});
    TakenUp taken(JoinedLines(lines));
    if (!has_file) taken.disk.Remove(kCpt);
    taken.ReadBack();
    channels.ChannelKeepZero(2) = 1;
    TakeUpSounding();
    EXPECT_EQ(taken.WasTold(std::string(kTold) + "2 (Channel 2)"), !has_file);
  }
}

}  // namespace
}  // namespace penlog
