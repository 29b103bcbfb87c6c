#include "sounding/auto_manual.h"

#include "core/settings.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

void SetMode(bool is_auto) {
  sounding.AutoMode = is_auto ? 1 : 0;
  Main.lblAutoOrManual.Caption = is_auto ? "Auto" : "Manual";
  Main.cmdAuto.Enabled = !is_auto;
  Main.cmdManual.Enabled = is_auto;
  Main.cmdToggleClamp.Enabled = !is_auto;
}

void TakeManualClamp() {
  SetClampLine(sounding.ManualClampState == 1 ? 0 : 1);
}

}  // namespace

void SetAutoMode() {
  SetMode(true);
}

void Main_cmdAuto_Click() {
  SetMode(true);
  const SerialPort& port = TruckPort();
  if (settings.DepthCounterType == 1 && settings.PressureSwitchPresent == 1) {
    SetPressureLine(port.CTSHolding() ? 0 : 1);
  }
  SetClampLine(port.DSRHolding() ? 0 : 1);
}

void Main_cmdManual_Click() {
  SetMode(false);
  if (settings.DepthCounterType == 1) SetPressureLine(0);
  TakeManualClamp();
}

void Main_cmdToggleClamp_Click() {
  sounding.ManualClampState = sounding.ManualClampState == 1 ? 0 : 1;
  TakeManualClamp();
}

}  // namespace penlog
