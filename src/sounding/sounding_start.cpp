#include "sounding/sounding_start.h"

#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/graph_data.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/runtime_fault.h"
#include "sounding/depth_count.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

void ShowRunning(bool running) {
  Main.cmdResetQuits.Visible = running;
  Main.cmdExit.Enabled = !running;
  Main.cmdStart.Caption = running ? "STOP" : "START";
  Main.cmdStart.AlwaysUsable = running;  // a box must not keep the operator from stopping
  Main.cmdTakeBaseline.Visible = !running;
  Main.cmdTakeBaseline.Enabled = !running;
  Main.lblBigDepth.Visible = running;
  Main.Shape1.Visible = running;
  // The seismic buttons follow channel 8 here once the seismic test stands.
}

void ZeroDepth() {
  sounding.CurrentDepth = session.StartDepth;
  sounding.DepthRest = 0;
  sounding.Rows(0, 0) = session.StartDepth;
  sounding.DepthCounts = 0;
  sounding.NextRecordCount = settings.DepthStepCounts;
  sounding.NextPictureCount = settings.PictureStepCounts;
  sounding.PictureCount = 0;
  ForgetMissingSteps();
  Main.lblNumberOfPictures.Caption = "0";
}

void ShowStartDepth() {
  const DepthTexts texts =
      MakeStartTexts(session.StartDepth, settings.DepthUnits, settings.DepthFormat);
  Main.lblDepth.Caption = texts.depth;
  Main.lblBigDepth.Caption = texts.big;
}

/// The trigger line: an encoder on a port of its own has it there.
void LowerTrigger() {
  const bool own_port = settings.DepthCounterType == 0 && !TruckSharesConePort();
  (own_port ? Main.EncoderComm : Main.ConeComm).SetDTREnable(false);
}

void Refuse(const RuntimeFault& fault) {
  ShowRunning(false);
  sounding.ConsoleMode = 1;
  PostBox(std::string("THE SOUNDING COULD NOT BE STARTED, ITS FILES CANNOT BE WRITTEN.  ") +
          fault.what());
}

}  // namespace

void Main_cmdTakeBaseline_Click() {
  sounding.BaselinePending = kTrue;
  TakeAskedBaseline();
}

void TakeAskedBaseline() {
  if (sounding.BaselinePending != kTrue) return;
  if (sounding.ReadingsTaken < session.ReadingsAveraged) return;
  sounding.BaselinePending = 0;
  Main.cmdStart.Enabled = true;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    if (channels.ChannelKeepZero(channel) == 1 && channels.ChannelPresent(channel) == kTrue) {
      channels.Baselines(channel) = sounding.Readings(channel);
    }
  }
}

void StartRecording() {
  ShowRunning(true);
  ZeroDepth();
  ShowStartDepth();
  StartDepthAxis();
  LowerTrigger();
  try {
    CreateSoundingFiles();
  } catch (const RuntimeFault& fault) {
    Refuse(fault);
    return;
  }
  // The sounding's opening screen goes to the overlay here once it stands.
  sounding.ConsoleMode = 2;
  sounding.RecordPending = 0;
  sounding.SecondsCounter = 0;
}

}  // namespace penlog
