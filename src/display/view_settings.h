// How the operator wants to see and hear the console: kept in "View Settings.txt", apart from the
// settings of the soundings.
#pragma once

#include <cstdint>

#include "platform/view.h"

namespace penlog {

struct ViewSettingsState {
  LookSet Look = LookSet::Day;
  std::int16_t AlarmTone = 1;  ///< 1 a new alarm sounds a tone
};

inline ViewSettingsState view_settings;

/// Reads the file and chooses the colours. Without one: day, with tones. A damaged file is told.
void LoadViewSettings();
/// Marks the entries of both menus, on the first screen and on the console.
void ShowViewSettings();

/// The entries of the menu "VIEW". Each is served while rows are recorded, and waits for nothing;
/// a file that can't be written is told, and the choice holds until the program ends.
void Main_mnuDay_Click();
void Main_mnuNight_Click();
void Main_mnuAlarmTone_Click();

}  // namespace penlog
