#include "core/soil_tables.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {
namespace {

constexpr float kRatioStep = 0.1f;  // percent; an index counts tenths of a percent

struct SoilHeader {
  int classes = 0;
  int first = 0;
  int last = 0;
  int columns = 0;
  int bands = 0;  // in the whole grid
  float highest_bound = 0;
};

// A wrong table would give wrong soil names with no other sign of it: refuse what doesn't fit.
void Require(bool holds, const std::string& what) {
  if (!holds) throw RuntimeFault("intubc.asc contradicts itself: " + what);
}

void RequireValue(float value, float wanted, const std::string& what) {
  Require(std::abs(value - wanted) <= 0.0005f,
          what + " is " + PlainNumber(value) + " and must be " + PlainNumber(wanted));
}

void RequireRange(int value, int low, int high, const std::string& what) {
  Require(value >= low && value <= high, what + " is " + PlainNumber(value) + " and must be " +
                                             PlainNumber(low) + " to " + PlainNumber(high));
}

void ReadRatios(ValueReader& file, const SoilHeader& header) {
  RequireValue(file.ReadSingle(), kRatioStep, "the friction ratio step");
  RequireValue(file.ReadSingle(), 0.0f, "the first friction ratio");
  RequireValue(file.ReadSingle(), static_cast<float>(header.last) * kRatioStep,
               "the last friction ratio");
}

// The highest bound that may stand in the grid, log10 of bar: bounds that close the end of a zone
// may lie above the chart, but not by decades.
float ReadTipRange(ValueReader& file) {
  const float lowest = file.ReadSingle();
  const float highest = file.ReadSingle();
  Require(lowest > 0 && lowest < highest, "the chart's lowest tip resistance is " +
                                              PlainNumber(lowest) + " bar, its highest " +
                                              PlainNumber(highest));
  return std::log10(highest) + 1.0f;
}

SoilHeader ReadHeader(ValueReader& file) {
  SoilHeader header;
  header.classes = file.ReadInteger();
  RequireRange(header.classes, 1, kSoilClasses, "the number of classes");
  header.first = file.ReadInteger();
  RequireRange(header.first, 0, 0, "the first index");
  header.last = file.ReadInteger();
  RequireRange(header.last, header.first, kSoilIndices - 1, "the last index");
  header.columns = file.ReadInteger();
  RequireRange(header.columns, 1, kSoilColumns - 1, "the number of columns");
  ReadRatios(file, header);
  header.highest_bound = ReadTipRange(file);
  RequireRange(file.ReadInteger(), kGroundZone, kGroundZone, "the zone below all bands");
  RequireValue(file.ReadSingle(), kTipToBar, "the factor to bar");
  header.bands = file.ReadInteger();
  for (int note = 0; note < 3; ++note) file.ReadSingle();
  return header;
}

void ReadClass(ValueReader& file, SoilTables& tables) {
  file.ReadSingle();
  const std::int16_t number = file.ReadInteger();
  RequireRange(number, 1, kSoilClasses, "a class number");
  const auto at = static_cast<std::size_t>(number);
  Require(tables.ClassNumber[at] == 0, "class " + PlainNumber(number) + " stands there twice");
  tables.ClassNumber[at] = number;
  tables.ClassName[at] = file.ReadString();
  tables.ClassShortName[at] = file.ReadString();
  tables.SptDivisor[at] = file.ReadSingle();
  Require(tables.SptDivisor[at] > 0, "the tip resistance over N of class " + PlainNumber(number) +
                                         " is " + PlainNumber(tables.SptDivisor[at]));
}

// The zone of a band must be a class; the ground below all bands has no band.
bool IsBandZone(const SoilTables& tables, float zone) {
  if (zone < 1 || zone > kSoilClasses || zone != std::floor(zone)) return false;
  return zone != kGroundZone && tables.ClassNumber[static_cast<std::size_t>(zone)] != 0;
}

// True if the cell holds a band.
bool ReadCell(ValueReader& file, const SoilHeader& header, SoilTables& tables, std::size_t index,
              std::size_t column) {
  const float zone = file.ReadSingle();
  const float bound = file.ReadSingle();
  const std::string place = "index " + PlainNumber(static_cast<int>(index)) + ", column " +
                            PlainNumber(static_cast<int>(column));
  Require((zone == 0) == (bound == 0),
          place + " has zone " + PlainNumber(zone) + " with bound " + PlainNumber(bound));
  if (zone == 0) return false;
  Require(IsBandZone(tables, zone), place + " has a band of zone " + PlainNumber(zone));
  Require(column <= kSoilBands, place + " has a band that is never searched");
  Require(bound > 0 && bound <= header.highest_bound,
          place + " has bound " + PlainNumber(bound) + ", which is not on the chart");
  tables.SbtTable[index][column] = {zone, bound};
  return true;
}

void ReadGrid(ValueReader& file, const SoilHeader& header, SoilTables& tables) {
  int bands = 0;
  for (int index = header.first; index <= header.last; ++index) {
    const int before = bands;
    for (int column = 1; column <= header.columns; ++column) {
      bands += ReadCell(file, header, tables, static_cast<std::size_t>(index),
                        static_cast<std::size_t>(column));
    }
    Require(bands > before, "index " + PlainNumber(index) + " has no band");
  }
  Require(bands == header.bands, "the grid has " + PlainNumber(bands) + " bands, its header says " +
                                     PlainNumber(header.bands));
}

}  // namespace

void LoadSoilTables(ValueReader& file) {
  SoilTables tables;
  const SoilHeader header = ReadHeader(file);
  for (int line = 0; line < header.classes; ++line) ReadClass(file, tables);
  Require(tables.ClassNumber[kGroundZone] != 0, "class 2, the zone below all bands, is missing");
  tables.SoilNote = "*Soil behavior type and SPT based on data from " + file.ReadString();
  ReadGrid(file, header, tables);
  Require(file.AtEnd(), "values follow behind the grid");
  tables.FrictionRatioMax = static_cast<std::int16_t>(header.last - header.first + 1);
  soil = std::move(tables);
}

}  // namespace penlog
