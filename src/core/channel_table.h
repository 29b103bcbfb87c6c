// Tables indexed by channel number, and the table of recorded rows. A subscript outside its bounds
// is a run-time fault, as the routines' error traps expect it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/runtime_fault.h"

namespace penlog {

constexpr int kChannels = 30;     ///< channels are 1 to 30; entry 0 of each table is unused
constexpr int kMostRows = 10000;  ///< rows 0 to 10000

/// Subscripts 0 to 30.
template <class T>
class ChannelTable {
 public:
  T& operator()(int channel) { return values_[Check(channel)]; }
  const T& operator()(int channel) const { return values_[Check(channel)]; }
  void Fill(const T& value) { values_.fill(value); }

 private:
  static std::size_t Check(int channel) {
    if (channel < 0 || channel > kChannels) {
      throw RuntimeFault("Subscript out of range: channel " + std::to_string(channel));
    }
    return static_cast<std::size_t>(channel);
  }
  std::array<T, kChannels + 1> values_{};
};

/// Subscripts 0 to `Most`, then 0 to 30: label rows, unit options.
template <class T, int Most>
class OptionTable {
 public:
  T& operator()(int option, int channel) { return rows_[Check(option)](channel); }
  const T& operator()(int option, int channel) const { return rows_[Check(option)](channel); }

 private:
  static std::size_t Check(int option) {
    if (option < 0 || option > Most) {
      throw RuntimeFault("Subscript out of range: option " + std::to_string(option));
    }
    return static_cast<std::size_t>(option);
  }
  std::array<ChannelTable<T>, static_cast<std::size_t>(Most) + 1> rows_{};
};

/// One 32-bit float for each row 0 to 10000.
class RowColumn {
 public:
  float& operator()(std::int64_t row) { return values_[Check(row)]; }
  float operator()(std::int64_t row) const { return values_[Check(row)]; }
  static std::size_t Check(std::int64_t row) {
    if (row < 0 || row > kMostRows) {
      throw RuntimeFault("Subscript out of range: row " + std::to_string(row));
    }
    return static_cast<std::size_t>(row);
  }

 private:
  std::vector<float> values_ = std::vector<float>(kMostRows + 1, 0.0f);
};

/// Rows 0 to 10000 by columns 0 to 30: column 0 the depth in metres, 1 to 30 raw readings.
class RowTable {
 public:
  float& operator()(std::int64_t row, int channel) { return values_[Place(row, channel)]; }
  float operator()(std::int64_t row, int channel) const { return values_[Place(row, channel)]; }

 private:
  static std::size_t Place(std::int64_t row, int channel) {
    if (channel < 0 || channel > kChannels) {
      throw RuntimeFault("Subscript out of range: channel " + std::to_string(channel));
    }
    return RowColumn::Check(row) * (kChannels + 1) + static_cast<std::size_t>(channel);
  }
  std::vector<float> values_ =
      std::vector<float>(static_cast<std::size_t>(kMostRows + 1) * (kChannels + 1), 0.0f);
};

}  // namespace penlog
