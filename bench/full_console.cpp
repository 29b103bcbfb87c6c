#include "bench/full_console.h"

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/first_run_data.h"
#include "core/reset_state.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/soil_tables.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "sounding/main_loop.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

constexpr int kSoilType = 21;

void SetUpChannel(int channel) {
  const std::string number = std::to_string(channel);
  channels.ChannelPresent(channel) = kTrue;
  channels.ChannelComputed(channel) = channel == kSoilType ? 1 : 0;
  const int field = channel < kSoilType ? channel : channel - 1;
  channels.ReplyField(channel) = static_cast<std::int16_t>(field);
  channels.RecordMode(channel) = 1;
  channels.ChannelSensitivity(channel) = 4.5f;
  channels.ChannelFullScale(channel) = 1000.0f;
  channels.ChannelGain(channel) = 1000.0f / 4.5f;
  channels.Baselines(channel) = 0.25f;
  channels.ChannelUnits(channel) = 1;
  channels.UnitFactor(1, channel) = 0.001f;
  channels.UnitFormat(1, channel) = "##0.000";
  channels.UnitLabel(1, channel) = "MPa";
  channels.ChannelLabel(0, channel) = "C" + number;
  channels.ChannelLabel(1, channel) = "Channel " + number;
}

void SetUpChannels() {
  for (int channel = 1; channel <= kChannels; ++channel) SetUpChannel(channel);
  channels.SubtractChannel(2) = 1;
  channels.SubtractFactor(2) = 0.001f;
  // 4 to 5 MPa on the tip: a soil of the chart.
  channels.ChannelFullScale(1) = 10'000.0f;
  channels.ChannelGain(1) = 10'000.0f / 4.5f;
  channels.ChannelDelayRows(2) = 5;
  cone.DelayRows = 5;
  cone.TemperatureCoeffA = 1000.0f;
  cone.TemperatureCoeffB = -0.4f;
  cone.ConeLinkUp = kTrue;
  display.GraphChannel[1] = kSoilType;
}

void SetUpSoil() {
  for (const FirstRunFile& file : FirstRunFiles()) {
    if (file.name != "intubc.asc") continue;
    ValueReader reader(file.name, file.content);
    LoadSoilTables(reader);
  }
}

void SetUpSettings() {
  settings.ConeSerialPort = FullConsole::kConePort;
  settings.TruckInterfaceSerialPort = FullConsole::kTruckPort;
  settings.DepthResolution = 0.002f;
  settings.DepthStep = 0.02f;
  settings.DepthStepCounts = 10;
  settings.PictureStepCounts = 1;
  settings.DepthSignificantDigits = 3;
  session.ReadingsAveraged = 4;
}

}  // namespace

FullConsole::FullConsole(const std::string& folder) {
  ResetYield();
  UseClock(&clock);
  UseDisk(&disk);
  UsePorts(&ports);
  UseHost(&host);
  ResetBoxes();
  ResetState();
  SetUpSettings();
  SetUpChannels();
  SetUpSoil();
  SetUpFiles(folder);
  ConnectCone();
}

FullConsole::~FullConsole() {
  ports.Wire(kConePort).OnBytes = {};
  DropCalls(this);
  Main.ConeComm.Close();
  ResetState();
  ResetYield();
}

void FullConsole::SetUpFiles(const std::string& folder) {
  for (std::size_t i = 0; i < session.SoundingFiles.size(); ++i) {
    session.SoundingFiles[i] = folder + "/" + (i == 0 ? "TemporaryData.txt" : "B.cpt");
  }
  disk.MakeFolder(folder);
}

void FullConsole::ConnectCone() {
  ports.Wire(kTruckPort);
  ports.Wire(kConePort).OnBytes = [this](std::string_view) {
    PostCall(Now() + kMillisecond, this, [this] { ports.Wire(kConePort).Send(Reply()); });
  };
  OpenConePort(kConePort);
  OpenTruckPort("19200,N,8,1");
  Main.Timer1.OnTick = Main_Timer1_Timer;
  Main.Timer1.Start();
}

/// Each field in volts with six places, none standing still.
std::string FullConsole::Reply() {
  std::string text;
  ++reading_;
  for (int field = 1; field < kChannels; ++field) {
    const int load = field == 1 ? 2'300'000 : 300'000;
    const int millionths = load + field * 1000 + reading_ * 7 % 900;
    text += (field == 1 ? "" : " ") + Format(millionths / 1e6, "0.000000");
  }
  return text + "\r\n";
}

}  // namespace penlog
