// The console between the set-up of its platform and its end.
#pragma once

#include <functional>

namespace penlog {

/// Wires the screens, shows the first one and serves events until the program ends; returns then,
/// with every port released and no file open. `at_end` runs before the screens are unloaded; it
/// must not yield.
void RunConsole(const std::function<void()>& at_end = {});

}  // namespace penlog
