// Who decides the clamp and the push state: the truck's lines (auto) or the operator (manual).
#pragma once

namespace penlog {

/// Auto mode with its buttons; no line is read.
void SetAutoMode();

/// Auto mode; the lines are read at once, so that no manual state is kept.
void Main_cmdAuto_Click();
/// Manual mode: pushing, and the operator's clamp; CTS and DSR are ignored from now on.
void Main_cmdManual_Click();
/// Opens or closes the operator's clamp.
void Main_cmdToggleClamp_Click();

}  // namespace penlog
