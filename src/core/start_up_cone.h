// The cone is looked for on its proved port, and its report page leads on to the sounding's setup.
#pragma once

namespace penlog {

/// Reads the cone and, where they are looked for, its modules, again and again with a line break
/// between; after each fifth time all ports are scanned. Returns when the report page was left, or
/// when the operator was told why the start can't go on.
void LookForCone();

}  // namespace penlog
