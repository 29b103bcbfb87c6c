// "Channel1.txt" to "Channel30.txt": what the system knows of each channel before a cone speaks.
#pragma once

namespace penlog {

/// Reads all channel files; a channel is present if its file exists. Returns how many there are.
///
/// A damaged file is told with file, line and what was found there: what was read up to there is
/// kept, so are its whole unit options, and the channel stays present. A channel without a file
/// has empty labels, and unit options with factor 1. A channel to subtract that doesn't exist is
/// told and taken as none.
int LoadChannelFiles();

}  // namespace penlog
