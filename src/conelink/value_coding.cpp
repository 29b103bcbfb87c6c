#include "conelink/value_coding.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr int kBitsPerCharacter = 6;
constexpr int kCodeOffset = 64;
constexpr std::size_t kLongestPlainNumber = 18;  // bits
constexpr int kMagnitudeBits = 20;
constexpr int kSignificantDigits = 7;

/// Appends the bits of `rest`, weight 2^highest first. What is above their range fills all of
/// them.
void AppendBits(std::int64_t rest, int highest, std::string& bits) {
  for (int k = highest; k >= 0; --k) {
    const std::int64_t weight = std::int64_t{1} << k;
    bits += rest >= weight ? '1' : '0';
    if (rest >= weight) rest -= weight;
  }
}

std::int64_t BitsToInteger(std::string_view bits) {
  std::int64_t sum = 0;
  for (const char bit : bits) sum = sum * 2 + (bit == '1' ? 1 : 0);
  return sum;
}

/// Summed in single precision, highest weight first. A run too long for the type, which only a
/// disturbed line sends, gives its largest value.
float BitsToSingle(std::string_view bits) {
  float sum = 0;
  auto weight = static_cast<int>(bits.size());
  for (const char bit : bits) {
    --weight;
    if (bit == '1') sum += std::ldexp(1.0f, weight);
  }
  return std::min(sum, std::numeric_limits<float>::max());
}

/// Places behind the point that show seven significant digits.
int PlacesFor(float value) {
  int places = kSignificantDigits;
  for (double power = 1; value >= power && places > 0; power *= 10) --places;
  for (double power = 0.1; value < power; power /= 10) ++places;
  return places;
}

/// Seven significant digits, no exponent, no trailing zeros: "12.5".
std::string SevenDigits(float value) {
  const int places = PlacesFor(value);
  if (places == 0) return Format(value, "0");
  return Format(value, "0." + std::string(static_cast<std::size_t>(places), '#'));
}

struct DecimalParts {
  std::int64_t magnitude = 0;
  int places = 0;
};

DecimalParts ToDecimalParts(float value) {
  if (!std::isfinite(value)) throw RuntimeFault("Overflow");
  if (value == std::floor(value)) return {ToInteger32(static_cast<double>(value)), 0};
  std::string digits = SevenDigits(value);
  DecimalParts parts;
  const auto point = digits.rfind('.');
  if (point != std::string::npos) {
    parts.places = static_cast<int>(digits.size() - point - 1);
    digits.erase(point, 1);
  }
  parts.magnitude = static_cast<std::int64_t>(LeadingNumber(digits));
  return parts;
}

}  // namespace

float BinaryToSingle(std::string_view text) {
  std::string bits;
  for (const char character : text) {
    const int code = static_cast<unsigned char>(character);
    AppendBits(code - kCodeOffset, kBitsPerCharacter - 1, bits);
  }
  bool negative = false;
  std::int64_t places = 0;
  if (bits.size() > kLongestPlainNumber) {
    negative = bits[0] == '1';
    places = BitsToInteger(std::string_view(bits).substr(1, 3));
    bits.erase(0, 4);
  }
  float value = BitsToSingle(bits);
  if (negative) value *= -1.0f;
  float divisor = 1;
  for (std::int64_t place = 0; place < places; ++place) divisor *= 10;
  return value / divisor;
}

std::string SingleToBinary(float& value, int count) {
  std::string bits = value < 0 ? "1" : "0";
  value = std::fabs(value);
  const DecimalParts parts = ToDecimalParts(value);
  AppendBits(parts.places, 2, bits);
  AppendBits(parts.magnitude, kMagnitudeBits - 1, bits);
  std::string text;
  for (std::size_t at = 0; at < bits.size(); at += kBitsPerCharacter) {
    const auto group = BitsToInteger(std::string_view(bits).substr(at, kBitsPerCharacter));
    text += static_cast<char>(kCodeOffset + group);
  }
  return Right(text, count);
}

void SplitConeReply(const std::string& reply, ReplyFields& tokens) {
  std::string_view text = reply;
  for (std::size_t i = 1; i < 30; ++i) {
    tokens[i].clear();
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const auto blank = text.find(' ');
    if (blank == std::string_view::npos) {
      for (std::size_t rest = i; rest <= 30; ++rest) tokens[rest].clear();
      return;
    }
    tokens[i] = text.substr(0, blank + 1);
    text.remove_prefix(blank + 1);
  }
}

std::array<std::int16_t, kSamplesPerBlock> DecodeSeismicBlock(const SeismicBytes& block) {
  std::array<std::int16_t, kSamplesPerBlock> samples{};
  for (std::size_t group = 0; group < kSamplesPerBlock / 2; ++group) {
    const std::uint8_t* bytes = &block[3 * group + 1];
    samples[2 * group] = static_cast<std::int16_t>((bytes[1] >> 4) * 256 + bytes[0]);
    samples[2 * group + 1] = static_cast<std::int16_t>((bytes[1] & 15) * 256 + bytes[2]);
  }
  return samples;
}

}  // namespace penlog
