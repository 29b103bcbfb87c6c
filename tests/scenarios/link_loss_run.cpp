#include "scenarios/link_loss_run.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "conelink/cone_state.h"
#include "conelink/resync_state.h"
#include "core/channels.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr double kStep = 0.02;     // m between rows
constexpr double kCount = 0.005;   // m of a counted step
constexpr double kDigit = 0.0006;  // m; a depth in a file has three digits
constexpr double kLimit = 30;      // s
constexpr Micros kGlance = 20 * kMillisecond;
constexpr Micros kWordLags = 200 * kMillisecond;  // three ticks that follow the state

bool ConeIsLost() {
  return cone.ConeLinkUp != kTrue || cone.ConePortLost == kTrue;
}

bool LinksAreUp() {
  return !ConeIsLost() && cone.TruckPortLost != kTrue;
}

ScenarioSetup SetupWith(const std::string& quits) {
  ScenarioSetup setup;
  setup.settings = {{setting::kQuitsActive, quits}};
  setup.change_rig = [](RigSetup& rig) { rig.truck.rod_length = 4.0; };
  return setup;
}

std::string ColourWord(Colour colour) {
  return colour == kRed ? "red" : colour == kGreen ? "green" : colour == kGrey ? "grey" : "other";
}

/// Of a link, by the panel that is shown: one of the two.
std::string PanelWord(const std::string& link, const Frame& connected, const Frame& warning) {
  if (connected.Visible == warning.Visible) return link + (warning.Visible ? " both" : " none");
  return link + (warning.Visible ? " LOST" : " ok");
}

}  // namespace

std::string FaceNow() {
  std::string face = Main.lblState.Caption + " on " + ColourWord(Main.lblState.BackColor);
  face += Main.lblLastRow.BackColor == kRed ? ", age on red" : "";
  face += Main.lblChanValue(1).Enabled && Main.lblInclination.Enabled ? "" : ", readings old";
  face += "; " + PanelWord("port", frmWarning.frmSerialConnected, frmWarning.frmSerialWarning);
  face += ", " + PanelWord("modules", frmWarning.frmModulesConnected, frmWarning.frmModuleWarning);
  face += ", " + PanelWord("truck", frmWarning.frmEncoderConnected, frmWarning.frmEncoderWarning);
  face += frmWarning.frmSteps.Caption == "DEPTH STEPS: OK" ? "" : ", steps may be missing";
  face += cone.WarningShown == kTrue ? "; window up" : "";
  return face;
}

LinkLossRun::LinkLossRun(const std::string& quits) : Scenario(SetupWith(quits)) {
  At("lost", [this] {
    rows_at_loss = sounding.RowCount;
    temporary_ = Has(kTemporary) ? File(kTemporary) : "";
    cpt_ = Has(kCpt) ? File(kCpt) : "";
    quit_held = true;
    changed_ = Now();
    Glance();
  });
  At("back", [this] { TakeReturn(false); });
  At("back held", [this] { TakeReturn(true); });
  At("look", [this] { faces.push_back(FaceNow()); });
  At("end", [this] {
    DropCalls(this);
    stored = RowsOf(File(kTemporary), kTemporaryHeader);
    EXPECT_TRUE(File(kTemporary).starts_with(temporary_)) << "the rows before stand";
    EXPECT_TRUE(File(kCpt).starts_with(cpt_)) << "the rows before stand";
  });
}

LinkLossRun::~LinkLossRun() {
  DropCalls(this);
}

void LinkLossRun::TakeReturn(bool held) {
  back_ = Now();
  no_row_comes_ = held;
  rows_before_ = sounding.RowCount;
  reading_ = sounding.Readings(1);
}

void LinkLossRun::Glance() {
  PostCall(
      Now() + kGlance, this, [this] { Glance(); }, EventKind::RepeatingCall);
  quit_held = quit_held && rig.truck.Rts();
  was_down = was_down || cone.ConeLinkUp != kTrue;
  truck_was_away_ = truck_was_away_ || cone.TruckPortLost == kTrue;
  WatchWord();
  WatchGap();
  if (back_ < 0) return;
  if (!LinksAreUp()) {
    over_ = -1;
    rows_before_ = sounding.RowCount;
    return;
  }
  const bool well = sounding.Readings(1) != reading_ && sounding.ReadingsFresh == kTrue;
  if (over_ < 0 && well && (no_row_comes_ || sounding.RowCount > rows_before_)) over_ = Now();
}

/// The word of state says at each moment whether the cone is there and gives readings.
void LinkLossRun::WatchWord() {
  const bool lost = ConeIsLost() || resync.UnderWay == kTrue;
  if (lost != lost_before_) changed_ = Now();
  lost_before_ = lost;
  if (Now() - changed_ < kWordLags || Main.lblState.Caption == "STOPPED") return;
  const std::string& word = Main.lblState.Caption;
  EXPECT_EQ(word == "LINK LOST" || word == "LINKS LOST", lost_before_) << word;
}

void LinkLossRun::WatchGap() {
  if (was_down && rows_when_down_ < 0) rows_when_down_ = sounding.RowCount;
  if (rows_when_down_ < 0 || counted_at_gap_ >= 0) return;
  if (sounding.RowCount <= rows_when_down_) return;
  EXPECT_EQ(sounding.RowCount, rows_when_down_ + 1) << "one row is taken for the gap";
  counted_at_gap_ = static_cast<double>(sounding.CurrentDepth);
  rods_at_gap_ = rig.truck.Depth();
}

void LinkLossRun::ExpectRows(bool gap_row, int missing, double gap, double first) {
  const Texts rows = RowsOf(File(kCpt), kCptHeader);
  missing_ = 0;
  double due = first;
  for (std::size_t row = 0; row < rows.size(); ++row, due += kStep) {
    const double depth = LeadingNumber(rows[row].substr(0, 7));
    if (!gap_row || static_cast<std::int32_t>(row) != rows_when_down_) {
      EXPECT_NEAR(depth, due, kDigit) << "on the grid: " << rows[row];
      continue;
    }
    missing_ = static_cast<int>(std::floor((depth - due + kDigit) / kStep));
    EXPECT_GE(depth, due - kDigit) << "the row of the gap was due";
    EXPECT_LE(depth, counted_at_gap_ + kDigit) << "where the rods were";
    EXPECT_GE(depth, counted_at_gap_ - kCount - kDigit) << "where the rods were";
    if (!truck_was_away_) {
      EXPECT_NEAR(depth, rods_at_gap_, kCount + kDigit) << "and the truth";
    }
    if (gap > 0) {
      EXPECT_NEAR(depth, gap, kDigit) << "of a known place";
    }
    due += missing_ * kStep;
  }
  if (gap_row) {
    EXPECT_GE(rows_when_down_, 0) << "the loss was noticed";
    EXPECT_GT(static_cast<std::int32_t>(rows.size()), rows_when_down_ + 1) << "rows go on";
  }
  EXPECT_EQ(missing_, missing);
}

void LinkLossRun::Report(const std::string& name) const {
  EXPECT_GE(over_, back_) << "not over";
  const double seconds = static_cast<double>(over_ - back_) / 1e6;
  EXPECT_LT(seconds, kLimit);
  std::cout << "| " << name << " | " << Format(seconds, "#0.0") << " s | " << missing_ << " |\n";
}

}  // namespace penlog
