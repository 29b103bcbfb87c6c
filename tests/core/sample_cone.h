// The memory of a small cone: tip, sleeve, and what a test adds.
#pragma once

#include <string>

#include "conelink/value_coding.h"

namespace penlog {

inline std::string Coded(float value, int count) {
  return SingleToBinary(value, count);
}

/// One channel record without sub-records: full scale 100000, output 0 to 100 at full scale.
inline std::string SampleRecord(int channel, char letter) {
  return std::string(1, static_cast<char>(64 + channel)) + letter + Coded(100000, 4) +
         Coded(100, 4) + Coded(0, 4) + Coded(100, 2) + "@";
}

inline std::string SampleMemory(const std::string& records, const std::string& id = "DCS0042") {
  return "01" + id + "010203" + "040506" + Coded(1234, 3) + Coded(64, 3) + Coded(19200, 3) +
         records + "@";
}

inline std::string TipAndSleeve() {
  return SampleRecord(1, 'T') + SampleRecord(2, 'F');
}

}  // namespace penlog
