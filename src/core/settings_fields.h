// The values of "System Setup Values.txt" in their order. The file has no keys and no version
// number: a value is known by its position alone.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/value_reader.h"

namespace penlog {

/// A 16-bit integer, a 32-bit float or a quoted text.
using SettingField = std::variant<std::int16_t*, float*, std::string*>;

constexpr int kSettingValues = 62;

/// The 62 values as the reader takes them. Position 43 goes to `GPSSerialPort`, which position 60
/// then overwrites: the calibrator's port is written there, and never taken up again.
std::vector<SettingField> FieldsAsRead();
/// The 62 values as they are saved.
std::vector<SettingField> FieldsAsSaved();
/// The 61 values of the load's own rewrite: `GPSSerialPort` at position 43, and no position 60.
std::vector<SettingField> FieldsAsRewritten();

/// Reads one value into its place; a value of the wrong type raises a `RuntimeFault`.
void ReadField(ValueReader& reader, const SettingField& field);
/// Reads a value of that type and drops it.
void SkipField(ValueReader& reader, const SettingField& field);
/// The whole text of a file with these values.
std::string TextOfFields(const std::vector<SettingField>& fields);

}  // namespace penlog
