// The load of the console's screen.
#pragma once

#include <string>

namespace penlog {

void Main_Load();

/// The note on the tip; with a ball tip its first figure is the area too, and stays so.
std::string TipNote();

}  // namespace penlog
