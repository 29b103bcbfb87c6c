#include "real_time/sounding_lines.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/numbers.h"
#include "platform/texts.h"
#include "support/sounding_lines.h"

namespace penlog {

namespace {

constexpr std::size_t kHead = 13;
constexpr std::size_t kField = 20;
constexpr double kSleeveTakesOfTip = 0.15;  // V at the tip's full scale, by the cone's record

std::vector<double> Numbers(const std::vector<std::string>& fields) {
  std::vector<double> numbers;
  for (const auto& field : fields) numbers.push_back(LeadingNumber(field));
  return numbers;
}

int LargestOf(const std::map<int, int>& delays) {
  int largest = 0;
  for (const auto& [channel, delay] : delays) largest = std::max(largest, delay);
  return largest;
}

std::string Speed(const std::string& row) {
  return row.substr(6, 7);
}

}  // namespace

std::vector<std::string> LinesOf(const std::string& file) {
  EXPECT_EQ(LineEndFault(file), "");
  return WholeLines(file);
}

std::vector<std::string> FieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  for (std::size_t at = kHead; at < line.size(); at += kField) {
    fields.push_back(line.substr(at, kField));
    EXPECT_EQ(fields.back().size(), kField) << line;
  }
  return fields;
}

CptFile TakeApart(const std::string& text) {
  CptFile file;
  const auto lines = LinesOf(text);
  EXPECT_GT(lines.size(), kCptHead) << text;
  if (lines.size() <= kCptHead) return file;
  const auto rows_begin = lines.begin() + kCptHead;
  file.header.assign(lines.begin(), rows_begin);
  file.rows.assign(rows_begin, lines.end() - 1);
  file.last = lines.back();
  for (const double channel : Numbers(FieldsOf(file.header[15]))) {
    file.channels.push_back(static_cast<int>(channel));
  }
  file.sensitivity = Numbers(FieldsOf(file.header[17]));
  file.baselines = Numbers(FieldsOf(file.header[18]));
  return file;
}

std::vector<std::string> TemporaryRows(const std::string& file) {
  EXPECT_EQ(LineEndFault(file), "");
  std::vector<std::string> rows = StoredLines(file);
  for (auto& row : rows) {
    EXPECT_TRUE(row.size() > 2 && row.front() == '"' && row.back() == '"') << row;
    row = row.substr(1, row.size() - 2);
  }
  return rows;
}

std::vector<std::string> AlignedRows(const std::vector<std::string>& temporary,
                                     const std::vector<int>& channels,
                                     const std::map<int, int>& delays) {
  const int newest = static_cast<int>(temporary.size());
  const int held_back = LargestOf(delays);
  const auto read = [&temporary](int row) { return temporary[static_cast<std::size_t>(row - 1)]; };
  std::vector<std::string> rows;
  for (int row = 1; row <= newest; ++row) {
    const bool flush = row > newest - held_back;
    // Files of the three-digit form give the speed one character less.
    std::string text = Speed(read(flush ? row : row + held_back)).substr(1);
    for (std::size_t column = 0; column < channels.size(); ++column) {
      const int delay = delays.at(channels[column]);
      if (flush && (row == 19 || row == 20)) continue;
      if (flush && row > newest - delay) {
        text += RightField("-32768", kField);
      } else {
        text += FieldsOf(read(flush ? row : row + delay))[column];
      }
    }
    rows.push_back(text);
  }
  return rows;
}

std::vector<SentReading> SentReadings(const std::vector<RigRecord>& log) {
  std::vector<SentReading> sent;
  for (const auto& record : log) {
    if (record.kind != RigLogKind::Reply || record.sampled == 0) continue;
    SentReading reading{record.time, {}};
    std::string_view text = record.text;
    while (!text.empty() && text != "\r\n") {
      reading.values.push_back(LeadingNumber(text));
      text.remove_prefix(std::min(text.size(), text.find_first_of(" \r", 1)));
    }
    sent.push_back(std::move(reading));
  }
  return sent;
}

std::vector<double> MeanOfFour(const std::vector<SentReading>& sent, std::size_t last,
                               const CptFile& file) {
  std::vector<double> mean(file.channels.size(), 0.0);
  for (std::size_t i = last - 3; i <= last; ++i) {
    EXPECT_EQ(sent[i].values.size(), mean.size());
    if (sent[i].values.size() != mean.size()) return mean;
    for (std::size_t c = 0; c < mean.size(); ++c) mean[c] += sent[i].values[c] / 4;
  }
  mean[1] -= (mean[0] - file.baselines[0]) * kSleeveTakesOfTip / file.sensitivity[0];
  return mean;
}

std::vector<Micros> TimesOfSteps(const std::vector<RigRecord>& log, double step, double early,
                                 int count) {
  std::vector<Micros> times;
  for (const auto& record : log) {
    if (static_cast<int>(times.size()) == count) break;
    const double next = step * static_cast<double>(times.size() + 1) - early;
    if (record.kind == RigLogKind::Edge && record.depth > next - 1e-6) times.push_back(record.time);
  }
  return times;
}

}  // namespace penlog
