// What a sounding's files must hold, rebuilt from the rig's log alone: the mean of the last four
// replies before each row, and the rules by which rows are shifted, held back and flushed. Shares
// no code with the console.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "rig/rig.h"

namespace penlog {

class MemoryDisk;

/// How the cone's channels stand in the files.
struct FileColumn {
  int channel = 0;
  int field = 0;  ///< of the reply, from 0
  int delay = 0;  ///< rows that the sensor's distance makes
};

struct SoundingShape {
  std::vector<FileColumn> columns;
  double sleeve_factor = 0.0;  ///< of channel 1's load that channel 2 carries, V per V
  double start = 0.0;          ///< m, as the console counts it
  double step = 0.02;          ///< m
  bool elevation = false;
  int DelayRows() const;
};

/// The shape of the rigs with the cone "DCS0417", rows each `step` m.
SoundingShape DcsShape(double step);

/// When each row went to disk: listens from its making on.
class RowClock {
 public:
  RowClock(MemoryDisk& disk, std::string file);
  const std::vector<Micros>& Times() const { return times_; }

 private:
  std::vector<Micros> times_;
};

class LogRows {
 public:
  /// `baseline1`: channel 1's baseline, V.
  LogRows(const RigLog& log, const std::vector<Micros>& row_times, const SoundingShape& shape,
          double baseline1);

  int Count() const { return static_cast<int>(rows_.size()); }
  /// V, of row `row` from 1.
  double Value(int row, int channel) const {
    return rows_[static_cast<std::size_t>(row - 1)].at(channel);
  }
  /// m: the depth as read, from the number of the row.
  double Depth(int row) const { return shape_.start + row * shape_.step; }
  /// cm/s by the times of the readings; 0 for the first row.
  double Speed(int row) const { return speeds_[static_cast<std::size_t>(row - 1)]; }

  /// Compares the rows of the `.cpt` file, from behind its header of 23 lines on; with
  /// `final_baseline` one more line of readings must stand at the end.
  void ExpectCptRows(const std::string& cpt, bool final_baseline) const;
  /// Compares the rows of "TemporaryData.txt", from behind its header of 17 lines on.
  void ExpectTemporaryRows(const std::string& file) const;

 private:
  void ExpectRow(const std::string& line, int row, int speed_row, bool aligned) const;
  void ExpectFlushRow(const std::string& line, int row) const;
  void TakeSpeeds(const RigLog& log, const std::vector<Micros>& row_times);

  SoundingShape shape_;
  std::vector<std::map<int, double>> rows_;
  std::vector<double> speeds_;
};

}  // namespace penlog
