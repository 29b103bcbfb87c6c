// How many feet a metre has. It is 3.281 wherever a depth is typed, counted, shown or drawn, so
// that what is shown can be typed back.
#pragma once

namespace penlog {

/// For depths, which are 32-bit floats.
constexpr float kFeetPerMetre = 3.281F;
/// For numbers that are typed and shown again: rounded once, behind the arithmetic.
constexpr double kFeetPerMetreTyped = 3.281;

}  // namespace penlog
