// A channel that a resume lacked: its delay, and what becomes of its rows when it is back.
#include <gtest/gtest.h>

#include <cmath>

#include "display/graph_data.h"
#include "display/set_display.h"
#include "sounding/resume_rebuild.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

constexpr int kWithout = 6;  ///< rows that were recorded without the channel
const std::string kNothing = StoredField("-32768");

/// Row n of the `.cpt` file where rows `first` to `last` were recorded without `channel`.
std::string CptRowWithout(int n, int channel, int first, int last) {
  std::string row = CptRow(n);
  const auto column = static_cast<std::size_t>(channel - 1);
  const int read = n + kDelays[column];
  if (read >= first && read <= last) row.replace(13 + 20 * column, 20, kNothing);
  return row;
}

void TakeUpWithout(TakenUp& taken, int channel) {
  taken.ReadBack();
  channels.ChannelPresent(channel) = 0;
  channels.ChannelDelayRows(channel) = 0;  // its record is not read
  TakeUpSounding();
}

void TakeUpWith(TakenUp& taken, int channel) {
  taken.ReadBack();
  channels.ChannelPresent(channel) = kTrue;
  TakeUpSounding();
}

/// Suspended, taken up without the channel for some rows, suspended, and taken up with it.
struct Back : TakenUp {
  explicit Back(int without) : channel(without) {
    TextLines lines = StoredLines(kRows);
    lines[14] = "2,3,20";
    disk.Put(kTemporary, JoinedLines(lines));
    Console::AddChannel(20);
    TakeUpWithout(*this, channel);
    for (int i = 0; i < kWithout; ++i) TakenUp::Row();
    cpt = File(kCpt);
    temporary = File(kTemporary);
    TakeUpWith(*this, channel);
  }
  int channel;
  std::string cpt;
  std::string temporary;
};

TEST(ChannelBack, FindsTheFilesAsTheyStandAndGoesOnInThem) {
  for (const int channel : {1, 2, 3}) {
    SCOPED_TRACE(channel);
    Back back(channel);
    EXPECT_EQ(back.boxes.texts, Texts{}) << "no row has changed";
    EXPECT_EQ(back.File(kCpt), back.cpt);
    EXPECT_EQ(back.File(kTemporary), back.temporary);
    EXPECT_FALSE(back.Has("/data/s (2).cpt"));
    for (int i = 0; i < 5; ++i) TakenUp::Row();
    std::string expected = Head(true);
    for (int n = 1; n <= kRows + kWithout + 5 - kLag; ++n) {
      expected += CptRowWithout(n, channel, kRows + 1, kRows + kWithout);
    }
    EXPECT_EQ(back.File(kCpt), expected);
  }
}

/// The charts as the console's entry makes them.
void Rebuild() {
  SetDisplay();
  RebuildFrictionRatio();
  RebuildQt();
  StartDepthAxis();
  for (int g = 1; g <= 4; ++g) RebuildRange(g);
  GraphData();
}

/// Points of the channel's own series, over all its traces.
std::size_t PointsOf(int g) {
  std::size_t points = 0;
  for (const Trace& trace : Main.pctGraph(g).traces) {
    points += trace.series == Main.pctGraph(g).traces[0].series ? trace.points.size() : 0;
  }
  return points;
}

TEST(ChannelBack, DrawsNothingOfTheRowsWithoutIt) {
  for (const int channel : {1, 2, 3}) {
    SCOPED_TRACE(channel);
    Back back(channel);
    settings.TipPlotValues = 1;
    display.GraphAutoScale.fill(kTrue);
    ASSERT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 2, 3, 20}));
    Rebuild();
    for (int g = 1; g <= 4; ++g) {
      SCOPED_TRACE(g);
      const auto at = static_cast<std::size_t>(g);
      const int shown = display.GraphChannel[at];
      const bool of_channel = shown == channel || (shown == 20 && channel != 3);
      EXPECT_EQ(display.GraphMin[at], 0.0F);
      EXPECT_GT(display.GraphMax[at], 0.5F);
      EXPECT_LT(display.GraphMax[at], 500.0F);
      EXPECT_EQ(PointsOf(g), static_cast<std::size_t>(of_channel ? kRows : kRows + kWithout));
      for (const Trace& trace : Main.pctGraph(g).traces) {
        for (const TracePoint& point : trace.points) EXPECT_TRUE(point.x >= 0 && point.x <= 1);
      }
      EXPECT_EQ(Main.lblGraphValue(g).Caption == "-", of_channel);
      EXPECT_EQ(Main.lineBar(g).Where.width > 0, !of_channel && shown != 22);
    }
    for (int i = 0; i < 3; ++i) {
      TakenUp::Row();
      GraphData();
    }
    for (int g = 1; g <= 3; ++g) {
      EXPECT_NE(Main.lblGraphValue(g).Caption, "-");
      const bool of_channel = display.GraphChannel[static_cast<std::size_t>(g)] == channel;
      EXPECT_EQ(PointsOf(g), kRows + 3U + (of_channel ? 0U : unsigned{kWithout})) << g;
    }
  }
}

TEST(ChannelBack, ComputesNothingFromTheRowsWithoutIt) {
  for (const int channel : {1, 2, 3}) {
    SCOPED_TRACE(channel);
    Back back(channel);
    soil.FrictionRatioMax = 100;
    soil.SptDivisor.fill(2.0f);
    for (auto& column : soil.SbtTable) column[1] = {5.0f, 0.0001f};
    RebuildFrictionRatio();
    RebuildSoilType();
    RebuildQt();
    const int row = kRows + 1;
    EXPECT_EQ(sounding.Rows(row, 20) == -32768.0F, channel != 3);
    EXPECT_EQ(sounding.Rows(row, 21) == -32768.0F, channel != 3);
    EXPECT_EQ(sounding.Rows(row, 22) == -32768.0F, channel != 3);
    const float tip = ParseSingle(StoredValue(1, row)) - 0.2531F;
    const float pressure = ParseSingle(StoredValue(3, row)) - 0.5007F;
    const float qt = channel == 3 ? tip : tip + 0.2F * pressure;
    if (channel == 1) {
      EXPECT_TRUE(std::isnan(sounding.RowQt(row)));
    } else {
      EXPECT_FLOAT_EQ(sounding.RowQt(row), qt) << "without channel 3 as without its sensor";
    }
    EXPECT_GT(sounding.Rows(kRows, 20), 0.0F) << "a row before";
  }
}

TEST(ChannelBack, HasNoInclinationInTheRowsWithoutOneOfItsSensors) {
  for (const int channel : {6, 7}) {
    Console console;
    for (const int tilt : {6, 7}) Console::AddChannel(tilt);
    channels.ChannelFullScale(19) = 15.0F;
    sounding.RowCount = 2;
    for (const int row : {1, 2}) {
      sounding.Rows(row, 6) = 3.0F;
      sounding.Rows(row, 7) = 4.0F;
    }
    sounding.Rows(2, channel) = -32768.0F;
    RebuildInclination();
    EXPECT_FLOAT_EQ(sounding.Rows(1, 19), 75.0F);
    EXPECT_EQ(sounding.Rows(2, 19), -32768.0F);
  }
}

// The delay of a channel that is missing.

TEST(ChannelMissing, AgainKeepsItsDelayAlsoBehindMoreRowsWithoutItThanAreMatched) {
  for (const int before : {0, 8}) {
    SCOPED_TRACE(before);
    TakenUp taken(JoinedLines(StoredLines(before)));
    taken.disk.Put(kCpt, Head(true) + CptRows(before - kLag));
    TakeUpWithout(taken, 2);
    for (int i = 0; i < 250; ++i) TakenUp::Row();
    TakeUpWith(taken, 2);
    for (int i = 0; i < 20; ++i) TakenUp::Row();
    const std::string cpt = taken.File(kCpt);
    TakeUpWithout(taken, 2);
    EXPECT_EQ(taken.File(kCpt), cpt);
    EXPECT_FALSE(taken.WasTold("MENDED"));
    EXPECT_FALSE(taken.WasTold("NOTHING TELLS"));
    EXPECT_EQ(channels.ChannelDelayRows(2), kLag);
  }
}

TEST(ChannelMissing, BeforeTheFileHeldAReadingOfItIsWrittenAsItWasRead) {
  TakenUp taken(JoinedLines(StoredLines(kLag)));
  taken.disk.Put(kCpt, Head(true));
  TakeUpWithout(taken, 2);
  EXPECT_TRUE(taken.WasTold("NOTHING TELLS HOW FAR THE SENSORS OF MISSING CHANNELS SIT"));
}

constexpr const char* kUnknown =
    "NOTHING TELLS HOW FAR THE SENSORS OF MISSING CHANNELS SIT FROM THE TIP.  THEIR VALUES STAND "
    "IN "
    "THE ROWS IN WHICH THEY WERE READ, NOT MOVED TO THEIR DEPTHS: 2 (Channel 2)";

TEST(ChannelMissing, WithTheFileGoneTooIsToldAndEachRowIsWrittenAlike) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  TakeUpWithout(taken, 2);
  ASSERT_EQ(taken.boxes.texts.size(), 4U) << "asked first whether it is to be written anew";
  EXPECT_EQ(taken.boxes.texts[3], kUnknown);
  EXPECT_EQ(cone.DelayRows, 1) << "that of channel 3";
  for (int i = 0; i < 4; ++i) TakenUp::Row();
  std::string expected = Head(true);
  for (int n = 1; n <= kRows + 4 - 1; ++n) {
    expected += DepthAndSpeed(true, 20 * n, StoredSpeed(n + 1)) + StoredField(StoredValue(1, n)) +
                (n <= kRows ? StoredField(StoredValue(2, n)) : kNothing) +
                StoredField(StoredValue(3, n + 1)) + "\r\n";
  }
  EXPECT_EQ(taken.File(kCpt), expected);

  TakeUpWithout(taken, 2);
  EXPECT_EQ(taken.File(kCpt), expected) << "the rows that stand tell now how they are aligned";
  EXPECT_EQ(taken.boxes.texts.size(), 1U);
  EXPECT_FALSE(taken.WasTold("NOTHING TELLS"));

  TakeUpWith(taken, 2);
  std::string aligned = Head(true);
  for (int n = 1; n <= kRows + 4 - kLag; ++n) {
    aligned += CptRowWithout(n, 2, kRows + 1, kRows + 4);
  }
  EXPECT_EQ(taken.File(kCpt), aligned) << "formed anew as a whole, since its delay is known";
  EXPECT_TRUE(taken.WasTold("ROWS CHANGED: 13."));
  EXPECT_EQ(taken.File("/data/s (2).cpt"), expected);
}

TEST(ChannelMissing, WithoutAReadingInAnyRowHasNothingToTell) {
  for (const int rows : {0, kRows}) {
    TextLines lines = StoredHeader();
    for (int n = 1; n <= rows; ++n) {
      lines.push_back(StoredRowLine(MetresOf(20 * n, 2), StoredSpeed(n),
                                    {StoredValue(1, n), "-32768", StoredValue(3, n)}));
    }
    TakenUp taken(JoinedLines(lines));
    taken.disk.Remove(kCpt);
    TakeUpWithout(taken, 2);
    EXPECT_FALSE(taken.WasTold("NOTHING TELLS")) << rows;
  }
}

}  // namespace
}  // namespace penlog
