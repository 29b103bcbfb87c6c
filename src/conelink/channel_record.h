// The channel records of an instrument's memory: 17 characters each, then what their flags say.
//
//   position  length  content                              coding
//   1         1       channel number; none ends the list   code minus 64
//   2         1       letter                               as it is
//   3         4       full scale, base units               decimal
//   7         4       output at full scale                 decimal
//   11        4       output at zero                       decimal
//   15        2       distance from the tip, mm            integer
//   17        1       flags, six bits                      code minus 64
//
// Behind them, flag 1: the subtraction, 5 characters (channel, decimal factor); then, flag 2: the
// active area in mm^2, 3 characters.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace penlog {

constexpr int kRecordLength = 17;
constexpr int kSubtractionLength = 5;
constexpr int kAreaLength = 3;

struct ChannelRecord {
  int number = 0;  ///< 0 or below: the end of the list
  std::string letter;
  float full_scale = 0;
  float output_full = 0;
  float output_zero = 0;
  float distance = 0;  ///< m
  std::string flags;   ///< six "0" and "1", most significant bit first

  bool EndsList() const { return number <= 0; }
  bool HasSubtraction() const { return flags[5] == '1'; }
  bool HasArea() const { return flags[4] == '1'; }
};

/// Any text decodes: what is missing counts as nothing.
ChannelRecord DecodeChannelRecord(std::string_view text);

struct Subtraction {
  std::int16_t channel = 0;
  float factor = 0;  ///< as recorded, not yet over the subtracted channel's sensitivity
};

Subtraction DecodeSubtraction(std::string_view text);

/// Puts a record into the channel tables for `unit` (0 the cone, 1 to 9 a module) and keeps
/// `DelayRows` and `Channel14Present`. Channel 14 has a pair of coefficients in place of its
/// outputs. While a sounding is resumed, a channel with `ChannelKeepZero` keeps the baseline
/// that its files had. Without a span the gain is 0. A `RuntimeFault` for a channel number above
/// 30, and for a distance that is no number of depth steps.
void StoreChannelRecord(const ChannelRecord& record, int unit);

/// A rule of thumb for a calibration check alone: the area of channel 1 or 2 from the full scale of
/// channel 1, for either of them, where the record had none.
void FillMissingArea(int channel);

/// Turns the recorded subtraction factors of `unit` into `SubtractFactor`: over the sensitivity of
/// the subtracted channel, whose record may have come later. 0 where that channel is absent or has
/// no sensitivity; a channel number above 30 is a `RuntimeFault`.
void FormSubtractFactors(int unit);

/// What the operator should know of the channels of `unit`: those without a span, those that
/// subtract a channel that isn't there. Empty if all is well.
std::string ChannelComplaints(int unit);

}  // namespace penlog
