#include "core/settings_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "core/channels.h"
#include "core/message.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "platform/numbers.h"

namespace penlog {

namespace {

constexpr float kDefaultResolution = 0.005F;  // m
constexpr float kDefaultStep = 0.02F;         // m
constexpr float kFinestStepResolution = 0.005F;
constexpr int kLastPort = 255;
constexpr float kMostCounts = 32767.0F;

struct PortSetting {
  const char* name;
  std::int16_t SettingsState::*port;
};

constexpr std::array<PortSetting, 5> kPorts{{
    {"CONE", &SettingsState::ConeSerialPort},
    {"TRUCK INTERFACE", &SettingsState::TruckInterfaceSerialPort},
    {"ASCII OUT", &SettingsState::ASCIIOutSerialPort},
    {"VIDEO OVERLAY", &SettingsState::VideoOverlaySerialPort},
    {"GPS", &SettingsState::GPSSerialPort},
}};

void CheckAboveZero(float& value, float instead, const char* name) {
  if (value > 0 && std::isfinite(value)) return;
  Tell(std::string(name) + " must be greater than 0.  It is " + PlainNumber(value) + "; " +
       PlainNumber(instead) + " m is used until the settings are put right.");
  ReplaceSetting(value, instead);
}

/// The rule of the setup screen: the ratio is compared with that of whole millimetres.
bool StepIsMultiple() {
  const float ratio = settings.DepthStep * 1000 / (settings.DepthResolution * 1000);
  const float resolution = std::nearbyint(settings.DepthResolution * 1000);
  const float whole = resolution > 0
                          ? std::floor(std::nearbyint(settings.DepthStep * 1000) / resolution)
                          : std::round(ratio);  // finer than a millimetre
  return std::abs(ratio - whole) < 1e-5F;
}

void CheckDepthStep() {
  CheckAboveZero(settings.DepthResolution, kDefaultResolution, "Depth Resolution");
  CheckAboveZero(settings.DepthStep, kDefaultStep, "Depth Step");
  const float counts = settings.DepthStep / settings.DepthResolution;
  if (counts < 1 || counts > kMostCounts) {
    Tell("Depth Step " + PlainNumber(settings.DepthStep) +
         " m is not 1 to 32767 times the depth "
         "resolution " +
         PlainNumber(settings.DepthResolution) +
         " m; 0.02 m and 0.005 m are used "
         "until the settings are put right.");
    ReplaceSetting(settings.DepthResolution, kDefaultResolution);
    ReplaceSetting(settings.DepthStep, kDefaultStep);
  } else if (!StepIsMultiple()) {
    Tell("Depth Step must be a multiple of the depth resolution.");
  }
}

void CheckPorts() {
  for (const PortSetting& setting : kPorts) {
    std::int16_t& port = settings.*setting.port;
    if (port >= 0 && port <= kLastPort) continue;
    Tell(std::string(setting.name) + " SERIAL PORT " + PlainNumber(port) +
         " IS NOT A PORT NUMBER (1 TO 255, 0 FOR NONE).  NO PORT IS USED.");
    ReplaceSetting(port, 0);
  }
}

void CheckUnits() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    std::int16_t& unit = channels.ChannelUnits(channel);
    if (unit == 0 || (unit > 0 && unit <= channels.UnitCount(channel))) continue;
    if (channels.ChannelPresent(channel) == kTrue) {
      Tell("Unit option " + PlainNumber(unit) + " of channel " + PlainNumber(channel) +
           " does not exist.  Option 1 is used.");
    }
    ReplaceSetting(unit, 1);
  }
}

void CheckLanguage() {
  if (settings.Language >= 0 && settings.Language < settings.LanguageCount) return;
  if (settings.Language == 0) return;
  Tell("Language " + PlainNumber(settings.Language) + " is not in AvailableLanguages.txt.");
  ReplaceSetting(settings.Language, 0);
}

}  // namespace

std::int32_t LoadedBallTipArea() {
  const double radius = settings.TipDiameter / 2.0;
  return ToInteger32(3.14159 * radius * radius);
}

void DeriveSettings() {
  settings.DepthStepResolution = std::max(settings.DepthResolution, kFinestStepResolution);
  settings.DepthStepCounts = ToInteger16(settings.DepthStep / settings.DepthResolution);
  const float marks = settings.DepthStepResolution / settings.DepthResolution;
  settings.PictureStepCounts = ToInteger16(std::clamp(marks, 1.0F, kMostCounts));
  settings.TipConfiguration = 0;
  settings.TipDiameter = 0;
}

void CheckSettings() {
  CheckDepthStep();
  CheckPorts();
  CheckUnits();
  CheckLanguage();
}

}  // namespace penlog
