// A whole sounding with the encoder, byte by byte. When a change of these files is meant, run this
// program with PENLOG_BLESS=1 in its environment and read the difference before you commit it.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/numbers.h"
#include "scenarios/golden.h"
#include "scenarios/log_rows.h"
#include "scenarios/scenario.h"

namespace penlog {
namespace {

struct EncoderSounding : Scenario {
  EncoderSounding() : clock(disk, "TemporaryData.txt") {
    // The script asks for it at the stop question.
    rig.log.on_added = [this](const RigRecord& record) {
      if (record.kind == RigLogKind::Control && record.text == "status") {
        at_stop = DataFile("TemporaryData.txt");
      }
    };
    PlayFile("encoder_sounding");
    cpt = File("/soundings/QUAY(007).cpt");
  }
  LogRows Rows() const { return {rig.log, clock.Times(), DcsShape(0.02), Baseline(0)}; }
  /// V, as the header tells it for the column.
  double Baseline(int column) const {
    const auto at = static_cast<std::size_t>(13 + 20 * column);
    return LeadingNumber(LinesOf(cpt).at(18).substr(at, 20));
  }

  RowClock clock;
  std::string at_stop;
  std::string cpt;
};

TEST(EncoderSounding, LeavesTheseFilesByteByByte) {
  EncoderSounding sounding;
  ExpectGolden("encoder_sounding/QUAY(007).cpt", sounding.cpt);
  ExpectGolden("encoder_sounding/TemporaryData at the stop.txt", sounding.at_stop);
  ExpectGolden("encoder_sounding/TemporaryData at the end.txt",
               sounding.DataFile("TemporaryData.txt"));
  ExpectGolden("encoder_sounding/Last Sounding Parameters.txt",
               sounding.DataFile("Last Sounding Parameters.txt"));
}

TEST(EncoderSounding, RowsAreTheMeanOfTheLastFourRepliesShiftedToTheirDepth) {
  EncoderSounding sounding;
  const LogRows rows = sounding.Rows();
  ASSERT_EQ(rows.Count(), 20);
  rows.ExpectCptRows(sounding.cpt, false);
}

TEST(EncoderSounding, TheRecoveryCopyHoldsEachRowAsItWasRead) {
  EncoderSounding sounding;
  ASSERT_EQ(sounding.Rows().Count(), 20);
  sounding.Rows().ExpectTemporaryRows(sounding.at_stop);
}

TEST(EncoderSounding, FlushRows19And20HoldNoChannel) {
  const auto lines = LinesOf(EncoderSounding().cpt);
  ASSERT_EQ(lines.size(), 43U);
  EXPECT_EQ(lines[22 + 18].size(), 113U) << "row 18 holds its five channels";
  EXPECT_EQ(lines[22 + 19].size(), 13U);
  EXPECT_EQ(lines[22 + 20].size(), 13U);
}

TEST(EncoderSounding, BaselinesAreTheOutputsOfTheUnloadedCone) {
  EncoderSounding sounding;
  // Zeros of the sensors and their drifts; the tip's drift is taken off the sleeve as load.
  EXPECT_NEAR(sounding.Baseline(0), 0.2531, 1.1e-5);
  EXPECT_NEAR(sounding.Baseline(1), 0.2988 - 0.0031 * 0.15 / 4.5, 1.1e-5);
  EXPECT_NEAR(sounding.Baseline(2), 0.5007, 1.1e-5);
}

}  // namespace
}  // namespace penlog
