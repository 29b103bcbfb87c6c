#include "core/channel_files.h"

#include <algorithm>
#include <string>

#include "core/channels.h"
#include "core/data_directory.h"
#include "core/message.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/value_reader.h"

namespace penlog {

namespace {

constexpr int kMostUnits = 10;

std::string NameOf(int channel) {
  return "Channel" + PlainNumber(channel) + ".txt";
}

/// As for a channel that no file tells of: a cone may still have a record of it.
void ClearChannel(int channel) {
  channels.ChannelLabel(0, channel).clear();
  channels.ChannelLabel(1, channel).clear();
  channels.ChannelLetter(channel).clear();
  channels.ChannelComputed(channel) = 0;
  channels.SubtractChannel(channel) = 0;
  channels.ChannelKeepZero(channel) = 0;
  channels.ChannelHasArea(channel) = 0;
  channels.RecordMode(channel) = 0;
  channels.ChannelGraphDefault(channel) = 0;
  channels.QuitLimitShallow(channel) = 0;
  channels.QuitLimitDeep(channel) = 0;
  channels.QuitRateLimit(channel) = 0;
  channels.UnitCount(channel) = 1;
  for (int unit = 0; unit <= kMostUnits; ++unit) {
    channels.UnitLabel(unit, channel).clear();
    channels.UnitFormat(unit, channel).clear();
    channels.UnitFactor(unit, channel) = 1;
  }
}

void Refuse(const std::string& what) {
  throw RuntimeFault(what);
}

/// Below 0 nothing is subtracted, and the value isn't shown. A channel that doesn't exist is told
/// and taken as none: quit limits and units stand behind it in the file.
std::int16_t ReadSubtractChannel(ValueReader& reader, int channel) {
  const std::int16_t subtract = reader.ReadInteger();
  if (subtract <= kChannels) return subtract;
  Tell(NameOf(channel) + ": channel " + PlainNumber(subtract) +
       " to subtract does not exist.  NOTHING IS SUBTRACTED.");
  return 0;
}

void ReadNature(ValueReader& reader, int channel) {
  reader.ReadString();  // a title for people who read the file
  channels.ChannelLabel(0, channel) = reader.ReadString();
  channels.ChannelLabel(1, channel) = reader.ReadString();
  channels.ChannelComputed(channel) = reader.ReadInteger();
  channels.ChannelLetter(channel) = reader.ReadString();
  channels.SubtractChannel(channel) = ReadSubtractChannel(reader, channel);
  channels.ChannelKeepZero(channel) = reader.ReadInteger();
  channels.ChannelHasArea(channel) = reader.ReadInteger();
  channels.RecordMode(channel) = reader.ReadInteger();
  channels.ChannelGraphDefault(channel) = reader.ReadInteger();
}

void ReadQuitLimits(ValueReader& reader, int channel) {
  channels.QuitLimitShallow(channel) = reader.ReadSingle();
  channels.QuitLimitDeep(channel) = reader.ReadSingle();
  channels.QuitRateLimit(channel) = reader.ReadSingle();
}

void ReadUnit(ValueReader& reader, int unit, int channel) {
  const std::string label = reader.ReadString();
  const std::string format = reader.ReadString();
  const float factor = reader.ReadSingle();
  if (factor == 0) Refuse(NameOf(channel) + ": the factor of unit \"" + label + "\" is 0");
  channels.UnitLabel(unit, channel) = label;
  channels.UnitFormat(unit, channel) = format;
  channels.UnitFactor(unit, channel) = factor;
}

/// `UnitCount` never says more than was read.
void ReadUnits(ValueReader& reader, int channel) {
  const int told = reader.ReadInteger();
  for (int unit = 1; unit <= std::min(told, kMostUnits); ++unit) {
    ReadUnit(reader, unit, channel);
    channels.UnitCount(channel) = static_cast<std::int16_t>(unit);
  }
  if (told < 1 || told > kMostUnits) {
    Refuse(NameOf(channel) + ": " + PlainNumber(told) + " unit options, there can be 1 to 10");
  }
}

void CopyLabelsForPPSelection() {
  for (auto& entry : {1, 2}) {
    channels.PPChannelLabel[entry][0] = channels.ChannelLabel(0, 3);
    channels.PPChannelLabel[entry][1] = channels.ChannelLabel(1, 3);
  }
}

void ReadChannelFile(int channel) {
  try {
    ValueReader reader(NameOf(channel), ReadFile(DataPath(NameOf(channel))));
    ReadNature(reader, channel);
    ReadQuitLimits(reader, channel);
    ReadUnits(reader, channel);
  } catch (const RuntimeFault& fault) {
    Tell(std::string(fault.what()) + ".  THE REST OF THE CHANNEL'S FILE IS NOT USED.");
  }
}

}  // namespace

int LoadChannelFiles() {
  int found = 0;
  for (int channel = 1; channel <= kChannels; ++channel) {
    ClearChannel(channel);
    const bool exists = TheDisk().FileExists(DataPath(NameOf(channel)));
    channels.ChannelPresent(channel) = exists ? kTrue : kFalse;
    if (!exists) continue;
    ++found;
    ReadChannelFile(channel);
    if (channel == 3) CopyLabelsForPPSelection();
  }
  return found;
}

}  // namespace penlog
