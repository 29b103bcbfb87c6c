// What a sounding that is taken up again records: its columns, its graphs and its alignment.
#pragma once

#include "core/temporary_data.h"
#include "sounding/found_cpt.h"

namespace penlog {

/// The recorded columns of the sounding become this session's. Channels that are missing now keep
/// their columns, and the operator is told.
void TakeColumns(const StoredSounding& stored);

/// Graphs of channels that are there.
void TakeGraphs(const StoredSounding& stored);

/// The alignment. A channel that is missing now does not tell its delay any more; the rows of the
/// file do.
void FormDelays(const FoundCpt& found);

/// Tells of missing channels whose delays stand nowhere.
void TellUnknownDelays(const FoundCpt& found);

}  // namespace penlog
