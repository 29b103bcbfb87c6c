// The machine's settings: the scalars of "System Setup Values.txt" and what is derived from them.
// Selections are numbered from 0 in their list. A port number of 0 means not in use.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace penlog {

struct SettingsState {
  std::string CompanyName;
  float DepthResolution = 0;  ///< m of rods for one counted step
  float DepthStep = 0;        ///< m between recorded rows
  std::int16_t LumenProbePresent = 0;
  std::int16_t DepthCounterType = 0;       ///< 0 encoder, 1 proximity counter
  std::int16_t PressureSwitchPresent = 0;  ///< 1 present
  std::int16_t DepthFormat = 0;            ///< 1 elevation
  std::int16_t DepthUnits = 0;             ///< 0 metres, 1 feet
  std::int16_t PPGraphDefault = 0;
  std::int16_t CombinePPPlots = 0;
  std::int16_t QueryForPP = 0;
  std::int16_t QuitsActive = 0;  ///< 1 on
  std::int16_t TipPlotValues = 0;
  std::int16_t Language = 0;    ///< 0 English
  std::int16_t FileNaming = 0;  ///< 0 manual, 1 auto-increment, 2 job and hole number
  std::int16_t PrintMode = 0;
  std::int16_t EncoderDirection = 0;
  std::int16_t Gridlines = 0;
  std::int16_t AutoEnhanceSeismic = 0;
  std::int16_t FilterSeismic = 0;
  std::int16_t DualAxisSeismic = 0;
  std::int16_t MirrorSeismic = 0;
  std::int16_t ConeSerialPort = 0;
  std::int16_t TruckInterfaceSerialPort = 0;
  std::int16_t CalibratorSerialPort = 0;  ///< has no loader: 0 after each start
  std::int16_t DiscoverAddOnModules = 0;  ///< 1 search for modules at start
  std::int16_t ASCIIOutSerialPort = 0;
  std::int16_t VideoOverlaySerialPort = 0;
  std::int16_t ASCIIOutFormat = 0;
  std::int16_t TipConfiguration = 0;  ///< 0 conical, 1 ball; 0 after each load
  std::int16_t TipDiameter = 0;       ///< ball diameter, whole mm; 0 after each load
  std::int16_t GPSSerialPort = 0;
  std::int16_t LumenProbeOverlay = 0;
  std::int16_t DepthSignificantDigits = 0;  ///< above 2 selects the new sounding file form

  // Derived at load.
  std::int32_t BallTipArea = 0;        ///< mm^2
  float DepthStepResolution = 0;       ///< m; DepthResolution, at least 0.005
  std::int16_t DepthStepCounts = 0;    ///< counts for one recorded row
  std::int16_t PictureStepCounts = 0;  ///< counts for one Lumen Probe mark, at least 1
  std::int16_t SetupUpgraded = 0;      ///< -1: the settings file was of an older layout
  std::int16_t SettingsDamaged = 0;    ///< -1: the settings file could not be read to its end

  std::array<std::string, 11> AvailableLanguages;
  std::int16_t LanguageCount = 0;
};

inline SettingsState settings;

}  // namespace penlog
