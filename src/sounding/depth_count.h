// Depth from the truck interface's lines, as plain calculations: decoding, rebound, speed, texts.
//
// The encoder gives two phases; a line that is not held reads 1. One edge in four counts: the one
// that brings both phases to 1, and the line that arrives second tells the direction. Fault model:
// a lost edge can't be seen; chatter on one line decodes as the same step again each time that the
// line returns while the other stands at 1. Rate limit: none of its own, each edge is an event.
#pragma once

#include <cstdint>
#include <string>

namespace penlog {

enum class DepthStepKind { None, Down, Up };

/// Which phase register an event sets; `Other` for a line that carries no phase.
enum class PhaseKind { Down, Up, Other };

struct EncoderPhases {
  std::int16_t down = 0;  ///< 1 line not held, 0 held
  std::int16_t up = 0;
  bool operator==(const EncoderPhases&) const = default;
};

struct EncoderStep {
  EncoderPhases phases;
  DepthStepKind step = DepthStepKind::None;
};

/// The phase that CD (`comm_event` 5) or CTS (3) carries: with `direction` 0 CD is the up phase and
/// CTS the down phase, with 1 they are swapped.
PhaseKind PhaseOf(int comm_event, int direction);

/// The registers after an event, and the step that it makes.
EncoderStep DecodeEncoder(EncoderPhases before, PhaseKind kind, bool held);

/// One pulse of the proximity counter: it counts with the line held and the clamp closed; the
/// pressure switch stands in for the direction.
DepthStepKind DecodePulse(int count_line, int clamp_line, int pressure_line);

/// `rebound` (m) after one step down. What is left of rounding counts as drained, so that n steps
/// up need exactly n steps down.
float DrainRebound(float rebound, float resolution);

/// Push speed in cm/s over one recorded step of `depth_step` metres in `seconds` (above 0).
float PushSpeed(float depth_step, double seconds);

/// Above this a speed (cm/s) is a spike: shown once and not recorded.
constexpr float kFastestPush = 40.0f;

struct DepthTexts {
  std::string depth;    ///< lblDepth
  std::string big;      ///< lblBigDepth
  std::string rebound;  ///< lblRebound, negated in each format
};

/// The three labels from metres; `units` 1 shows feet, `format` 1 is elevation: negated.
DepthTexts MakeDepthTexts(float depth, float rebound, int units, int format);

/// The labels at the start of a sounding and at a resume: both with two decimals.
DepthTexts MakeStartTexts(float depth, int units, int format);

}  // namespace penlog
