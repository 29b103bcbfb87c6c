// Memory of a cone or a module for tests, coded by hand so that no routine under test has a part in
// it.
#pragma once

#include <cstdint>
#include <string>

namespace penlog {

/// The lowest `6 * characters` bits of `value`.
inline std::string Coded(std::int64_t value, int characters) {
  std::string text;
  for (int i = 0; i < characters; ++i) {
    text.insert(text.begin(), static_cast<char>(64 + value % 64));
    value /= 64;
  }
  return text;
}

/// Four characters: `magnitude` with `places` decimals.
inline std::string Decimal(std::int64_t magnitude, int places = 0) {
  const std::int64_t sign = magnitude < 0 ? 1 : 0;
  const std::int64_t size = magnitude < 0 ? -magnitude : magnitude;
  return Coded(((sign * 8 + places) << 20) + size, 4);
}

struct RecordImage {
  int number = 1;
  std::string letter = "T";
  std::string full_scale = Decimal(100000);
  std::string output_full = Decimal(5);
  std::string output_zero = Decimal(5, 1);
  int millimetres = 0;
  int flags = 0;

  std::string Text() const {
    return Coded(number, 1) + letter + full_scale + output_full + output_zero +
           Coded(millimetres, 2) + Coded(flags, 1);
  }
};

/// The 30 characters of the header.
inline std::string HeaderImage(const std::string& number, int distance_pushed = 1234,
                               const std::string& field1 = "AB") {
  return field1 + number + "150119" + "200319" + Coded(distance_pushed, 3) + Coded(128, 3) +
         Coded(19200, 3);
}

inline std::string EndOfList() {
  return "@";
}

}  // namespace penlog
