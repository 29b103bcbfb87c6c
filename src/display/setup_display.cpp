#include "display/setup_display.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/channels.h"
#include "core/message.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/runtime_fault.h"
#include "screens/last_sounding_parameters.h"
#include "screens/setup_sounding.h"
#include "sounding/main_loop.h"

namespace penlog {

namespace {

/// Stops the click rule of the graph boxes while the program itself sets boxes.
bool clearing = false;

constexpr const char* kNoPorePressure =
    "PP channel is not selected for recording. Even when no filter is present, PP should be "
    "recorded for troubleshooting purposes. Are you sure you don't want to record PP?";

bool Present(int channel) {
  return channels.ChannelPresent(channel) == kTrue;
}

bool SlotHolds(int channel) {
  const auto& slots = display.GraphChannel;
  return std::find(slots.begin() + 2, slots.end(), channel) != slots.end();
}

int FilledSlots() {
  const auto& slots = display.GraphChannel;
  return static_cast<int>(
      std::count_if(slots.begin() + 2, slots.end(), [](auto channel) { return channel != 0; }));
}

/// The selection labels of graphs 1 to 4.
std::array<Label*, 4> SelectionLabels() {
  return {&SetupDisplay.lblGraph1Selection, &SetupDisplay.lblGraph2Selection,
          &SetupDisplay.lblGraph3Selection, &SetupDisplay.lblGraph4Selection};
}

void SelectionRule() {
  const auto labels = SelectionLabels();
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const int channel = display.GraphChannel[i + 1];
    labels[i]->Caption = channel > 0 ? channels.ChannelLabel(0, channel) : "";
  }
  display.GraphCount = static_cast<std::int16_t>(FilledSlots());
}

void LimitRule() {
  if (display.GraphCount == 4) {  // the count holds 3 at most here
    for (int channel = 2; channel <= 20; ++channel) {
      SetupDisplay.chkGraphChan(channel).Enabled = false;
    }
  } else {
    for (int channel = 2; channel <= kChannels; ++channel) {
      const bool computed = channel >= 19 && channel <= 22;
      SetupDisplay.chkGraphChan(channel).Enabled =
          Present(channel) && (computed || SetupDisplay.chkRecordChan(channel).Checked);
    }
  }
  for (std::size_t g = 2; g <= 4; ++g) {
    const int channel = display.GraphChannel[g];
    if (channel > 0) SetupDisplay.chkGraphChan(channel).Enabled = true;
  }
}

void AddComputedChannel(int channel) {
  channels.ChannelPresent(channel) = kTrue;
  SetupDisplay.chkGraphChan(channel).Enabled = true;
  SetupDisplay.chkGraphChan(channel).Checked = SlotHolds(channel);
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

void AskForFilterPlace() {
  SetupDisplay.frmSelectPPType.Visible = true;
  SetupDisplay.cmdPrevious.Enabled = false;
  SetupDisplay.cmdClearSelection.Enabled = false;
  SetupDisplay.cmdDone.Enabled = false;
}

/// CLEAR SELECTION is not enabled again; that asymmetry is required.
void CloseFilterQuestion() {
  SetupDisplay.frmSelectPPType.Visible = false;
  SetupDisplay.cmdPrevious.Enabled = true;
  SetupDisplay.cmdU2PPFilter.Enabled = true;
  SetupDisplay.cmdDone.Enabled = true;
}

/// Channels 4 and 5 are drawn within channel 3's graph.
void JoinPorePressures() {
  auto& first = SetupDisplay.chkGraphChan(3);
  auto& second = SetupDisplay.chkGraphChan(4);
  auto& third = SetupDisplay.chkGraphChan(5);
  if (settings.CombinePPPlots != 1) return;
  if (!first.Checked && !second.Checked && !third.Checked) return;
  first.Checked = true;
  second.Checked = third.Checked = false;
  second.Enabled = third.Enabled = false;
}

/// The first label of graphs 2 to 4 that shows `name` takes `other`.
void RenameSelection(const std::string& name, const std::string& other) {
  if (name.empty() || other.empty()) return;  // a channel without a file has no name to give
  const auto labels = SelectionLabels();
  const auto found = std::find_if(labels.begin() + 1, labels.end(),
                                  [&](const Label* label) { return label->Caption == name; });
  if (found != labels.end()) (*found)->Caption = other;
}

void Finish() {
  display.GraphCount = static_cast<std::int16_t>(1 + FilledSlots());
  try {
    SaveLastSoundingParameters(
        [](int channel) -> bool { return SetupDisplay.chkRecordChan(channel).Checked; });
  } catch (const RuntimeFault& fault) {
    Tell(std::string("LAST SOUNDING PARAMETERS COULD NOT BE SAVED: ") + fault.what());
  }
  Show(Main);
  Unload(SetupDisplay);
  Mainloop();
}

}  // namespace

void ToggleGraphSlot(int channel) {
  auto& slots = display.GraphChannel;
  for (auto slot = slots.begin() + 2; slot != slots.end(); ++slot) {
    if (*slot == channel) {
      std::copy(slot + 1, slots.end(), slot);
      slots.back() = 0;
      return;
    }
    if (*slot == 0) {
      *slot = static_cast<std::int16_t>(channel);
      return;
    }
  }
}

void SetupDisplay_Load() {
  clearing = true;
  if (Present(6) && Present(7)) AddComputedChannel(19);
  if (Present(1) && Present(2)) {
    for (const int channel : {20, 21, 22}) AddComputedChannel(channel);
  }
  if (Present(3) && !Present(4) && settings.QueryForPP == 1) AskForFilterPlace();
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!Present(channel)) continue;
    if (channels.ChannelComputed(channel) == 0) ListForRecording(channel);
    if (channels.ChannelGraphDefault(channel) == 1) ListForGraphs(channel);
  }
  JoinPorePressures();
  SelectionRule();
  LimitRule();
  clearing = false;
}

void SetupDisplay_chkGraphChan_Click(int channel) {
  if (clearing) return;
  ToggleGraphSlot(channel);
  SelectionRule();
  LimitRule();
}

void SetupDisplay_chkRecordChan_Click(int channel) {
  auto& graph = SetupDisplay.chkGraphChan(channel);
  if (SetupDisplay.chkRecordChan(channel).Checked) {
    graph.Enabled = true;
    return;
  }
  SetChecked(graph, false);
  graph.Enabled = false;
}

void SetupDisplay_cmdClearSelection_Click() {
  std::fill(display.GraphChannel.begin() + 2, display.GraphChannel.end(), std::int16_t{0});
  clearing = true;
  for (int channel = 2; channel <= kChannels; ++channel) {
    if (Present(channel)) SetupDisplay.chkGraphChan(channel).Checked = false;
  }
  SelectionRule();
  LimitRule();
  clearing = false;
}

void SetupDisplay_cmdU1PPFilter_Click() {
  CloseFilterQuestion();
  RenameSelection(channels.ChannelLabel(0, 3), channels.ChannelLabel(0, 4));
}

void SetupDisplay_cmdU2PPFilter_Click() {
  CloseFilterQuestion();
  RenameSelection(channels.ChannelLabel(0, 4), channels.ChannelLabel(0, 3));
}

void SetupDisplay_cmdDoNotRecordPP_Click() {
  CloseFilterQuestion();
  SetChecked(SetupDisplay.chkRecordChan(3), false);
  SetChecked(SetupDisplay.chkGraphChan(3), false);
}

void SetupDisplay_cmdPrevious_Click() {
  setup_sounding.BackFlag = -1;  // a load fills the fields from the session, not from the file
  Show(SetupSounding);
  setup_sounding.BackFlag = 0;
  Unload(SetupDisplay);
}

void SetupDisplay_cmdDone_Click() {
  if (!SetupDisplay.chkRecordChan(3).Checked &&
      MsgBox(kNoPorePressure, BoxButtons::YesNo) == BoxAnswer::No) {
    return;
  }
  Finish();
}

}  // namespace penlog
