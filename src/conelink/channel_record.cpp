#include "conelink/channel_record.h"

#include <algorithm>
#include <limits>

#include "conelink/cone_state.h"
#include "conelink/value_coding.h"
#include "core/channels.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "core/settings.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr int kPairChannel = 14;
constexpr float kMillimetresInMetre = 1000;

/// Bytes, not characters: `length` of them from position `start`, counted from 1.
std::string_view Piece(std::string_view text, std::size_t start, std::size_t length) {
  return start > text.size() ? std::string_view{} : text.substr(start - 1, length);
}

int CodeMinus64(std::string_view character) {
  return character.empty() ? -64 : static_cast<unsigned char>(character[0]) - 64;
}

std::string SixBits(int value) {
  std::string bits;
  for (int weight = 32; weight > 0; weight /= 2) {
    bits += value >= weight ? '1' : '0';
    if (value >= weight) value -= weight;
  }
  return bits;
}

bool KeepsBaseline(int channel) {
  return !session.ResumeConeId.empty() && channels.ChannelKeepZero(channel) != 0 &&
         resumed_zeros.Restored(channel) == kTrue;
}

void StoreOutputs(const ChannelRecord& record) {
  const int channel = record.number;
  float zero = record.output_zero;
  if (channel == kPairChannel) {
    cone.TemperatureCoeffA = record.output_full;
    cone.TemperatureCoeffB = record.output_zero;
    cone.Channel14Present = kTrue;
    channels.ChannelSensitivity(channel) = 1;
    zero = 0;
  } else {
    channels.ChannelSensitivity(channel) = record.output_full - record.output_zero;
  }
  if (!KeepsBaseline(channel)) channels.Baselines(channel) = zero;
  const float span = channels.ChannelSensitivity(channel);
  channels.ChannelGain(channel) = span == 0 ? 0 : record.full_scale / span;
}

/// Channels of the cone that no row waits for: tilt, geophones, computed ones.
bool DelaysRows(int channel, int unit) {
  const bool exempt = (channel >= 6 && channel <= 9) || channel == 19 || channel == 20;
  return unit != 0 || !exempt;
}

void StoreDistance(const ChannelRecord& record, int unit) {
  if (!(settings.DepthStep > 0)) {
    throw RuntimeFault("The depth step of the system setup is not above 0.");
  }
  const float steps = record.distance / settings.DepthStep;
  if (steps > std::numeric_limits<std::int16_t>::max()) {
    throw RuntimeFault("The sensor of channel" + PrintNumber(record.number) +
                       "lies more than 32767 depth steps from the tip.");
  }
  const std::int16_t rows = ToInteger16(steps);
  channels.ChannelDistance(record.number) = record.distance;
  channels.ChannelDelayRows(record.number) = rows;
  if (DelaysRows(record.number, unit)) cone.DelayRows = std::max(cone.DelayRows, rows);
}

bool IsChannelOf(int channel, int unit) {
  return channels.ChannelPresent(channel) == kTrue && channels.ChannelModule(channel) == unit;
}

std::string NameOf(int channel) {
  const std::string& label = channels.ChannelLabel(1, channel);
  return "CHANNEL" + PrintNumber(channel) + (label.empty() ? "" : "(" + label + ") ");
}

}  // namespace

ChannelRecord DecodeChannelRecord(std::string_view text) {
  ChannelRecord record;
  record.number = CodeMinus64(Piece(text, 1, 1));
  record.letter = Piece(text, 2, 1);
  record.full_scale = BinaryToSingle(Piece(text, 3, 4));
  record.output_full = BinaryToSingle(Piece(text, 7, 4));
  record.output_zero = BinaryToSingle(Piece(text, 11, 4));
  record.distance = BinaryToSingle(Piece(text, 15, 2)) / kMillimetresInMetre;
  record.flags = SixBits(CodeMinus64(Piece(text, 17, 1)));
  return record;
}

Subtraction DecodeSubtraction(std::string_view text) {
  return {ToInteger16(BinaryToSingle(Piece(text, 1, 1))), BinaryToSingle(Piece(text, 2, 4))};
}

void StoreChannelRecord(const ChannelRecord& record, int unit) {
  const int channel = record.number;
  if (channel < 1 || channel > kChannels) {
    throw RuntimeFault("A record names channel" + PrintNumber(channel) + "of 30.");
  }
  channels.ChannelPresent(channel) = kTrue;
  channels.ChannelModule(channel) = static_cast<std::int16_t>(unit);
  channels.ChannelLetter(channel) = record.letter;
  channels.ChannelFlags(channel) = record.flags;
  channels.ChannelFullScale(channel) = record.full_scale;
  StoreOutputs(record);
  StoreDistance(record, unit);
  channels.SubtractChannel(channel) = 0;
  channels.SubtractFactor(channel) = 0;
  channels.ChannelHasArea(channel) = 0;
  channels.ChannelArea(channel) = 0;
}

void FillMissingArea(int channel) {
  if (channels.ChannelArea(channel) != 0) return;
  const float full_scale = channels.ChannelFullScale(1);
  if (channel == 1) {
    if (full_scale == 100000) channels.ChannelArea(1) = 1000;
    if (full_scale > 66665 && full_scale < 66668) channels.ChannelArea(1) = 1500;
  } else if (channel == 2) {
    // The sleeve's area goes with the class of the tip.
    const bool small = full_scale == 100000 || full_scale == 50000;
    channels.ChannelArea(2) = small ? 15000 : 22500;
  }
}

void FormSubtractFactors(int unit) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    const int subtracted = channels.SubtractChannel(channel);
    if (!IsChannelOf(channel, unit) || subtracted <= 0) continue;
    if (subtracted > kChannels) {
      throw RuntimeFault("Channel" + PrintNumber(channel) + "subtracts channel" +
                         PrintNumber(subtracted) + "of 30.");
    }
    const float span = channels.ChannelSensitivity(subtracted);
    const bool usable = channels.ChannelPresent(subtracted) == kTrue && span != 0;
    float& factor = channels.SubtractFactor(channel);
    factor = usable ? factor / span : 0;
  }
}

std::string ChannelComplaints(int unit) {
  std::string text;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!IsChannelOf(channel, unit)) continue;
    if (channels.ChannelSensitivity(channel) == 0) {
      text += NameOf(channel) + "HAS NO SPAN: ITS OUTPUT AT FULL SCALE IS ITS OUTPUT AT ZERO.\n";
    }
    const int subtracted = channels.SubtractChannel(channel);
    if (subtracted > 0 && channels.ChannelPresent(subtracted) != kTrue) {
      text += NameOf(channel) + "SUBTRACTS CHANNEL" + PrintNumber(subtracted) +
              "WHICH IS NOT PRESENT.\n";
    }
  }
  return text;
}

}  // namespace penlog
