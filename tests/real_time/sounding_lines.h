// The lines of a sounding's files taken apart, and what they must say of each other.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "rig/rig_log.h"

namespace penlog {

/// Lines without their CR LF; a line that ends in another way fails the test.
std::vector<std::string> LinesOf(const std::string& file);

/// Fields of 20 characters behind the first 13.
std::vector<std::string> FieldsOf(const std::string& line);

struct CptFile {
  std::vector<std::string> header;  ///< 23 lines
  std::vector<std::string> rows;    ///< without the last line
  std::string last;                 ///< the final baseline
  std::vector<int> channels;        ///< by column
  std::vector<double> sensitivity;  ///< by column
  std::vector<double> baselines;    ///< by column
};
CptFile TakeApart(const std::string& file);

/// Rows of "TemporaryData.txt", without their quotes; its header is left out.
std::vector<std::string> TemporaryRows(const std::string& file);

/// The rows that the `.cpt` file must hold behind their depths, from the rows as they were read:
/// each channel of `delays` shifted by its rows, the last `delays` rows without a shift, with
/// -32768 for a sensor that has not come so deep, and with no channel at all in rows 19 and 20 of
/// these.
std::vector<std::string> AlignedRows(const std::vector<std::string>& temporary,
                                     const std::vector<int>& channels,
                                     const std::map<int, int>& delays);

/// A reading that the rig has sent, with the time at which its last byte left.
struct SentReading {
  Micros time = 0;
  std::vector<double> values;  ///< by column of a cone without modules: 1, 2, 3, 6, 7
};
std::vector<SentReading> SentReadings(const std::vector<RigRecord>& log);

/// Mean of the four readings up to and with `last`, the tip's load taken from the sleeve.
std::vector<double> MeanOfFour(const std::vector<SentReading>& sent, std::size_t last,
                               const CptFile& file);

/// Times of the edges with which `step`, 2 `step` ... below the surface were counted: the contact
/// changes `early` metres before them.
std::vector<Micros> TimesOfSteps(const std::vector<RigRecord>& log, double step, double early,
                                 int count);

}  // namespace penlog
