#include "core/settings_replaced.h"

#include <algorithm>

namespace penlog {

namespace {

ReplacedSetting* Find(const SettingField& place) {
  auto& list = replaced_settings.List;
  const auto found = std::find_if(list.begin(), list.end(), [&](const ReplacedSetting& replaced) {
    return replaced.place == place;
  });
  return found == list.end() ? nullptr : &*found;
}

template <class T>
void Replace(T& value, T instead) {
  ReplacedSetting* known = Find(&value);
  if (known == nullptr) {
    replaced_settings.List.push_back({&value, value, instead});
  } else {
    known->instead = instead;
  }
  value = instead;
}

bool WasChangedSince(const ReplacedSetting& replaced) {
  return std::visit([](const auto* value) { return SettingValue(*value); }, replaced.place) !=
         replaced.instead;
}

SettingField PlaceOf(SettingValue& kept) {
  return std::visit([](auto& value) { return SettingField(&value); }, kept);
}

}  // namespace

void ReplaceSetting(std::int16_t& value, std::int16_t instead) {
  Replace(value, instead);
}

void ReplaceSetting(float& value, float instead) {
  Replace(value, instead);
}

std::vector<SettingField> WithValuesOfFile(std::vector<SettingField> fields) {
  std::erase_if(replaced_settings.List, WasChangedSince);
  for (SettingField& field : fields) {
    ReplacedSetting* replaced = Find(field);
    if (replaced != nullptr) field = PlaceOf(replaced->in_file);
  }
  return fields;
}

}  // namespace penlog
