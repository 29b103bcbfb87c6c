#include "sounding/quits.h"

#include <string>

#include "core/channels.h"
#include "core/session.h"
#include "display/enlarged_graph.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "sounding/reached.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

constexpr int kSettleCalls = 10;
constexpr float kShallow = 5.0f;  ///< m; the shallow limits hold above it
constexpr int kInclination = 19;
constexpr const char* kRate = " rate,";

/// What is over its limit, as the warning shows it.
struct QuitTexts {
  std::string first;   ///< channels, and the rate of channel 1
  std::string second;  ///< inclination and its rate
  bool Empty() const { return first.empty() && second.empty(); }
};

bool IsTested(int channel) {
  return channel != kInclination && channel != 20 && channels.ChannelPresent(channel) == kTrue &&
         channels.ChannelComputed(channel) == 0;
}

bool IsOverLimit(int channel) {
  const float reading = sounding.Readings(channel);
  const float shallow = channels.QuitLimitShallow(channel);
  const float deep = channels.QuitLimitDeep(channel);
  const bool is_shallow = sounding.CurrentDepth - session.StartDepth < kShallow;
  if (shallow != 0.0f && is_shallow && reading > shallow) return true;
  return deep != 0.0f && reading > deep;
}

/// By the absolute depth, and with no exception for a limit of 0.
bool IsInclinationOver() {
  const float limit = sounding.CurrentDepth < kShallow ? channels.QuitLimitShallow(kInclination)
                                                       : channels.QuitLimitDeep(kInclination);
  return sounding.Readings(kInclination) > limit;
}

bool IsRateOver(int channel) {
  const float limit = channels.QuitRateLimit(channel);
  const float before = sounding.Rows(sounding.RowCount, channel);
  return limit != 0.0f && IsReached(before) && sounding.Readings(channel) - before > limit;
}

std::string TestChannels() {
  std::string text;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!IsTested(channel)) continue;
    const bool over = IsOverLimit(channel);
    sounding.QuitFlag(channel) = over ? kTrue : kFalse;
    if (over) {
      text += channels.ChannelLabel(1, channel);
    } else {
      Main.lblChanValue(channel).ForeColor = kWhite;
    }
  }
  return text;
}

QuitTexts TestAll() {
  QuitTexts texts;
  const std::string& inclination = channels.ChannelLabel(1, kInclination);
  texts.first = TestChannels();
  if (IsInclinationOver()) texts.second += inclination + ",";
  if (IsRateOver(1)) texts.first += channels.ChannelLabel(1, 1) + kRate;
  if (IsRateOver(kInclination)) texts.second += inclination + kRate;
  return texts;
}

void HideWarning() {
  Main.frmQuitWarning.Visible = false;
  Main.lblQuitFor1.Caption.clear();
  Main.lblQuitFor2.Caption.clear();
  // The restart test's copy of the warning is cleared here once its screen stands.
}

void ShowWarning(const QuitTexts& texts) {
  Main.lblQuitFor1.Caption = texts.first;
  // The enlarged graph lies above it; the charts take over the range that was set there.
  if (!Main.frmQuitWarning.Visible && EnlargedGraph.Visible) EnlargedGraph_Command1_Click();
  Main.frmQuitWarning.Visible = true;
  if (sounding.QuitState == 3) Main.lblOverride.Visible = true;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (sounding.QuitFlag(channel) == kTrue) Main.lblChanValue(channel).ForeColor = kRed;
  }
}

void Scale(float& limit, int channel, float offset) {
  if (limit != 0.0f) limit = channels.ChannelSensitivity(channel) * limit + offset;
}

void ScaleChannel(int channel) {
  const float baseline = channels.Baselines(channel);
  Scale(channels.QuitLimitShallow(channel), channel, baseline);
  Scale(channels.QuitLimitDeep(channel), channel, baseline);
  Scale(channels.QuitRateLimit(channel), channel, 0.0f);
}

}  // namespace

void ScaleQuitLimits() {
  for (auto* limits :
       {&channels.QuitLimitShallow, &channels.QuitLimitDeep, &channels.QuitRateLimit}) {
    (*limits)(kInclination) = (*limits)(6);
    (*limits)(kInclination) *= channels.ChannelFullScale(kInclination);
  }
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == kInclination || channel == 20) continue;
    if (channels.ChannelPresent(channel) == kTrue) ScaleChannel(channel);
  }
}

void CheckQuits() {
  if (sounding.QuitSettleCount < kSettleCalls) {
    ++sounding.QuitSettleCount;
    return;
  }
  if (sounding.QuitState == 1) return;
  const QuitTexts texts = TestAll();
  Main.lblQuitFor2.Caption = texts.second;
  if (texts.Empty()) {
    HideWarning();
    return;
  }
  if (sounding.QuitState == 0) sounding.QuitState = 1;
  ShowWarning(texts);
  RestoreQuitOutput();
}

void Main_cmdResetQuits_Press() {
  if (sounding.QuitState != 1) return;
  Main.lblOverride.Visible = true;
  Main.shpOverride.Fill = FillStyle::Solid;
  TruckPort().SetRTSEnable(false);
  sounding.QuitState = 3;
  for (int channel = 1; channel <= 20; ++channel) sounding.QuitFlag(channel) = kFalse;
}

void Main_cmdResetQuits_Release() {
  // A quit that latched while the button was held in vain stays latched: its RTS is still true.
  if (sounding.QuitState == 3) sounding.QuitState = 0;
  Main.lblOverride.Visible = false;
  Main.shpOverride.Fill = FillStyle::Hollow;
}

}  // namespace penlog
