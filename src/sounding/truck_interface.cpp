#include "sounding/truck_interface.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/resume_waits.h"
#include "core/settings.h"
#include "display/depth_word.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "sounding/depth_count.h"
#include "sounding/held_rows.h"
#include "sounding/missing_steps.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

/// Error events of a port, and for the shared port all that is no line or input event.
constexpr int kFirstErrorEvent = 1000;
constexpr int kFirstConeErrorEvent = 100;

void SetLamp(Shape& lamp, bool solid) {
  lamp.Fill = solid ? FillStyle::Solid : FillStyle::Hollow;
}

// The restart test shows the same lamps; they are repeated there once its screen stands.

void SetCountLine(std::int16_t line) {
  sounding.CountLine = line;
  SetLamp(Main.shpDepth, line == 0);
}

std::int16_t LineOf(bool held) {
  return held ? 0 : 1;
}

bool IsProximity() {
  return settings.DepthCounterType == 1;
}

/// On a port of its own the encoder's setting is tested against -1, which it never takes.
bool ReadsPressureAtStart() {
  if (!TruckSharesConePort() && !IsProximity()) return settings.PressureSwitchPresent == -1;
  return settings.PressureSwitchPresent == 1;
}

void ReadPhases(const SerialPort& port) {
  const bool swapped = settings.EncoderDirection == 1;
  sounding.PhaseUp = LineOf(swapped ? port.CTSHolding() : port.CDHolding());
  sounding.PhaseDown = LineOf(swapped ? port.CDHolding() : port.CTSHolding());
}

/// A mark of the camera. Short file work in a handler: the mark must survive a crash. Before the
/// sounding begins there is no file that it belongs to.
void MarkPicture() {
  if (sounding.DepthCounts < static_cast<float>(sounding.NextPictureCount)) return;
  if (settings.LumenProbePresent <= 0) return;
  if (IsBegun(kTemporaryFile)) {
    const auto seconds = static_cast<float>(SecondsSinceMidnight(TheClock().Wall()));
    AppendOrHold(kTimFile, PictureMarkLine(sounding.CurrentDepth, seconds));
  }
  ++sounding.PictureCount;
  Main.lblNumberOfPictures.Caption = PlainNumber(sounding.PictureCount);
  sounding.NextPictureCount += settings.PictureStepCounts;
}

/// The rest of each rounding is carried to the next step: without it 100 m in steps of 5 mm would
/// end 15 mm too high.
void GrowDepth() {
  const double depth = static_cast<double>(sounding.CurrentDepth) + sounding.DepthRest +
                       static_cast<double>(settings.DepthResolution);
  sounding.CurrentDepth = static_cast<float>(depth);
  sounding.DepthRest = depth - static_cast<double>(sounding.CurrentDepth);
}

/// One step down that no rebound swallows; returns whether a row is due with it.
bool CountStep() {
  GrowDepth();
  sounding.DepthCounts += 1.0f;
  const bool due = sounding.DepthCounts >= static_cast<float>(sounding.NextRecordCount);
  if (due) sounding.NextRecordCount += settings.DepthStepCounts;
  MarkPicture();
  return due;
}

bool StepDown() {
  if (sounding.Rebound > 0.0f) {
    sounding.Rebound = DrainRebound(sounding.Rebound, settings.DepthResolution);
    return false;
  }
  return CountStep();
}

bool Move(DepthStepKind step) {
  if (step == DepthStepKind::Down) return StepDown();
  if (step == DepthStepKind::Up) sounding.Rebound += settings.DepthResolution;
  return false;
}

bool TakeProximityEvent(const SerialPort& port, int comm_event, bool takes_pulses) {
  if (comm_event == kCommCts && sounding.AutoMode == 1 && settings.PressureSwitchPresent == 1) {
    SetPressureLine(LineOf(port.CTSHolding()));
  }
  if (comm_event == kCommDsr && sounding.AutoMode == 1) SetClampLine(LineOf(port.DSRHolding()));
  if (comm_event != kCommCd || !takes_pulses) return false;
  SetCountLine(LineOf(port.CDHolding()));
  const DepthStepKind step =
      DecodePulse(sounding.CountLine, sounding.ClampLine, sounding.PressureLine);
  NoteDepthStep(step);
  return Move(step);
}

void ShowStep(DepthStepKind step) {
  NoteDepthStep(step);
  SetLamp(Main.shpDepth, step != DepthStepKind::None);
  if (step == DepthStepKind::Down) Main.shpDepth.FillColor = kGreen;
  if (step == DepthStepKind::Up) Main.shpDepth.FillColor = kRed;
}

bool TakeEncoderEvent(const SerialPort& port, int comm_event) {
  if (comm_event == kCommDsr) {
    // In manual mode a change of the line opens the clamp, until the operator sets it again.
    SetClampLine(sounding.AutoMode == 1 ? LineOf(port.DSRHolding()) : std::int16_t{1});
  }
  const PhaseKind kind = PhaseOf(comm_event, settings.EncoderDirection);
  const bool held = comm_event == kCommCd ? port.CDHolding() : port.CTSHolding();
  const auto [phases, step] = DecodeEncoder({sounding.PhaseDown, sounding.PhaseUp}, kind, held);
  sounding.PhaseDown = phases.down;
  sounding.PhaseUp = phases.up;
  ShowStep(step);
  return sounding.ClampLine == 0 && Move(step);
}

void ShowSpeed(double interval) {
  if (interval > 0) sounding.RowSpeed(sounding.RowCount) = PushSpeed(settings.DepthStep, interval);
  const float speed = sounding.RowSpeed(sounding.RowCount);
  Main.lblSpeedValue.Caption = Format(speed, "##0.00") + " cm/s";
  if (speed > kFastestPush) sounding.RowSpeed(sounding.RowCount) = 0.0f;
}

/// A row is due: the next pass of `Mainloop` takes it.
void RecordDue() {
  const double seconds = sounding.ElapsedMs / 1000.0;
  const double interval = seconds - sounding.LastStepSeconds;
  sounding.LastStepSeconds = seconds;
  // A dissipation or seismic test on screen is interrupted here once they stand.
  if (Main.frmLocalWarning.Visible) ++sounding.WarningCounter;
  // The dissipation clock is restarted here once it stands.
  if (EnlargedGraph.Visible) Unload(EnlargedGraph);
  ShowSpeed(interval);
  sounding.TicksSinceStep = 0;
  sounding.RecordPending = -1;
}

void TakeEvent(const SerialPort& port, int comm_event, bool takes_pulses) {
  const bool due = IsProximity() ? TakeProximityEvent(port, comm_event, takes_pulses)
                                 : TakeEncoderEvent(port, comm_event);
  if (due && sounding.ConsoleMode == 2) RecordDue();
  ShowDepthLabels();
}

struct ShownDepth {
  float depth = 0;
  float rebound = 0;
  int units = 0;
  int format = 0;
  bool operator==(const ShownDepth&) const = default;
};

}  // namespace

bool TruckSharesConePort() {
  return settings.TruckInterfaceSerialPort == settings.ConeSerialPort;
}

SerialPort& TruckPort() {
  return TruckSharesConePort() ? Main.ConeComm : Main.EncoderComm;
}

void Main_EncoderComm_OnComm(int comm_event) {
  if (comm_event < kFirstErrorEvent) TakeEvent(Main.EncoderComm, comm_event, true);
}

void Main_ConeComm_OnComm(int comm_event) {
  if (!TruckSharesConePort() || comm_event >= kFirstConeErrorEvent) return;
  // A scan for the cone also opens ports of other devices; their lines count no depth.
  if (Main.ConeComm.CommPort() != settings.TruckInterfaceSerialPort) return;
  // A cone that came up under the number of a lost truck interface has lines of its own.
  if (cone.TruckPortLost == kTrue) return;
  TakeEvent(Main.ConeComm, comm_event, sounding.TicksSinceStep > 1);
}

void ReadTruckLines() {
  SerialPort& port = TruckPort();
  if (sounding.AutoMode == 1) {
    SetPressureLine(ReadsPressureAtStart() ? LineOf(port.CTSHolding()) : std::int16_t{0});
    SetClampLine(LineOf(port.DSRHolding()));
  }
  SetCountLine(LineOf(port.CDHolding()));
  if (!IsProximity()) ReadPhases(port);
  port.SetDTREnable(false);
}

void RestoreQuitOutput() {
  if (sounding.QuitState == 1) TruckPort().SetRTSEnable(true);
}

void OpenTruckPort(const char* settings_text) {
  if (!TruckSharesConePort()) {
    if (*settings_text != '\0') Main.EncoderComm.SetSettings(settings_text);
    Main.EncoderComm.SetCommPort(settings.TruckInterfaceSerialPort);
    Main.EncoderComm.Open();
  }
  RestoreQuitOutput();
  ReadTruckLines();
}

void NoteStepsMayBeMissing() {
  if (!IsRecording() && !ResumeWaits()) return;
  sounding.StepsMayBeMissing = -1;
  sounding.StepsMayBeMissingDepth = sounding.CurrentDepth;
  if (++missing_steps.TimesAway == 1) missing_steps.FirstDepth = sounding.CurrentDepth;
}

void ForgetMissingSteps() {
  sounding.StepsMayBeMissing = 0;
  sounding.StepsMayBeMissingDepth = 0;
  const std::int64_t so_far = missing_steps.EdgesLostAtStart + missing_steps.EdgesLost;
  missing_steps = MissingStepsState{};
  missing_steps.EdgesLostAtStart = so_far;
}

void SetPressureLine(std::int16_t line) {
  sounding.PressureLine = line;
  SetLamp(Main.shpPressure, line == 0);
}

void SetClampLine(std::int16_t line) {
  sounding.ClampLine = line;
  SetLamp(Main.shpClamp, line == 0);
}

void ShowDepthLabels() {
  // Most edges move nothing: the texts are made only when a number has changed.
  static ShownDepth made_for;
  static DepthTexts texts = MakeDepthTexts(0, 0, 0, 0);
  const ShownDepth now{sounding.CurrentDepth, sounding.Rebound, settings.DepthUnits,
                       settings.DepthFormat};
  if (now != made_for) {
    made_for = now;
    texts = MakeDepthTexts(now.depth, now.rebound, now.units, now.format);
  }
  Main.lblDepth.Caption = texts.depth;
  Main.lblBigDepth.Caption = texts.big;
  Main.lblRebound.Caption = texts.rebound;
}

}  // namespace penlog
