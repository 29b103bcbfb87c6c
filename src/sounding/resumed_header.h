// Lines of the recovery copy's header that are damaged: texts, water table and baselines.
#pragma once

#include "core/temporary_data.h"
#include "sounding/found_cpt.h"

namespace penlog {

/// Which cone it was, before one is looked for: a `.cpt` file with the columns and the date of the
/// copy names it, too. Where the copy's number is damaged that is taken and put to what is told;
/// where both can be read and differ the operator is asked. A number that stands nowhere makes the
/// sounding `unreadable`, which says what the operator can do.
void TakeConeOfHead(StoredSounding& stored);

/// The cone that the session was begun with, when the copy is read once more.
void KeepConeOfSession(StoredSounding& stored);

/// Takes them from the head of the `.cpt` file. A baseline that stands nowhere is that of the
/// cone's record, in row 0 at once, in the copy once the file `is_written` or its head was found:
/// a medium that is plugged in later may bring a head that holds it. The texts, row 0, the
/// baselines and the water table of the session follow. Once all of a line is known it is formed
/// anew in the sound text of `stored`; true when one was. The record of a missing channel is not
/// read: its baseline stays lost where the file does not hold it.
bool TakeLostHeaderLines(const FoundCpt& found, bool is_written, StoredSounding& stored);

}  // namespace penlog
