// The channel tables: what each channel 1 to 30 is, filled from the channel files and then from
// the records in the cone and its modules.
//
// Fixed roles: 1 tip, 2 sleeve, 3 pore pressure behind the tip, 4 and 5 further pore pressures,
// 6 and 7 inclination axes, 8 and 9 geophones, 14 the sensor with a pair of correction values,
// 19 total inclination, 20 friction ratio, 21 soil behaviour type, 22 SPT N.
#pragma once

#include <cstdint>
#include <string>

#include "core/channel_table.h"

namespace penlog {

struct ChannelState {
  ChannelTable<std::int16_t> ChannelPresent;   ///< -1 the channel exists in this session, 0 not
  ChannelTable<std::int16_t> ChannelComputed;  ///< not 0: no field in the reading reply
  ChannelTable<std::int16_t> ChannelModule;    ///< 0 the cone, 1 to 9 a module
  ChannelTable<std::string> ChannelLetter;     ///< one character, by which the cone selects it
  OptionTable<std::string, 1> ChannelLabel;    ///< row 0 short, row 1 long
  ChannelTable<float> ChannelFullScale;        ///< in base units
  ChannelTable<float> ChannelSensitivity;      ///< output at full scale minus output at zero
  ChannelTable<float> Baselines;               ///< raw output at zero load
  ChannelTable<float> ChannelGain;             ///< ChannelFullScale / ChannelSensitivity
  ChannelTable<float> ChannelDistance;         ///< sensor distance from the tip, m
  ChannelTable<std::int16_t> ChannelDelayRows; ///< ChannelDistance in depth steps
  ChannelTable<std::int32_t> ChannelArea;      ///< active area, mm^2
  ChannelTable<std::int16_t> ChannelHasArea;   ///< 1 if the record had an area
  ChannelTable<std::string> ChannelFlags;      ///< the record's six flag bits as "0" and "1"
  ChannelTable<std::int16_t> SubtractChannel;  ///< channel to subtract, 0 none
  ChannelTable<float> SubtractFactor;          ///< record's factor over that channel's sensitivity
  ChannelTable<std::int16_t> ChannelKeepZero;  ///< not 0: baselines are taken; a resume keeps it
  ChannelTable<std::int16_t> ChannelUnits;     ///< selected unit option, from 1
  ChannelTable<std::int16_t> UnitCount;        ///< number of unit options
  OptionTable<std::string, 10> UnitLabel;      ///< name of each unit option
  OptionTable<std::string, 10> UnitFormat;     ///< display format of a value in that unit
  OptionTable<float, 10> UnitFactor;           ///< factor from the base unit
  ChannelTable<std::int16_t> RecordMode;       ///< 0 no, 1 selected, 2 always, 3 header only
  ChannelTable<std::int16_t> ChannelGraphDefault;  ///< 1 where the channel may be graphed
  ChannelTable<float> QuitLimitShallow;  ///< 0 no limit; a fraction of the span, scaled at start
  ChannelTable<float> QuitLimitDeep;
  ChannelTable<float> QuitRateLimit;
  ChannelTable<std::int16_t> ReplyField;  ///< place of the channel in the joined reading reply

  std::string PPChannelLabel[3][2];  ///< entries 1 and 2: labels (short, long) of channel 3's file
};

/// The one set of channel tables.
inline ChannelState channels;

/// Flag values: true is -1.
constexpr std::int16_t kTrue = -1;
constexpr std::int16_t kFalse = 0;

}  // namespace penlog
