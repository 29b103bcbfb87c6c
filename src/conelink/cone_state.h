// What is known of the link and of the instrument at its end.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace penlog {

/// Openings of one port in a row that took their time and failed.
struct SlowRefusals {
  int Count = 0;
  int Number = 0;      ///< COM number of these
  Micros NextTry = 0;  ///< not before that time
};

struct ConeState {
  // Link.
  std::int16_t ConeLinkUp = 0;    ///< -1 the cone answers
  std::int16_t ConePortLost = 0;  ///< -1 the cone's serial port has vanished
  std::int16_t TruckPortLost = 0;
  std::int16_t ASCIIPortLost = 0;
  std::int16_t VideoPortLost = 0;
  SlowRefusals TruckRefusals;
  SlowRefusals ASCIIRefusals;
  SlowRefusals VideoRefusals;
  std::int16_t WarningShown = 0;                ///< -1 the status window was raised for a loss
  std::int16_t WarningPinned = 0;               ///< -1 the operator keeps the status window up
  std::array<std::int16_t, 256> PortPresent{};  ///< by COM number, -1 present
  std::int16_t CommFailed = 0;                  ///< -1 the last exchange ended without a good reply
  std::int16_t CommTimeoutCount = 0;
  std::array<std::uint8_t, 129> SeismicBlock{};  ///< elements 1 to 126: the last `B` block

  // Identity of the cone.
  std::string ConeId;  ///< its first three letters name the family
  float FirmwareVersion = 0;
  std::string MemoryField1;
  std::string CreationDate;
  std::string LastCalibrationDate;
  float DistancePushed = 0;                ///< depth run by this cone over its life
  std::int16_t DistancePushedPending = 0;  ///< -1 it is to be written to the cone
  float MemorySize = 0;
  float ClockFrequency = 0;
  std::int16_t ChannelCount = 0;
  std::int16_t DelayRows = 0;  ///< largest delay of the channels
  std::int16_t Channel14Present = 0;
  float TemperatureCoeffA = 0;  ///< channel 14: value = A x^B
  float TemperatureCoeffB = 0;
  std::string ChannelSelectCommand;
  std::string ReducedSelectCommand;

  // Modules, by their number 1 to 9; ModulePresent(0) is the cone.
  std::int16_t ModuleCount = 0;
  std::array<std::int16_t, 10> ModulePresent{};
  std::array<std::string, 10> ModuleFirmware;
  std::array<std::string, 10> ModuleNumber;
  std::array<std::string, 10> ModuleCreationDate;
  std::array<std::string, 10> ModuleCalibrationDate;
  std::array<float, 10> ModuleDistancePushed{};
  std::array<float, 10> ModuleMemorySize{};
  std::array<float, 10> ModuleClockFrequency{};
  std::array<float, 10> ModuleVersion{};
  std::array<std::string, 10> ModuleSelectCommand;
};

inline ConeState cone;

}  // namespace penlog
