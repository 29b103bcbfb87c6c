// What a unit on the line says of itself: banner, header, list of channel records. By the start
// screen's exchange; a pause follows each command.
//
// Addresses count characters from 1: 1 a text of 2, 3 the number of 7, 10 and 16 dates of 6, 22 the
// distance pushed, 25 the memory size, 28 the clock frequency, coded integers of 3; from 31 on the
// channel records.
#pragma once

#include <string>

namespace penlog {

/// One unit on the line: the cone, or a module with its number in front of each command.
struct Unit {
  int number;
  std::string prefix;
};

/// The header of a unit's memory, in the order of its addresses.
struct MemoryHeader {
  std::string field1;
  std::string number;
  std::string creation_date;
  std::string calibration_date;
  float distance_pushed;
  float memory_size;
  float clock_frequency;
};

MemoryHeader ReadHeader(const Unit& unit);

/// A text of the memory as screens and files can hold it: a control character, which would break a
/// file's line, counts as a blank; a byte above 127 is read as Windows-1252.
std::string MemoryText(const std::string& reply);

/// The four characters behind " V" in a banner, as a number; 0 without a mark.
float VersionOf(const std::string& banner);

/// Sends the `X` that proves a unit twice; whether the second reply holds anything.
bool AnswersTwice(const Unit& unit);

/// Reads the records and puts them into the channel tables. Returns the channel at which a module's
/// list was given up since it is present already, 0 for a whole list. A `RuntimeFault` for a list
/// that can't be used.
int ReadChannelList(const Unit& unit);

}  // namespace penlog
