#include "core/settings_fields.h"

#include <type_traits>

#include "core/channels.h"
#include "core/settings.h"
#include "platform/value_writer.h"

namespace penlog {

namespace {

constexpr std::size_t kPosition43 = 42;
constexpr std::size_t kPosition60 = 59;

void AddUnits(std::vector<SettingField>& fields, int first, int last) {
  for (int channel = first; channel <= last; ++channel) {
    fields.emplace_back(&channels.ChannelUnits(channel));
  }
}

void Add(std::vector<SettingField>& fields, std::initializer_list<SettingField> more) {
  fields.insert(fields.end(), more);
}

/// Reads a value of the field's type.
struct Reading {
  ValueReader& reader;
  std::int16_t operator()(const std::int16_t*) const { return reader.ReadInteger(); }
  float operator()(const float*) const { return reader.ReadSingle(); }
  std::string operator()(const std::string*) const { return reader.ReadString(); }
};

struct Writing {
  ValueWriter& writer;
  void operator()(const std::int16_t* value) const { writer.Integer(*value); }
  void operator()(const float* value) const { writer.Single(*value); }
  void operator()(const std::string* value) const { writer.QuotedString(*value); }
};

}  // namespace

std::vector<SettingField> FieldsAsSaved() {
  SettingsState& s = settings;
  std::vector<SettingField> fields;
  AddUnits(fields, 1, 18);
  Add(fields, {&s.CompanyName,         &s.DepthResolution,  &s.DepthStep,
               &s.LumenProbePresent,   &s.DepthCounterType, &s.PressureSwitchPresent,
               &s.DepthFormat,         &s.DepthUnits,       &s.PPGraphDefault,
               &s.CombinePPPlots,      &s.QueryForPP,       &s.QuitsActive,
               &s.TipPlotValues,       &s.Language,         &s.FileNaming,
               &s.PrintMode,           &s.EncoderDirection, &s.Gridlines,
               &s.AutoEnhanceSeismic,  &s.FilterSeismic,    &s.DualAxisSeismic,
               &s.MirrorSeismic,       &s.ConeSerialPort,   &s.TruckInterfaceSerialPort,
               &s.CalibratorSerialPort});
  AddUnits(fields, 21, 30);
  Add(fields, {&s.DiscoverAddOnModules, &s.ASCIIOutSerialPort, &s.VideoOverlaySerialPort,
               &s.ASCIIOutFormat, &s.TipConfiguration, &s.TipDiameter, &s.GPSSerialPort,
               &s.LumenProbeOverlay, &s.DepthSignificantDigits});
  return fields;
}

std::vector<SettingField> FieldsAsRead() {
  std::vector<SettingField> fields = FieldsAsSaved();
  fields[kPosition43] = &settings.GPSSerialPort;
  return fields;
}

std::vector<SettingField> FieldsAsRewritten() {
  std::vector<SettingField> fields = FieldsAsRead();
  fields.erase(fields.begin() + kPosition60);
  return fields;
}

void ReadField(ValueReader& reader, const SettingField& field) {
  std::visit([&](auto* place) { *place = Reading{reader}(place); }, field);
}

void SkipField(ValueReader& reader, const SettingField& field) {
  std::visit([&](auto* place) { static_cast<void>(Reading{reader}(place)); }, field);
}

std::string TextOfFields(const std::vector<SettingField>& fields) {
  ValueWriter writer;
  for (const SettingField& field : fields) std::visit(Writing{writer}, field);
  return writer.Text();
}

}  // namespace penlog
