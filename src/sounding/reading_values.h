// The arithmetic of a reading: samples, averages, engineering values and the channels that are
// computed from others. All values are raw cone units unless said otherwise; 32-bit floats.
#pragma once

#include <optional>
#include <string>

#include "sounding/soil_type.h"

namespace penlog {

/// Moves samples 2 to `ReadingsAveraged` of the channel's window down one place, puts `sample`
/// last, and returns their mean.
float AverageWith(int channel, float sample);

/// The newest sample in the channel's window.
float LastSample(int channel);

/// The sample of channel 14: A x^B with x = 5000 / (value - 0.05) - 2000. A field of at most 0.05
/// is overwritten with ".051", so that the divider never comes to its pole. None where the power
/// has no value.
std::optional<float> TemperatureSample(std::string& field);

/// (reading - baseline) / sensitivity x full scale x unit factor of the selected unit.
float EngineeringValue(int channel, float reading);

/// `ChannelArea(1)` over `BallTipArea` with a ball tip, else 1: the same load over a larger area.
float BallFactor();

/// What `channel` loses of the channel that it subtracts, with the readings as they stand.
float SubtractedLoad(int channel);

/// Total inclination in degrees from the axes 6 and 7; both terms use the sensitivity of channel 7.
/// 0 for a cone without these channels.
float InclinationOf(float reading6, float reading7);

/// Friction ratio in percent; none for a tip that is not above its baseline, nor where it is no
/// finite number. `tip_factor` scales the tip.
std::optional<float> FrictionRatioOf(float tip, float sleeve, float tip_factor = 1.0f);

/// Zone and N from raw tip, sleeve and pore pressure; the pressure counts with channel 3 present.
SoilTypeAndN SoilOf(float tip, float sleeve, float pore_pressure);

/// One of the four graphs shows channel 21 or 22, and the channels 1 and 2 are present.
bool SoilIsWanted();

/// Raw pore pressure of a recorded row; its baseline, which counts as no load, for a row that was
/// recorded without the channel.
float PorePressureOf(std::int32_t row);

/// Corrected tip resistance of a recorded row in base units, with the ball's area. The pressure
/// term stands also without channel 3, whose row value is then 0. No number for a row that was
/// recorded without a tip.
float QtOfRow(std::int32_t row);

}  // namespace penlog
