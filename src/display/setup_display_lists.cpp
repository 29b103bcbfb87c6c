#include "display/setup_display_lists.h"

#include <array>
#include <string>

#include "core/channels.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_slots.h"
#include "forms/setup_display_form.h"

namespace penlog {

namespace {

constexpr int kFirstComputed = 19;
constexpr int kLastComputed = 22;

bool Present(int channel) {
  return channels.ChannelPresent(channel) == kTrue;
}

void AddComputedChannel(int channel) {
  channels.ChannelPresent(channel) = kTrue;
  SetupDisplay.chkGraphChan(channel).Enabled = true;
  SetupDisplay.chkGraphChan(channel).Checked = SlotHolds(channel);
}

void AddComputedChannels() {
  if (Present(6) && Present(7)) AddComputedChannel(19);
  if (!Present(1) || !Present(2)) return;
  for (const int channel : {20, 21, 22}) AddComputedChannel(channel);
}

void ListForRecording(int channel) {
  auto& box = SetupDisplay.chkRecordChan(channel);
  const int mode = channels.RecordMode(channel);
  box.Caption = channels.ChannelLabel(0, channel);
  box.Visible = true;
  box.Checked = mode == 1 || mode == 2;
  box.Enabled = mode != 2 && mode != 3;
}

void ListForGraphs(int channel) {
  auto& box = SetupDisplay.chkGraphChan(channel);
  box.Caption = channels.ChannelLabel(0, channel);
  box.Visible = true;
  if (channel == 1) {
    box.Checked = true;
    box.Enabled = false;
    return;
  }
  box.Checked = SlotHolds(channel);
  if (channels.ChannelComputed(channel) != 1 && !SetupDisplay.chkRecordChan(channel).Checked) {
    box.Checked = false;
    box.Enabled = false;
  }
}

/// Channels 4 and 5 are drawn within channel 3's graph: who chose one of them gets that graph.
void JoinPorePressures() {
  auto& first = SetupDisplay.chkGraphChan(3);
  auto& second = SetupDisplay.chkGraphChan(4);
  auto& third = SetupDisplay.chkGraphChan(5);
  if (settings.CombinePPPlots != 1 || !Present(3)) return;
  if (!first.Checked && !second.Checked && !third.Checked) return;
  first.Checked = true;
  second.Checked = third.Checked = false;
  second.Enabled = third.Enabled = false;
  for (const int channel : {4, 5}) ReplaceInGraphSlots(channel, 3);
}

/// The first label of graphs 2 to 4 that shows `name` takes `other`.
void RenameSelection(const std::string& name, const std::string& other) {
  if (name.empty() || other.empty()) return;  // a channel without a file has no name to give
  for (Label* label : {&SetupDisplay.lblGraph2Selection, &SetupDisplay.lblGraph3Selection,
                       &SetupDisplay.lblGraph4Selection}) {
    if (label->Caption != name) continue;
    label->Caption = other;
    return;
  }
}

void NameByFilter() {
  const std::string& third = channels.ChannelLabel(0, 3);
  const std::string& fourth = channels.ChannelLabel(0, 4);
  if (SetupDisplay.Filter == FilterPlace::Face) RenameSelection(third, fourth);
  if (SetupDisplay.Filter == FilterPlace::BehindTip) RenameSelection(fourth, third);
}

}  // namespace

void FillChannelLists() {
  AddComputedChannels();
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!Present(channel)) continue;
    if (channels.ChannelComputed(channel) == 0) ListForRecording(channel);
    if (channels.ChannelGraphDefault(channel) == 1) ListForGraphs(channel);
  }
  JoinPorePressures();
  KeepGraphSlots([](int channel) -> bool { return SetupDisplay.chkGraphChan(channel).Checked; });
}

void SelectionRule() {
  const std::array<Label*, 4> labels = {
      &SetupDisplay.lblGraph1Selection, &SetupDisplay.lblGraph2Selection,
      &SetupDisplay.lblGraph3Selection, &SetupDisplay.lblGraph4Selection};
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const int channel = display.GraphChannel[i + 1];
    labels[i]->Caption = channel > 0 ? channels.ChannelLabel(0, channel) : "";
  }
  NameByFilter();
  display.GraphCount = static_cast<std::int16_t>(FilledSlots());
}

void LimitRule() {
  if (display.GraphCount == 4) {  // the count holds 3 at most here
    for (int channel = 2; channel <= 20; ++channel) {
      SetupDisplay.chkGraphChan(channel).Enabled = false;
    }
  } else {
    for (int channel = 2; channel <= kChannels; ++channel) {
      const bool computed = channel >= kFirstComputed && channel <= kLastComputed;
      SetupDisplay.chkGraphChan(channel).Enabled =
          Present(channel) && (computed || SetupDisplay.chkRecordChan(channel).Checked);
    }
  }
  for (std::size_t g = 2; g <= 4; ++g) {
    const int channel = display.GraphChannel[g];
    if (channel > 0) SetupDisplay.chkGraphChan(channel).Enabled = true;
  }
}

bool AnyChannelRecorded() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (SetupDisplay.chkRecordChan(channel).Checked) return true;
    if (Present(channel) && channels.RecordMode(channel) == 2) return true;
  }
  return false;
}

}  // namespace penlog
