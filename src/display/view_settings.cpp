#include "display/view_settings.h"

#include <string>

#include "core/data_directory.h"
#include "core/message.h"
#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/value_reader.h"
#include "platform/value_writer.h"

namespace penlog {

namespace {

constexpr const char* kFileName = "View Settings.txt";

/// 0 or 1.
bool ReadChoice(ValueReader& reader) {
  const std::int16_t choice = reader.ReadInteger();
  if (choice == 0 || choice == 1) return choice == 1;
  throw RuntimeFault(std::string(kFileName) + ": 0 or 1 was expected, found " +
                     std::to_string(choice));
}

ViewSettingsState ReadSettings() {
  ViewSettingsState read;
  ValueReader reader(kFileName, ReadFile(DataPath(kFileName)));
  read.Look = ReadChoice(reader) ? LookSet::Night : LookSet::Day;
  read.AlarmTone = ReadChoice(reader) ? 1 : 0;
  return read;
}

void Save() {
  ValueWriter writer;
  writer.Integer(view_settings.Look == LookSet::Night ? 1 : 0);
  writer.Integer(view_settings.AlarmTone);
  try {
    ReplaceFile(DataPath(kFileName), writer.Text());
  } catch (const RuntimeFault& fault) {
    PostBox(std::string("THE VIEW SETTINGS COULD NOT BE SAVED.  THEY HOLD UNTIL THE PROGRAM "
                        "ENDS.  ") +
            fault.what());
  }
}

void Choose(LookSet look) {
  view_settings.Look = look;
  ChooseLook(look);
  ShowViewSettings();
  Save();
}

}  // namespace

void LoadViewSettings() {
  view_settings = {};
  try {
    if (TheDisk().FileExists(DataPath(kFileName))) view_settings = ReadSettings();
  } catch (const RuntimeFault& fault) {
    Tell(std::string("THE VIEW SETTINGS COULD NOT BE READ, SO DAY COLOURS ARE SHOWN.  ") +
         fault.what());
  }
  ChooseLook(view_settings.Look);
  ShowViewSettings();
}

void ShowViewSettings() {
  const bool day = view_settings.Look == LookSet::Day;
  Main.mnuDay.Checked = StartUp.mnuDay.Checked = day;
  Main.mnuNight.Checked = StartUp.mnuNight.Checked = !day;
  Main.mnuAlarmTone.Checked = StartUp.mnuAlarmTone.Checked = view_settings.AlarmTone == 1;
}

void Main_mnuDay_Click() {
  Choose(LookSet::Day);
}

void Main_mnuNight_Click() {
  Choose(LookSet::Night);
}

void Main_mnuAlarmTone_Click() {
  view_settings.AlarmTone = view_settings.AlarmTone == 1 ? 0 : 1;
  ShowViewSettings();
  Save();
}

}  // namespace penlog
