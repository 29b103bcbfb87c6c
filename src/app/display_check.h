// Whether windows can be shown.
#pragma once

namespace penlog {

/// True when the environment names a display of X or Wayland.
bool HasDisplay();

/// True when the environment names how the toolkit shows windows, whatever display there is.
bool PlatformIsNamed();

}  // namespace penlog
