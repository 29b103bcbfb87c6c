// "Last Sounding Parameters.txt": what the setup of the next sounding opens with.
#pragma once

#include <string>

namespace penlog {

/// Its path in the data directory.
std::string LastSoundingParametersPath();

/// Writes the sounding's fields, the record choices and the graph slots from the global state; in
/// the same pass `RecordMode` takes the ticks of the display setup, and `DelayRows` becomes the
/// largest delay of the recorded channels. `ticked(channel)` tells the record box of a channel. The
/// choices stand also when the file can't be written: then a `RuntimeFault` follows.
void SaveLastSoundingParameters(bool (*ticked)(int channel));

/// `DelayRows` becomes the largest delay of the recorded channels.
void FormDelayRows();

/// Reads the file into the global state; the record choices and graph slots only for the cone that
/// is attached. A choice that is no number leaves the channel's mode as it is, a graph that is none
/// is 0. Raises a `RuntimeFault` where the file ends early or can't be read; what was read before
/// it stands.
void LoadLastSoundingParameters();

/// Takes channel 14 out of the graph slots; those behind it move forward.
void RemoveResisitivityFromGraphChannels();

}  // namespace penlog
