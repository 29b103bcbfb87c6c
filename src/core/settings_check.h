// What is derived from the settings, and what a settings file edited by hand must not do.
#pragma once

#include <cstdint>

namespace penlog {

/// 3.14159 (d / 2)^2 of the ball's diameter as read, mm^2, rounded to the nearest integer.
std::int32_t LoadedBallTipArea();

/// Derives `DepthStepResolution`, `DepthStepCounts` and `PictureStepCounts`, and puts the tip back
/// to conical: each session starts so.
void DeriveSettings();

/// Tells the operator of values with which the console could not work, and replaces them for this
/// session: a depth resolution or step that isn't above 0, a port outside 0 to 255, a unit option
/// that the channel doesn't have, a language that isn't there. The file keeps what it has for them
/// (`settings_replaced.h`). A step that is no multiple of the resolution is told and kept.
void CheckSettings();

}  // namespace penlog
