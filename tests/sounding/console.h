// A console in virtual time with its truck interface on a wire: the settings of a usual rig, a cone
// of three channels, and hands to move the rods.
#pragma once

#include <string>

#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/soil_tables.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"
#include "support/world.h"

namespace penlog {

struct Console : World {
  static constexpr int kConePort = 3;
  static constexpr int kTruckPort = 4;

  explicit Console(WallTime start = {2026, 6, 15, 9, 30, 0, 0}) : World(start) {
    channels = {};
    settings = {};
    session = {};
    cone = {};
    known_cone = {};
    sounding = {};
    display = {};
    soil = {};
    settings.ConeSerialPort = kConePort;
    settings.TruckInterfaceSerialPort = kTruckPort;
    session.StartConePort = kConePort;
    session.StartTruckPort = kTruckPort;
    settings.DepthResolution = 0.01f;
    settings.DepthStep = 0.02f;
    settings.DepthStepCounts = 2;
    settings.PictureStepCounts = 1;
    settings.DepthSignificantDigits = 3;
    cone.ConeId = "DSE1234";
    cone.ConeLinkUp = -1;
    sounding.ReadingsTaken = 10;  // the averages are full
    sounding.ReadingsFresh = -1;
    for (const int channel : {1, 2, 3}) AddChannel(channel);
    ports.Wire(kConePort);
    truck().SetLines({true, true, true});
    Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
    Main.ConeComm.OnComm = Main_ConeComm_OnComm;
    session.SoundingFiles = {"/data/TemporaryData.txt",
                             "/data/s.cpt",
                             "/data/s.dis",
                             "/data/s.smc",
                             "/data/s.tim",
                             "/data/s.res",
                             "/data/s.mp4"};
    disk.PutFolder("/data");
  }

  static void AddChannel(int channel) {
    const std::string number = std::to_string(channel);
    channels.ChannelPresent(channel) = -1;
    channels.RecordMode(channel) = 1;
    channels.ReplyField(channel) = static_cast<std::int16_t>(channel);
    channels.ChannelSensitivity(channel) = 1.0f;
    channels.ChannelFullScale(channel) = 1.0f;
    channels.ChannelGain(channel) = 1.0f;
    channels.ChannelUnits(channel) = 1;
    channels.UnitFactor(1, channel) = 1.0f;
    channels.UnitFormat(1, channel) = "##0.00";
    channels.UnitLabel(1, channel) = "u" + number;
    channels.ChannelLabel(0, channel) = "C" + number;
    channels.ChannelLabel(1, channel) = "Channel " + number;
  }

  WireEnd& truck() { return ports.Wire(settings.TruckInterfaceSerialPort); }

  /// Opens the truck's port (the cone's when shared) as the console does.
  void OpenPorts() {
    if (TruckSharesConePort()) {
      Main.ConeComm.SetCommPort(settings.ConeSerialPort);
      Main.ConeComm.Open();
    }
    OpenTruckPort("19200,N,8,1");
  }

  void Line(bool ModemLines::*line, bool held) {
    ModemLines lines = truck().Lines();
    lines.*line = held;
    truck().SetLines(lines);
    Yield();
  }
  void Cts(bool held) { Line(&ModemLines::cts, held); }
  void Dsr(bool held) { Line(&ModemLines::dsr, held); }
  void Cd(bool held) { Line(&ModemLines::cd, held); }

  /// One count of the encoder with direction 0, from and to both lines held.
  void EncoderDown(int counts = 1) {
    for (int i = 0; i < counts; ++i) {
      Cd(false);
      Cts(false);
      Cd(true);
      Cts(true);
    }
  }
  void EncoderUp(int counts = 1) {
    for (int i = 0; i < counts; ++i) {
      Cts(false);
      Cd(false);
      Cts(true);
      Cd(true);
    }
  }
  /// One pulse of the proximity counter: away from the line and back to it.
  void Pulse(int counts = 1) {
    for (int i = 0; i < counts; ++i) {
      Cd(false);
      Cd(true);
    }
  }

  static bool Solid(const Shape& lamp) { return lamp.Fill == FillStyle::Solid; }
};

}  // namespace penlog
