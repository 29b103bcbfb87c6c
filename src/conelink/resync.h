// Recovery of a cone that repeats itself or has just been found again.
#pragma once

namespace penlog {

/// Wakes the cone, selects its channels and reads until two readings differ in their first 15
/// characters, or the second has fewer than 6. Sets `ConeLinkUp` and takes the cone's number anew
/// when it answers. Has no limit of its own; each round waits in yields. The quits wait their
/// settling count again.
void ResyncConeData();

}  // namespace penlog
