#include "screens/specify_ports.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/message.h"
#include "core/settings.h"
#include "fieldio/ascii_out.h"
#include "fieldio/video_overlay.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "platform/numbers.h"
#include "platform/port_driver.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"

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

int ChosenIn(const ComboBox& list) {
  return static_cast<int>(LeadingNumber(list.Text));
}

/// True when the choice was taken and the screen is left.
bool SavePort(Form& form, const ComboBox& list) {
  if (list.ListIndex < 0) {
    Tell("NO SERIAL PORT SELECTED");
    return false;
  }
  specify_ports.ChosenPort = ChosenIn(list);
  Hide(form);
  return true;
}

/// Why the port does not open; empty when it stands open.
std::string WhyNotOpened(SerialPort& port, int number, std::string_view port_settings) {
  try {
    port.Close();
    port.SetSettings(port_settings);
    port.SetCommPort(number);
    port.Open();
    return {};
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
}

void TellRefused(int number, const std::string& why) {
  Tell("PORT " + PlainNumber(number) + " CAN'T BE OPENED.  " + why);
}

// The lines of the truck interface.

void ShowLine(Shape& lamp, bool held) {
  lamp.Fill = held ? FillStyle::Solid : FillStyle::Hollow;
}

/// Lamps of a port that is not open are dark.
void ShowLines() {
  auto& form = frmSpecifyTruckInterface;
  const SerialPort& port = form.EncoderComm;
  const bool open = !port.Gone();
  ShowLine(form.shpDCD, open && port.CDHolding());
  ShowLine(form.shpCTS, open && port.CTSHolding());
  ShowLine(form.shpDSR, open && port.DSRHolding());
  ShowLine(form.shpDTR, open && port.DTREnable());
}

void CloseLines() {
  frmSpecifyTruckInterface.EncoderComm.Close();
  ShowLines();
}

// The tests of the outputs.

struct PortTest {
  Form& form;
  ComboBox& list;
  Button& button;
  SerialPort& port;
  std::string_view settings;
};

PortTest ASCIITest() {
  auto& form = frmSpecifyASCIIOut;
  return {form, form.cmbASCIIOutSerialPort, form.cmdTestPort, form.ASCIIOutComm, kASCIIOutSettings};
}

PortTest OverlayTest() {
  auto& form = frmSpecifyVideoOverlay;
  return {form, form.cmbVideoOverlaySerialPort, form.cmdTestPort, form.VideoOverlayComm,
          kOverlaySettings};
}

void OfferTest(const PortTest& test) {
  test.button.Enabled = test.list.ListIndex >= 0 && specify_ports.TestUnderWay != kTrue;
}

/// The last pause lets the bytes out before the port is closed.
void SendAndWait(const PortTest& test, std::vector<PacedText> texts) {
  texts.push_back({"", 1});
  PacedOutput output("port test");
  output.Send(test.port, std::move(texts));
  while (output.Busy() && test.form.Visible) WaitYield("the test of a port");
}

void RunTest(const PortTest& test, std::vector<PacedText> texts) {
  if (specify_ports.TestUnderWay == kTrue) return;
  specify_ports.TestUnderWay = kTrue;
  OfferTest(test);
  const int number = ChosenIn(test.list);
  const std::string refused = WhyNotOpened(test.port, number, test.settings);
  if (refused.empty()) SendAndWait(test, std::move(texts));
  test.port.Close();
  specify_ports.TestUnderWay = kFalse;
  OfferTest(test);
  if (!refused.empty()) TellRefused(number, refused);
}

}  // namespace

int SpecifyTruckInterface() {
  auto& form = frmSpecifyTruckInterface;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblASCIIOutSerialPort.Caption = PortText(settings.ASCIIOutSerialPort);
  form.lblVideoOverlaySerialPort.Caption = PortText(settings.VideoOverlaySerialPort);
  CloseLines();
  return RunChoice(form, form.cmbTruckInterfaceSerialPort);
}

int SpecifyASCIIOut() {
  auto& form = frmSpecifyASCIIOut;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblTruckInterfaceSerialPort.Caption = PortText(settings.TruckInterfaceSerialPort);
  form.lblVideoOverlaySerialPort.Caption = PortText(settings.VideoOverlaySerialPort);
  form.cmdTestPort.Enabled = false;
  return RunChoice(form, form.cmbASCIIOutSerialPort);
}

int SpecifyVideoOverlay() {
  auto& form = frmSpecifyVideoOverlay;
  form.lblConeSerialPort.Caption = PortText(settings.ConeSerialPort);
  form.lblTruckInterfaceSerialPort.Caption = PortText(settings.TruckInterfaceSerialPort);
  form.lblASCIIOutSerialPort.Caption = PortText(settings.ASCIIOutSerialPort);
  form.cmdTestPort.Enabled = false;
  return RunChoice(form, form.cmbVideoOverlaySerialPort);
}

void frmSpecifyTruckInterface_cmbTruckInterfaceSerialPort_Click() {
  auto& form = frmSpecifyTruckInterface;
  ComboBox& list = form.cmbTruckInterfaceSerialPort;
  const int number = ChosenIn(list);
  list.Enabled = false;  // a network port may take its time to open
  const std::string refused = WhyNotOpened(form.EncoderComm, number, kTruckSettings);
  list.Enabled = true;
  if (!form.Visible) form.EncoderComm.Close();
  ShowLines();
  if (!refused.empty()) TellRefused(number, refused);
}

void frmSpecifyTruckInterface_EncoderComm_OnComm(int) {
  ShowLines();
}

void frmSpecifyTruckInterface_cmdSavePort_Click() {
  auto& form = frmSpecifyTruckInterface;
  if (SavePort(form, form.cmbTruckInterfaceSerialPort)) CloseLines();
}

void frmSpecifyTruckInterface_cmdCancel_Click() {
  Hide(frmSpecifyTruckInterface);
  CloseLines();
}

void frmSpecifyASCIIOut_cmbASCIIOutSerialPort_Click() {
  OfferTest(ASCIITest());
}

void frmSpecifyASCIIOut_cmdTestPort_Click() {
  RunTest(ASCIITest(), {{ASCIIOutTestLine()}});
}

void frmSpecifyASCIIOut_cmdSavePort_Click() {
  SavePort(frmSpecifyASCIIOut, frmSpecifyASCIIOut.cmbASCIIOutSerialPort);
}

void frmSpecifyASCIIOut_cmdCancel_Click() {
  Hide(frmSpecifyASCIIOut);
}

void frmSpecifyVideoOverlay_cmbVideoOverlaySerialPort_Click() {
  OfferTest(OverlayTest());
}

void frmSpecifyVideoOverlay_cmdTestPort_Click() {
  RunTest(OverlayTest(), OverlayScreen(TextsOfTheSounding()));
}

void frmSpecifyVideoOverlay_cmdSavePort_Click() {
  SavePort(frmSpecifyVideoOverlay, frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort);
}

void frmSpecifyVideoOverlay_cmdCancel_Click() {
  Hide(frmSpecifyVideoOverlay);
}

}  // namespace penlog
