#include "core/settings_file.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/channels.h"
#include "core/data_directory.h"
#include "core/first_run.h"
#include "core/message.h"
#include "core/settings.h"
#include "core/settings_check.h"
#include "core/settings_fields.h"
#include "core/settings_replaced.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr std::string_view kFileName = "System Setup Values.txt";

/// The old layout kept the three ports where the seismic selections stand now.
void DefaultsOfStage1() {
  settings.ConeSerialPort = settings.AutoEnhanceSeismic;
  settings.TruckInterfaceSerialPort = settings.FilterSeismic;
  settings.GPSSerialPort = settings.DualAxisSeismic;
  settings.AutoEnhanceSeismic = settings.FilterSeismic = settings.DualAxisSeismic = 1;
  settings.MirrorSeismic = 0;
  for (int channel = 21; channel <= 30; ++channel) channels.ChannelUnits(channel) = 0;
}

void DefaultsOfStage2() {
  for (int channel = 21; channel <= 30; ++channel) channels.ChannelUnits(channel) = 0;
}

void DefaultsOfStage3() {
  settings.DiscoverAddOnModules = 0;
}

void DefaultsOfStage4() {
  settings.ASCIIOutSerialPort = settings.VideoOverlaySerialPort = 0;
}

void DefaultsOfStage5() {
  settings.ASCIIOutFormat = 1;
}

void DefaultsOfStage6() {
  settings.TipConfiguration = settings.TipDiameter = 0;
}

void DefaultsOfStage7() {
  settings.GPSSerialPort = 0;
}

void DefaultsOfStage8() {
  settings.LumenProbeOverlay = 0;
}

/// Sets the overlay, not the digits: files in the field came out of this step so.
void DefaultsOfStage9() {
  settings.LumenProbeOverlay = 2;
}

/// Positions that a version added at the end of the file, and what a file without them gets.
struct Stage {
  int first;
  int last;
  const char* message;
  void (*defaults)();
};

constexpr std::array<Stage, 9> kStages{{
    {40, 43, "Incompatible System Setup Values Detected.  Press OK To Upgrade System Setup Values.",
     DefaultsOfStage1},
    {44, 53, "Incompatible System Setup Values Detected.  Press OK To Upgrade System Setup Values.",
     DefaultsOfStage2},
    {54, 54, "Upgrading System Setup Values (ADD-ON MODULES).", DefaultsOfStage3},
    {55, 56, "Upgrading System Setup Values (SERIAL PORTS).", DefaultsOfStage4},
    {57, 57, "Upgrading System Setup Values (ASCII FORMAT).", DefaultsOfStage5},
    {58, 59, "Upgrading System Setup Values (Tip Configuration Options).", DefaultsOfStage6},
    {60, 60, "Upgrading System Setup Values (GPS SERIAL PORT).", DefaultsOfStage7},
    {61, 61, "Upgrading System Setup Values (KQ OVERLAY).", DefaultsOfStage8},
    {62, 62, "Upgrading System Setup Values (DEPTH SIGNIFICANT DIGITS).", DefaultsOfStage9},
}};
constexpr int kOldestLayout = 39;
constexpr int kLastTipPosition = 59;

/// Takes the values one after the other and knows how far it came.
struct SetupReader {
  explicit SetupReader(std::string_view text) : reader(kFileName, text) {}

  void ReadTo(int last) {
    for (; next <= last; ++next) ReadField(reader, fields[static_cast<std::size_t>(next - 1)]);
  }

  ValueReader reader;
  std::vector<SettingField> fields = FieldsAsRead();
  int next = 1;  ///< position of the value that is read next
};

void ReadStage(SetupReader& setup, const Stage& stage) {
  if (!setup.reader.AtEnd()) {
    setup.ReadTo(stage.last);
    if (stage.last == kLastTipPosition) settings.BallTipArea = LoadedBallTipArea();
    return;
  }
  Tell(stage.message);
  stage.defaults();
  settings.SetupUpgraded = kTrue;
}

/// Values from `position` on as a first run has them.
void TakeFirstRunValues(int position) {
  ValueReader reader(kFileName, FirstRunContent(kFileName));
  const std::vector<SettingField> fields = FieldsAsRead();
  for (int i = 1; i <= kSettingValues; ++i) {
    const SettingField& field = fields[static_cast<std::size_t>(i - 1)];
    if (i < position) {
      SkipField(reader, field);
    } else {
      ReadField(reader, field);
    }
  }
}

void GoOnAfterDamage(int position, const std::string& found) {
  settings.SettingsDamaged = kTrue;
  settings.SetupUpgraded = kFalse;
  TakeFirstRunValues(position);
  Tell(found +
       ".  THE SETTINGS FROM THERE ON ARE THOSE OF A FIRST RUN.  THE FILE IS LEFT AS IT IS.");
}

void ReadSetup(const std::string& text) {
  SetupReader setup(text);
  try {
    setup.ReadTo(kOldestLayout);
    for (const Stage& stage : kStages) ReadStage(setup, stage);
  } catch (const RuntimeFault& fault) {
    GoOnAfterDamage(setup.next, fault.what());
  }
}

/// Option 0 came from files that were older than the channel.
void GiveUnitsToPresentChannels() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    if (channels.ChannelPresent(channel) != kTrue || channels.ChannelUnits(channel) != 0) continue;
    channels.ChannelUnits(channel) = 1;
    settings.SetupUpgraded = kTrue;
  }
}

void WriteSetup(const std::vector<SettingField>& fields) {
  const std::string path = DataPath(kFileName);
  try {
    const std::string text = TextOfFields(WithValuesOfFile(fields));
    if (settings.SettingsDamaged == kTrue && TheDisk().FileExists(path)) {
      CopyFile(path, FreeNameBeside(DataPath("System Setup Values (damaged).txt")));
      settings.SettingsDamaged = kFalse;
    }
    ReplaceFile(path, text);
  } catch (const RuntimeFault& fault) {
    Tell(std::string("THE SETTINGS COULD NOT BE SAVED.  ") + fault.what());
  }
}

/// The line at a position, counted from 1.
std::string LineAt(const std::string& text, int position) {
  std::size_t begin = 0;
  for (int i = 1; i < position; ++i) {
    const std::size_t end = text.find('\n', begin);
    if (end == std::string::npos) return {};
    begin = end + 1;
  }
  return text.substr(begin, text.find_first_of("\r\n", begin) - begin);
}

/// The text with another line at a position, counted from 1; a text with fewer lines stays.
std::string WithLine(std::string text, int position, const std::string& line) {
  std::size_t begin = 0;
  for (int i = 1; i < position; ++i) {
    const std::size_t end = text.find('\n', begin);
    if (end == std::string::npos) return text;
    begin = end + 1;
  }
  const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
  return end == begin ? text : text.replace(begin, end - begin, line);
}

/// Each value stands on a line of its own.
std::string WithPortNumbers(std::string text) {
  // A truck interface that was given the cone's old number would read as one on the cone's port.
  const bool apart = settings.TruckInterfaceSerialPort != settings.ConeSerialPort;
  if (apart && Trim(LineAt(text, 41)) == PlainNumber(settings.TruckInterfaceSerialPort)) {
    text = WithLine(std::move(text), 41, PlainNumber(settings.ConeSerialPort));
  }
  text = WithLine(std::move(text), 42, PlainNumber(settings.TruckInterfaceSerialPort));
  text = WithLine(std::move(text), 55, PlainNumber(settings.ASCIIOutSerialPort));
  return WithLine(std::move(text), 56, PlainNumber(settings.VideoOverlaySerialPort));
}

}  // namespace

void LoadSystemSetup() {
  const std::string path = DataPath(kFileName);
  settings.SetupUpgraded = kFalse;
  settings.SettingsDamaged = kFalse;
  replaced_settings = ReplacedSettingsState{};
  if (!TheDisk().FileExists(path)) {
    TakeFirstRunValues(1);
    Tell(path + " IS MISSING.  THE SETTINGS ARE THOSE OF A FIRST RUN.");
  } else {
    try {
      ReadSetup(ReadFile(path));
    } catch (const RuntimeFault& fault) {
      GoOnAfterDamage(1, fault.what());
    }
  }
  GiveUnitsToPresentChannels();
}

void RewriteUpgradedSetup() {
  if (settings.SetupUpgraded != kTrue || settings.SettingsDamaged == kTrue) return;
  WriteSetup(FieldsAsRewritten());
}

void SaveSystemSetup() {
  WriteSetup(FieldsAsSaved());
}

void SaveKQSettings() {
  SaveSystemSetup();
}

void SavePortNumbers() {
  const std::string path = DataPath(kFileName);
  if (settings.SettingsDamaged == kTrue || !TheDisk().FileExists(path)) return;
  try {
    const std::string text = ReadFile(path);
    const std::string changed = WithPortNumbers(text);
    if (changed != text) ReplaceFile(path, changed);
  } catch (const RuntimeFault& fault) {
    Tell(std::string("THE PORT NUMBERS COULD NOT BE SAVED.  ") + fault.what());
  }
}

void BackUpFirstSetup() {
  const std::string path = DataPath(kFileName);
  const std::string backup = DataPath("System Setup Values.old");
  if (TheDisk().FileExists(backup) || !TheDisk().FileExists(path)) return;
  try {
    CopyFile(path, backup);
  } catch (const RuntimeFault& fault) {
    Tell(std::string("THE SETTINGS COULD NOT BE COPIED.  ") + fault.what());
  }
}

}  // namespace penlog
