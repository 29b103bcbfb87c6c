#include "screens/specify_ports.h"

#include <cstdint>
#include <string>

#include "core/message.h"
#include "core/settings.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "platform/numbers.h"
#include "platform/port_driver.h"

namespace penlog {

namespace {

constexpr int kLastPort = 255;

void FillPortList(ComboBox& list) {
  list.List.clear();
  list.Beside.clear();
  list.ListIndex = -1;
  list.Text.clear();
  for (int port = 1; port <= kLastPort; ++port) {
    if (!EnumSerPorts(port)) continue;
    list.List.push_back(PlainNumber(port));
    list.Beside.push_back(ThePorts().DeviceName(port));
  }
}

std::string PortText(std::int16_t port) {
  return port > 0 ? PlainNumber(port) : "N/A";
}

int RunChoice(Form& form, ComboBox& list) {
  specify_ports.ChosenPort = 0;
  FillPortList(list);
  ShowModal(form);
  return specify_ports.ChosenPort;
}

void SavePort(Form& form, const ComboBox& list) {
  if (list.ListIndex < 0) {
    Tell("NO SERIAL PORT SELECTED");
    return;
  }
  specify_ports.ChosenPort = static_cast<int>(LeadingNumber(list.Text));
  Hide(form);
}

}  // namespace

int SpecifyTruckInterface() {
  auto& form = frmSpecifyTruckInterface;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblASCIIOutSerialPort.Caption = PortText(settings.ASCIIOutSerialPort);
  form.lblVideoOverlaySerialPort.Caption = PortText(settings.VideoOverlaySerialPort);
  return RunChoice(form, form.cmbTruckInterfaceSerialPort);
}

int SpecifyASCIIOut() {
  auto& form = frmSpecifyASCIIOut;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblTruckInterfaceSerialPort.Caption = PortText(settings.TruckInterfaceSerialPort);
  form.lblVideoOverlaySerialPort.Caption = PortText(settings.VideoOverlaySerialPort);
  return RunChoice(form, form.cmbASCIIOutSerialPort);
}

int SpecifyVideoOverlay() {
  auto& form = frmSpecifyVideoOverlay;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblTruckInterfaceSerialPort.Caption = PortText(settings.TruckInterfaceSerialPort);
  form.lblASCIIOutSerialPort.Caption = PortText(settings.ASCIIOutSerialPort);
  return RunChoice(form, form.cmbVideoOverlaySerialPort);
}

void frmSpecifyTruckInterface_cmdSavePort_Click() {
  SavePort(frmSpecifyTruckInterface, frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort);
}

void frmSpecifyTruckInterface_cmdCancel_Click() {
  Hide(frmSpecifyTruckInterface);
}

void frmSpecifyASCIIOut_cmdSavePort_Click() {
  SavePort(frmSpecifyASCIIOut, frmSpecifyASCIIOut.cmbASCIIOutSerialPort);
}

void frmSpecifyASCIIOut_cmdCancel_Click() {
  Hide(frmSpecifyASCIIOut);
}

void frmSpecifyVideoOverlay_cmdSavePort_Click() {
  SavePort(frmSpecifyVideoOverlay, frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort);
}

void frmSpecifyVideoOverlay_cmdCancel_Click() {
  Hide(frmSpecifyVideoOverlay);
}

}  // namespace penlog
