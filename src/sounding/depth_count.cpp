#include "sounding/depth_count.h"

#include <array>

#include "core/feet.h"
#include "platform/numbers.h"
#include "platform/serial_port.h"

namespace penlog {

namespace {

struct EncoderRow {
  EncoderPhases before;
  PhaseKind kind;
  bool held;
  EncoderPhases after;
  DepthStepKind step;
};

constexpr auto kDown = PhaseKind::Down;
constexpr auto kUp = PhaseKind::Up;
constexpr auto kNone = DepthStepKind::None;

/// Each pair of registers with each event has its answer here.
constexpr std::array<EncoderRow, 16> kEncoderTable{{
    {{0, 0}, kDown, true, {0, 0}, kNone},
    {{0, 0}, kDown, false, {1, 0}, kNone},
    {{0, 0}, kUp, true, {0, 0}, kNone},
    {{0, 0}, kUp, false, {0, 1}, kNone},
    {{0, 1}, kDown, true, {0, 1}, kNone},
    {{0, 1}, kDown, false, {1, 1}, DepthStepKind::Down},
    {{0, 1}, kUp, true, {0, 0}, kNone},
    {{0, 1}, kUp, false, {0, 1}, kNone},
    {{1, 0}, kDown, true, {0, 0}, kNone},
    {{1, 0}, kDown, false, {1, 0}, kNone},
    {{1, 0}, kUp, true, {1, 0}, kNone},
    {{1, 0}, kUp, false, {1, 1}, DepthStepKind::Up},
    {{1, 1}, kDown, true, {0, 1}, kNone},
    {{1, 1}, kDown, false, {1, 1}, DepthStepKind::Down},
    {{1, 1}, kUp, true, {1, 0}, kNone},
    {{1, 1}, kUp, false, {1, 1}, DepthStepKind::Up},
}};

/// Place of a row in the table: the two registers, the kind and the line as bits.
std::size_t RowPlace(EncoderPhases before, PhaseKind kind, bool held) {
  return (before.down != 0 ? 8u : 0u) + (before.up != 0 ? 4u : 0u) + (kind == kUp ? 2u : 0u) +
         (held ? 0u : 1u);
}

float Shown(float metres, int units, int format) {
  const float signed_metres = format == 1 ? -metres : metres;
  return units == 1 ? signed_metres * kFeetPerMetre : signed_metres;
}

std::string UnitText(int units) {
  return units == 1 ? "ft" : "m";
}

}  // namespace

PhaseKind PhaseOf(int comm_event, int direction) {
  const bool swapped = direction == 1;
  if (comm_event == kCommCd) return swapped ? PhaseKind::Down : PhaseKind::Up;
  if (comm_event == kCommCts) return swapped ? PhaseKind::Up : PhaseKind::Down;
  return PhaseKind::Other;
}

EncoderStep DecodeEncoder(EncoderPhases before, PhaseKind kind, bool held) {
  if (kind == PhaseKind::Other) return {before, DepthStepKind::None};
  const EncoderRow& row = kEncoderTable[RowPlace(before, kind, held)];
  return {row.after, row.step};
}

DepthStepKind DecodePulse(int count_line, int clamp_line, int pressure_line) {
  if (count_line != 0 || clamp_line != 0) return DepthStepKind::None;
  return pressure_line == 0 ? DepthStepKind::Down : DepthStepKind::Up;
}

float DrainRebound(float rebound, float resolution) {
  const float left = rebound - resolution;
  return left < resolution * 0.5f ? 0.0f : left;
}

float PushSpeed(float depth_step, double seconds) {
  return static_cast<float>(static_cast<double>(depth_step * 100.0f) / seconds);
}

DepthTexts MakeDepthTexts(float depth, float rebound, int units, int format) {
  const float shown = Shown(depth, units, format);
  const std::string unit = UnitText(units);
  return {Format(shown, "###0.000") + " " + unit, Format(shown, "##0.00") + unit,
          Format(Shown(-rebound, units, 0), "##0.000") + " " + unit};
}

DepthTexts MakeStartTexts(float depth, int units, int format) {
  const std::string text = Format(Shown(depth, units, format), "##0.00");
  const std::string unit = UnitText(units);
  return {text + " " + unit, text + unit, Format(0.0f, "##0.000") + " " + unit};
}

}  // namespace penlog
