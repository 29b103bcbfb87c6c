#include "sounding/reading_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "platform/numbers.h"
#include "sounding/reached.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kPorePressureShare = 0.2f;  ///< 1 minus the net area ratio of the tip, 0.8
constexpr double kLeastDividerOutput = 0.05;
constexpr const char* kHeldDividerText = ".051";

float Loaded(int channel, float reading) {
  return reading - channels.Baselines(channel);
}

float FractionOfScale(int channel, float reading) {
  return Loaded(channel, reading) / channels.ChannelSensitivity(channel);
}

bool IsPresent(int channel) {
  return channels.ChannelPresent(channel) == kTrue;
}

std::size_t WindowLength() {
  return static_cast<std::size_t>(std::clamp<int>(session.ReadingsAveraged, 1, 10));
}

}  // namespace

float LastSample(int channel) {
  return sounding.ReadingWindow[WindowLength()](channel);
}

float AverageWith(int channel, float sample) {
  const std::size_t count = WindowLength();
  auto& window = sounding.ReadingWindow;
  float sum = 0;
  for (std::size_t place = 1; place < count; ++place) {
    window[place](channel) = window[place + 1](channel);
    sum += window[place](channel);
  }
  window[count](channel) = sample;
  // What a disturbed line sends may be the type's largest number; several of them stay one.
  constexpr float kLargest = std::numeric_limits<float>::max();
  return std::clamp((sum + sample) / static_cast<float>(count), -kLargest, kLargest);
}

std::optional<float> TemperatureSample(std::string& field) {
  if (LeadingNumber(field) <= kLeastDividerOutput) field = kHeldDividerText;
  const double x = 5000.0 / (LeadingNumber(field) - kLeastDividerOutput) - 2000.0;
  const auto sample = static_cast<float>(static_cast<double>(cone.TemperatureCoeffA) *
                                         std::pow(x, static_cast<double>(cone.TemperatureCoeffB)));
  if (!std::isfinite(sample)) return std::nullopt;
  return sample;
}

float EngineeringValue(int channel, float reading) {
  return FractionOfScale(channel, reading) * channels.ChannelFullScale(channel) *
         channels.UnitFactor(channels.ChannelUnits(channel), channel);
}

float BallFactor() {
  if (settings.TipConfiguration != 1 || settings.BallTipArea <= 0) return 1.0f;
  return static_cast<float>(channels.ChannelArea(1)) / static_cast<float>(settings.BallTipArea);
}

float SubtractedLoad(int channel) {
  const int other = channels.SubtractChannel(channel);
  if (other <= 0) return 0.0f;
  return Loaded(other, sounding.Readings(other)) * channels.SubtractFactor(channel);
}

float InclinationOf(float reading6, float reading7) {
  const float sensitivity = channels.ChannelSensitivity(7);
  const float y = Loaded(7, reading7) / sensitivity;
  const float x = Loaded(6, reading6) / sensitivity;
  const float inclination = channels.ChannelFullScale(19) * std::sqrt(y * y + x * x);
  return std::isfinite(inclination) ? inclination : 0.0f;
}

std::optional<float> FrictionRatioOf(float tip, float sleeve, float tip_factor) {
  if (!(Loaded(1, tip) > 0.0f)) return std::nullopt;
  const float friction = FractionOfScale(2, sleeve) * channels.ChannelFullScale(2);
  const float resistance = FractionOfScale(1, tip) * channels.ChannelFullScale(1) * tip_factor;
  const float ratio = 100.0f * friction / resistance;
  return std::isfinite(ratio) ? std::optional(ratio) : std::nullopt;
}

SoilTypeAndN SoilOf(float tip, float sleeve, float pore_pressure) {
  float qt = Loaded(1, tip) * channels.ChannelGain(1);
  if (IsPresent(3)) {
    qt += Loaded(3, pore_pressure) * kPorePressureShare * channels.ChannelGain(3);
  }
  return SoilType(qt, Loaded(2, sleeve) * channels.ChannelGain(2), soil);
}

bool SoilIsWanted() {
  const auto& shown = display.GraphChannel;
  const bool graphed = std::any_of(shown.begin() + 1, shown.end(), [](std::int16_t channel) {
    return channel == 21 || channel == 22;
  });
  return graphed && IsPresent(1) && IsPresent(2);
}

float PorePressureOf(std::int32_t row) {
  const float raw = sounding.Rows(row, 3);
  return IsReached(raw) ? raw : channels.Baselines(3);
}

float QtOfRow(std::int32_t row) {
  if (!IsReached(sounding.Rows(row, 1))) return std::numeric_limits<float>::quiet_NaN();
  const float tip = Loaded(1, sounding.Rows(row, 1)) * channels.ChannelGain(1);
  const float pressure =
      Loaded(3, PorePressureOf(row)) * kPorePressureShare * channels.ChannelGain(3);
  return pressure + (IsPresent(1) ? tip * BallFactor() : tip);
}

}  // namespace penlog
