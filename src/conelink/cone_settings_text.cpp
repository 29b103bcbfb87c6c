#include "conelink/cone_settings_text.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

namespace {

using Line = std::vector<std::string>;
using Offsets = std::vector<double>;

constexpr double kPageWidth = 110;  // characters
constexpr std::size_t kGap = 2;
const Offsets kHeaderOffsets = {0, 0.30};
const Offsets kChannelOffsets = {0, 0.12, 0.24, 0.38, 0.55};

/// Where each column begins so that none of `lines` runs into the next.
std::vector<std::size_t> ColumnStarts(const std::vector<Line>& lines, const Offsets& offsets) {
  std::vector<std::size_t> starts;
  std::size_t free_from = 0;
  for (std::size_t column = 0; column < offsets.size(); ++column) {
    const auto wanted = static_cast<std::size_t>(std::lround(offsets[column] * kPageWidth));
    starts.push_back(std::max(wanted, free_from));
    free_from = 0;
    for (const Line& line : lines) {
      if (column >= line.size()) continue;
      free_from = std::max(free_from, starts.back() + CharacterCount(line[column]) + kGap);
    }
  }
  return starts;
}

std::string Print(const std::vector<Line>& lines, const Offsets& offsets) {
  const auto starts = ColumnStarts(lines, offsets);
  std::string page;
  for (const Line& line : lines) {
    std::string text;
    for (std::size_t column = 0; column < line.size(); ++column) {
      const std::size_t here = CharacterCount(text);
      if (here < starts[column]) text.append(starts[column] - here, ' ');
      text += line[column];
    }
    page += text + "\n";
  }
  return page;
}

/// The full scale in the selected unit. A channel without a file has none: then the bare number.
std::string FullScaleText(int channel) {
  const int unit = channels.ChannelUnits(channel);
  const bool known = unit >= 1 && unit <= channels.UnitCount(channel);
  if (!known) return PlainNumber(channels.ChannelFullScale(channel));
  const float value = channels.ChannelFullScale(channel) * channels.UnitFactor(unit, channel);
  return Format(value, channels.UnitFormat(unit, channel)) + " " +
         channels.UnitLabel(unit, channel);
}

std::string NameText(int channel) {
  const std::string& label = channels.ChannelLabel(1, channel);
  return label.empty() ? "Channel " + PlainNumber(channel) : label;
}

Line ChannelLine(int channel) {
  const int subtracted = channels.SubtractChannel(channel);
  return {NameText(channel), FullScaleText(channel),
          PlainNumber(channels.ChannelDistance(channel)) + " m from tip",
          PlainNumber(channels.ChannelArea(channel)) + " mm^2 Area",
          subtracted == 0 ? "No Subtraction" : " Sub Channel " + PlainNumber(subtracted)};
}

/// The lines of the channels of `unit`; 19 and 20 have no record.
std::vector<Line> ChannelLines(int unit) {
  std::vector<Line> lines;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    const bool own = channels.ChannelModule(channel) == unit;
    if (own && channels.ChannelPresent(channel) == kTrue) lines.push_back(ChannelLine(channel));
  }
  return lines;
}

struct UnitHeader {
  std::string number;  ///< with its caption
  std::string firmware;
  float memory_size;
  float clock_frequency;
  std::string creation_date;
  std::string calibration_date;
  float distance_pushed;
};

std::string PrintUnit(const UnitHeader& header, int unit) {
  const std::vector<Line> lines = {
      {header.number},
      {"Firmware Version: " + header.firmware, "Creation Date: " + header.creation_date},
      {"Memory Size: " + PlainNumber(header.memory_size),
       "Last Calibration Date: " + header.calibration_date},
      {"Clock Frequency: " + PlainNumber(header.clock_frequency),
       "Distance Pushed Since Last Calibration: " + PlainNumber(header.distance_pushed)}};
  return Print(lines, kHeaderOffsets) + "\nChannels Available\n" +
         Print(ChannelLines(unit), kChannelOffsets);
}

UnitHeader ConeHeader() {
  return {"Cone #: " + cone.ConeId, PlainNumber(cone.FirmwareVersion),
          cone.MemorySize,          cone.ClockFrequency,
          cone.CreationDate,        cone.LastCalibrationDate,
          cone.DistancePushed};
}

UnitHeader ModuleHeader(std::size_t m) {
  return {"Module #: " + cone.ModuleNumber[m],
          cone.ModuleFirmware[m],
          cone.ModuleMemorySize[m],
          cone.ModuleClockFrequency[m],
          cone.ModuleCreationDate[m],
          cone.ModuleCalibrationDate[m],
          cone.ModuleDistancePushed[m]};
}

}  // namespace

std::string ConeSettingsReport() {
  std::string report = PrintUnit(ConeHeader(), 0);
  for (std::size_t m = 1; m <= 9; ++m) {
    if (cone.ModulePresent[m] != kTrue) continue;
    report += "\n" + PrintUnit(ModuleHeader(m), static_cast<int>(m));
  }
  return report;
}

}  // namespace penlog
