// Lines of the recovery copy's header that are damaged: water table and baselines.
#pragma once

#include "core/temporary_data.h"
#include "sounding/found_cpt.h"

namespace penlog {

/// Takes them from the head of the `.cpt` file; a baseline that stands nowhere is that of the
/// cone's record. Row 0, the baselines and the water table of the session follow. Once all of a
/// line is known it is formed anew in the sound text of `stored`; true when one was. The record of
/// a missing channel is not read: its baseline stays lost where the file does not hold it.
bool TakeLostHeaderLines(const FoundCpt& found, StoredSounding& stored);

}  // namespace penlog
