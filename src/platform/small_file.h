// Reading a file of a sounding, which is never long: a few megabytes for 10,000 rows.
#pragma once

#include <cstdint>
#include <string>

namespace penlog {

/// Bytes; no text file of a sounding comes near it.
constexpr std::int64_t kMostOfSmallFile = std::int64_t{64} * 1024 * 1024;

/// Whole content. A longer file is none of ours and would take the memory that rows need: a
/// `RuntimeFault` in words before a byte of it is read.
std::string ReadSmallFile(const std::string& path);

}  // namespace penlog
