#include "display/setup_display.h"

#include <algorithm>
#include <string>

#include "core/channels.h"
#include "core/message.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_slots.h"
#include "display/setup_display_lists.h"
#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/boxes.h"
#include "platform/runtime_fault.h"
#include "screens/last_sounding_parameters.h"
#include "screens/setup_sounding.h"
#include "sounding/main_loop.h"

namespace penlog {

namespace {

constexpr const char* kNoPorePressure =
    "PP channel is not selected for recording. Even when no filter is present, PP should be "
    "recorded for troubleshooting purposes. Are you sure you don't want to record PP?";

bool Present(int channel) {
  return channels.ChannelPresent(channel) == kTrue;
}

void RunRules() {
  SelectionRule();
  LimitRule();
}

void AskForFilterPlace() {
  SetupDisplay.frmSelectPPType.Visible = true;
  SetupDisplay.cmdPrevious.Enabled = false;
  SetupDisplay.cmdClearSelection.Enabled = false;
  SetupDisplay.cmdDone.Enabled = false;
}

/// CLEAR SELECTION stays disabled until the window is opened again.
void CloseFilterQuestion() {
  SetupDisplay.frmSelectPPType.Visible = false;
  SetupDisplay.cmdPrevious.Enabled = true;
  SetupDisplay.cmdU2PPFilter.Enabled = true;
  SetupDisplay.cmdDone.Enabled = true;
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

void SetupDisplay_Load() {
  SetupDisplay.Clearing = true;
  SetupDisplay.NothingSelectedMessage = "At least one channel must be selected.";
  if (Present(3) && !Present(4) && settings.QueryForPP == 1) AskForFilterPlace();
  FillChannelLists();
  RunRules();
  SetupDisplay.Clearing = false;
}

/// The box then shows what the slots hold: with all slots taken it does not stay ticked.
void SetupDisplay_chkGraphChan_Click(int channel) {
  if (SetupDisplay.Clearing) return;
  ToggleGraphSlot(channel);
  SetupDisplay.chkGraphChan(channel).Checked = channel == 1 || SlotHolds(channel);
  RunRules();
}

void SetupDisplay_chkRecordChan_Click(int channel) {
  if (channel == 1) return;  // the first graph is always channel 1
  auto& graph = SetupDisplay.chkGraphChan(channel);
  if (SetupDisplay.chkRecordChan(channel).Checked) {
    graph.Enabled = true;
    return;
  }
  SetChecked(graph, false);
  graph.Enabled = false;
}

void SetupDisplay_cmdClearSelection_Click() {
  KeepGraphSlots([](int) { return false; });
  SetupDisplay.Clearing = true;
  for (int channel = 2; channel <= kChannels; ++channel) {
    if (Present(channel)) SetChecked(SetupDisplay.chkGraphChan(channel), false);
  }
  RunRules();
  SetupDisplay.Clearing = false;
}

void SetupDisplay_cmdU1PPFilter_Click() {
  CloseFilterQuestion();
  SetupDisplay.Filter = FilterPlace::Face;
  SelectionRule();
}

void SetupDisplay_cmdU2PPFilter_Click() {
  CloseFilterQuestion();
  SetupDisplay.Filter = FilterPlace::BehindTip;
  SelectionRule();
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
  if (!AnyChannelRecorded()) {
    Tell(SetupDisplay.NothingSelectedMessage);
    return;
  }
  if (!SetupDisplay.chkRecordChan(3).Checked &&
      MsgBox(kNoPorePressure, BoxButtons::YesNo) == BoxAnswer::No) {
    return;
  }
  Finish();
}

}  // namespace penlog
