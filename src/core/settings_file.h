// "System Setup Values.txt": the machine's settings, and the upgrades of older layouts.
#pragma once

namespace penlog {

/// Reads the settings. A file that ends early is of an older layout: each later stage then shows
/// its message, takes its defaults and sets `SetupUpgraded`. A present channel without a unit gets
/// option 1.
///
/// A missing or damaged file is told with file, line and what was found there. What was read up to
/// there is kept, the rest is as on a first run, and the operator can go on.
void LoadSystemSetup();

/// Writes the file anew in the 61-value layout if the load upgraded it. A damaged file stays as it
/// is.
void RewriteUpgradedSetup();

/// Saves all 62 values as a whole. Like the rewrite it leaves what the file had for a setting that
/// was replaced for the session alone. A file that was found damaged is first copied beside itself.
/// A failure is told; the old file then stands.
void SaveSystemSetup();
/// The same under its other name, for a port that changed at the start.
void SaveKQSettings();

/// Puts the numbers of the truck interface, the ASCII output and the overlay into the file, and the
/// cone's where the truck interface was given the number that the file has for it; all else in it
/// stays as it stands, and a file that is missing, damaged or of a layout without them
/// is left alone. A failure is told.
void SavePortNumbers();

/// Copies the settings to "System Setup Values.old" if there is no such file: the first settings
/// ever seen on this machine.
void BackUpFirstSetup();

}  // namespace penlog
