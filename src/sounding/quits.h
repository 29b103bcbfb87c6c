// Quits: limits on the readings that stop the rig by RTS of the truck's port. They latch, are
// shown, and can be overridden while the operator holds the button.
//
//   0 clear      limit exceeded -> 1 warning shown, RTS true
//   1 latched    press          -> 3 RTS false, override shown
//   3 overridden limit exceeded -> 3 warning and override shown, RTS stays false
//                release        -> 0 override hidden
//   0            limits clear   -> 0 warning hidden
#pragma once

namespace penlog {

/// Brings the limits into the scale of `Readings`, once, with the baselines of that moment.
void ScaleQuitLimits();

/// Tests the limits; the caller tests `QuitsActive` and the first metre. The first ten calls after
/// a start or a link loss only count.
void CheckQuits();

void Main_cmdResetQuits_Press();
void Main_cmdResetQuits_Release();

}  // namespace penlog
