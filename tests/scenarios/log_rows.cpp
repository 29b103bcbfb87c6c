#include "scenarios/log_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "platform/clock.h"
#include "platform/memory_disk.h"
#include "platform/numbers.h"
#include "scenarios/scenario.h"

namespace penlog {

namespace {

constexpr int kCptHeader = 23;
constexpr int kTemporaryHeader = 17;
constexpr double kUnit = 1.001e-5;  // one unit of the last place of "####0.00000"

std::string Print(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  std::replace(std::begin(text), std::end(text), ',', '.');  // whatever the locale writes
  return text;
}

std::vector<double> Numbers(const std::string& reply) {
  std::istringstream words(reply);
  std::vector<double> numbers;
  for (double number = 0; words >> number;) numbers.push_back(number);
  return numbers;
}

struct Reading {
  Micros time = 0;
  std::vector<double> fields;
};

std::vector<Reading> Readings(const RigLog& log) {
  std::vector<Reading> readings;
  for (const RigRecord& record : log.Of(RigLogKind::Reply)) {
    if (record.number == 0 && record.sampled > 0) {
      readings.push_back({record.time, Numbers(record.text)});
    }
  }
  return readings;
}

/// The mean of the last four readings that were complete before `time`.
std::vector<double> MeanOfFour(const std::vector<Reading>& readings, Micros time) {
  const auto later = [](Micros t, const Reading& reading) { return t < reading.time; };
  const auto end = std::upper_bound(readings.begin(), readings.end(), time, later);
  if (end - readings.begin() < 4) return {};
  std::vector<double> mean((end - 1)->fields.size());
  for (auto reading = end - 4; reading != end; ++reading) {
    for (std::size_t f = 0; f < mean.size() && f < reading->fields.size(); ++f) {
      mean[f] += reading->fields[f] / 4;
    }
  }
  return mean;
}

/// The field of `line` at `at` must be `value` in `format`, give or take `tolerance`.
void ExpectField(const std::string& line, std::size_t at, std::size_t width, const char* format,
                 double value, double tolerance) {
  ASSERT_GE(line.size(), at + width) << line;
  const std::string field = line.substr(at, width);
  const double was = LeadingNumber(field);
  EXPECT_EQ(field, Print(format, was)) << line;
  EXPECT_NEAR(was, value, tolerance) << line;
}

}  // namespace

int SoundingShape::DelayRows() const {
  int most = 0;
  for (const auto& column : columns) most = std::max(most, column.delay);
  return most;
}

SoundingShape DcsShape(double step) {
  const auto rows = [step](double distance) {
    return static_cast<int>(std::lround(distance / 1000.0 / step));
  };
  SoundingShape shape;
  shape.columns = {
      {1, 0, 0}, {2, 1, rows(100)}, {3, 2, rows(40)}, {6, 3, rows(60)}, {7, 4, rows(80)}};
  shape.sleeve_factor = 0.15 / 4.5;
  shape.step = step;
  return shape;
}

RowClock::RowClock(MemoryDisk& disk, std::string file) {
  disk.before = [this, file = std::move(file)](std::string_view operation,
                                               const std::string& path) {
    if (operation == "append" && path.ends_with(file)) times_.push_back(Now());
  };
}

LogRows::LogRows(const RigLog& log, const std::vector<Micros>& row_times,
                 const SoundingShape& shape, double baseline1)
    : shape_(shape) {
  const auto readings = Readings(log);
  for (const Micros time : row_times) {
    const auto mean = MeanOfFour(readings, time);
    std::map<int, double> row;
    for (const auto& column : shape_.columns) {
      const auto field = static_cast<std::size_t>(column.field);
      row[column.channel] = field < mean.size() ? mean[field] : 0.0;
    }
    row[2] -= (row[1] - baseline1) * shape_.sleeve_factor;
    rows_.push_back(std::move(row));
  }
  TakeSpeeds(log, row_times);
}

/// A row falls due while a reading is under way; its time is that of the pass that asked for it.
void LogRows::TakeSpeeds(const RigLog& log, const std::vector<Micros>& row_times) {
  std::vector<Micros> asked;
  for (const RigRecord& record : log.Of(RigLogKind::Command)) {
    if (record.number == 0 && record.text == "D") asked.push_back(record.time);
  }
  Micros before = 0;
  for (const Micros time : row_times) {
    const auto next = std::lower_bound(asked.begin(), asked.end(), time);
    const Micros pass = next - asked.begin() >= 1 ? *(next - 1) : 0;
    const double seconds = static_cast<double>(pass - before) / 1e6;
    speeds_.push_back(before == 0 || seconds <= 0 ? 0.0 : shape_.step * 100 / seconds);
    before = pass;
  }
}

/// Alignment shifts each channel by its own delay and takes the speed of the newest row.
void LogRows::ExpectRow(const std::string& line, int row, int speed_row, bool aligned) const {
  const double depth = aligned && shape_.elevation ? -Depth(row) : Depth(row);
  const double speed = Speed(speed_row);
  if (aligned) {
    ExpectField(line, 0, 7, "%7.3f", depth, 0.00051);
    ExpectField(line, 7, 6, "%6.2f", speed, 0.006 + 0.003 * speed);
  } else {
    ExpectField(line, 0, 6, "%6.2f", depth, 0.0051);
    ExpectField(line, 6, 7, "%7.2f", speed, 0.006 + 0.003 * speed);
  }
  std::size_t at = 13;
  for (const auto& column : shape_.columns) {
    const int from = aligned ? row + column.delay : row;
    ExpectField(line, at, 20, "%20.5f", Value(from, column.channel), kUnit);
    at += 20;
  }
  EXPECT_EQ(line.size(), at) << line;
}

/// The rows that alignment held back: unshifted, -32768 where the sensor never came; rows 19 and
/// 20 of a sounding hold no channel at all.
void LogRows::ExpectFlushRow(const std::string& line, int row) const {
  const double speed = Speed(row);
  ExpectField(line, 0, 7, "%7.3f", shape_.elevation ? -Depth(row) : Depth(row), 0.00051);
  ExpectField(line, 7, 6, "%6.2f", speed, 0.006 + 0.003 * speed);
  std::size_t at = 13;
  for (const auto& column : shape_.columns) {
    if (row == 19 || row == 20) break;
    if (row <= Count() - column.delay) {
      ExpectField(line, at, 20, "%20.5f", Value(row, column.channel), kUnit);
    } else {
      EXPECT_EQ(line.substr(at, 20), "              -32768") << line;
    }
    at += 20;
  }
  EXPECT_EQ(line.size(), at) << line;
}

void LogRows::ExpectCptRows(const std::string& cpt, bool final_baseline) const {
  const auto lines = LinesOf(cpt);
  ASSERT_EQ(lines.size(),
            static_cast<std::size_t>(kCptHeader + Count() + (final_baseline ? 1 : 0)));
  const int held = shape_.DelayRows();
  for (int row = 1; row <= Count(); ++row) {
    SCOPED_TRACE("row " + std::to_string(row));
    const std::string& line = lines[static_cast<std::size_t>(kCptHeader + row - 1)];
    if (row <= Count() - held) {
      ExpectRow(line, row, row + held, true);
    } else {
      ExpectFlushRow(line, row);
    }
  }
}

void LogRows::ExpectTemporaryRows(const std::string& file) const {
  const auto lines = LinesOf(file);
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(kTemporaryHeader + Count()));
  for (int row = 1; row <= Count(); ++row) {
    SCOPED_TRACE("row " + std::to_string(row));
    const std::string& line = lines[static_cast<std::size_t>(kTemporaryHeader + row - 1)];
    ASSERT_TRUE(line.size() > 2 && line.front() == '"' && line.back() == '"') << line;
    ExpectRow(line.substr(1, line.size() - 2), row, row, false);
  }
}

}  // namespace penlog
