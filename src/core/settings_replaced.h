// Settings that were read well and cannot be used: for the session something else stands in their
// place, while the file keeps its own values.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "core/settings_fields.h"

namespace penlog {

using SettingValue = std::variant<std::int16_t, float, std::string>;

struct ReplacedSetting {
  SettingField place;
  SettingValue in_file;
  SettingValue instead;
};

struct ReplacedSettingsState {
  std::vector<ReplacedSetting> List;
};
inline ReplacedSettingsState replaced_settings;

/// Puts `instead` into a setting and keeps what was read for it.
void ReplaceSetting(std::int16_t& value, std::int16_t instead);
void ReplaceSetting(float& value, float instead);

/// The fields as a file is to hold them: one that still equals its replacement stands for the
/// value that was read for it. One that was changed since stands for itself, now and later.
std::vector<SettingField> WithValuesOfFile(std::vector<SettingField> fields);

}  // namespace penlog
