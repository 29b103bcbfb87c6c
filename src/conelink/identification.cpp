#include "conelink/identification.h"

#include <string>

#include "conelink/channel_record.h"
#include "conelink/computed_channels.h"
#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "conelink/plain_exchange.h"
#include "conelink/select_commands.h"
#include "conelink/unit_memory.h"
#include "core/channels.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "forms/start_up_form.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

void TellComplaints(int unit) {
  const std::string complaints = ChannelComplaints(unit);
  if (!complaints.empty()) Tell(complaints + "CHECK THE CALIBRATION DATA OF THE INSTRUMENT.");
}

void StoreHeader(const MemoryHeader& header) {
  cone.MemoryField1 = header.field1;
  cone.ConeId = header.number;
  NoteKnownCone();
  cone.CreationDate = header.creation_date;
  cone.LastCalibrationDate = header.calibration_date;
  cone.DistancePushed = header.distance_pushed;
  cone.MemorySize = header.memory_size;
  cone.ClockFrequency = header.clock_frequency;
}

void StoreModuleHeader(std::size_t m, const MemoryHeader& header) {
  cone.ModuleFirmware[m] = header.field1;
  cone.ModuleNumber[m] = header.number;
  cone.ModuleCreationDate[m] = header.creation_date;
  cone.ModuleCalibrationDate[m] = header.calibration_date;
  cone.ModuleDistancePushed[m] = header.distance_pushed;
  cone.ModuleMemorySize[m] = header.memory_size;
  cone.ModuleClockFrequency[m] = header.clock_frequency;
}

/// Channels 19 and 20 are no cone's: they stay as their files set them.
void ClearConeChannels() {
  for (int channel = 0; channel <= kChannels; ++channel) {
    if (channel != 19 && channel != 20) channels.ChannelPresent(channel) = kFalse;
  }
  cone.ChannelCount = 0;
  cone.DelayRows = 0;
  cone.Channel14Present = kFalse;
}

void ReadConeChannels(const Unit& unit) {
  ClearConeChannels();
  ReadChannelList(unit);
  SetUpComputedChannels();
  TellComplaints(unit.number);
  if (!session.ResumeConeId.empty()) RecomputeStoredInclination();
}

/// What a module that turns out unusable must not leave changed.
struct TablesBefore {
  ChannelState tables = channels;
  std::int16_t channel_count = cone.ChannelCount;
  std::int16_t delay_rows = cone.DelayRows;
  std::int16_t channel_14 = cone.Channel14Present;
  float coefficient_a = cone.TemperatureCoeffA;
  float coefficient_b = cone.TemperatureCoeffB;

  void Restore() const {
    channels = tables;
    cone.ChannelCount = channel_count;
    cone.DelayRows = delay_rows;
    cone.Channel14Present = channel_14;
    cone.TemperatureCoeffA = coefficient_a;
    cone.TemperatureCoeffB = coefficient_b;
  }
};

void TellDuplicate(int owner, std::size_t m) {
  const std::string& number = cone.ModuleNumber[m];
  const std::string start = "Duplicate channels found on modules: ";
  const std::string middle = ". Program cannot continue.  Please remove ";
  const std::string end = " and restart the program.";
  if (owner > 0) {
    Tell(start + cone.ModuleNumber[static_cast<std::size_t>(owner)] + " " + number + middle +
         "one of the modules" + end);
  } else {
    Tell(start + cone.ConeId + " " + number + middle + "module " + number + end);
  }
}

/// False when the module can't be used.
bool ReadModuleChannels(const Unit& unit) {
  const TablesBefore before;
  int duplicate = 0;
  std::string fault;
  try {
    duplicate = ReadChannelList(unit);
  } catch (const RuntimeFault& raised) {
    fault = raised.what();
  }
  const int owner = channels.ChannelModule(duplicate);
  if (duplicate != 0 || !fault.empty()) before.Restore();
  if (!fault.empty()) {
    Tell("MODULE" + PrintNumber(unit.number) + "CANNOT BE USED.  " + fault);
  } else if (duplicate != 0) {
    TellDuplicate(owner, static_cast<std::size_t>(unit.number));
  }
  return duplicate == 0 && fault.empty();
}

}  // namespace

void ReadConeSettings() {
  const Unit unit = {0, ""};
  cone.ModuleCount = 0;
  cone.ModulePresent.fill(kFalse);
  cone.FirmwareVersion = VersionOf(StartUp_CommStringCheck("Y"));
  StartUp_CommPause(2);
  if (!AnswersTwice(unit)) return;
  cone.ModulePresent[0] = kTrue;
  StartUp.lblLoad.Caption = "Cone Found";
  sounding.ConsoleMode = 1;
  StoreHeader(ReadHeader(unit));
  ReadConeChannels(unit);
  BuildSelectCommands();
  StartUp_CommStringCheck(cone.ChannelSelectCommand);
  StartUp_CommPause();
  const bool has_pair = channels.ChannelPresent(4) == kTrue && channels.ChannelPresent(5) == kTrue;
  // For this cone; the file keeps what the operator chose.
  if (!has_pair && settings.CombinePPPlots != 0) ReplaceSetting(settings.CombinePPPlots, 0);
  cone.ConeLinkUp = kTrue;
  if (sounding.ConsoleMode == 0) sounding.ConsoleMode = 1;
}

void ReadModuleSettings(int m) {
  const Unit unit = {m, LeadingBlankNumber(m)};
  const auto place = static_cast<std::size_t>(m);
  const std::string banner = StartUp_CommStringCheck(unit.prefix + "Y");
  if (banner.empty()) return;
  cone.ModuleVersion[place] = VersionOf(banner);
  StartUp.lblLoad.Caption = "Module (" + LeadingBlankNumber(m) + ") found";
  StartUp_CommPause(2);
  if (!AnswersTwice(unit)) return;
  ++cone.ModuleCount;
  session.ReadingsAveraged = 1;  // the line is too slow for several readings of a module
  StoreModuleHeader(place, ReadHeader(unit));
  if (!ReadModuleChannels(unit)) return;
  TellComplaints(m);
  cone.ModuleSelectCommand[place] = ModuleSelection(m);
  StartUp_CommStringCheck(cone.ModuleSelectCommand[place]);
  StartUp_CommPause();
  cone.ModulePresent[place] = kTrue;
}

}  // namespace penlog
