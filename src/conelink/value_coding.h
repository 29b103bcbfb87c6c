// How the cone writes numbers: six bits a printable character in its memory, plain decimal text in
// a reading, 12-bit samples in a seismic block. Nothing here has a check: a wrong character decodes
// to a wrong number.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace penlog {

/// Fields 1 to 30 of a reading; field 0 is unused.
using ReplyFields = std::array<std::string, 31>;

/// Elements 1 to 126 hold the bytes of a `B` reply.
using SeismicBytes = std::array<std::uint8_t, 129>;

/// Samples of one seismic block: 42 groups of two.
constexpr int kSamplesPerBlock = 84;

/// The number that a run of cone characters stands for. Each character is 64 plus six bits, most
/// significant first. Up to three characters: an unsigned integer. Four: sign (1 bit), decimal
/// places (3 bits), magnitude (20 bits). A code below 64 counts as six zero bits.
float BinaryToSingle(std::string_view text);

/// The last `count` of the four characters that stand for `value`; three or fewer are the plain
/// integer form, which needs a whole value below 64 to the power `count`. Replaces the caller's
/// variable by its absolute value. A magnitude of 2^20 or more gives twenty one-bits. Raises a
/// `RuntimeFault` for a whole value that is no 32-bit integer, and for one that isn't finite.
std::string SingleToBinary(float& value, int count);

/// Cuts a reading into its fields; each keeps the blank behind it. A last word without a blank is
/// lost. At most 29 fields are taken; field 30 is emptied when the text ends before.
void SplitConeReply(const std::string& reply, ReplyFields& tokens);

/// The 84 samples, 0 to 4095, of a seismic block. Of each three bytes the middle one holds the
/// upper four bits of both samples: the first's in its upper half, the second's in its lower.
std::array<std::int16_t, kSamplesPerBlock> DecodeSeismicBlock(const SeismicBytes& block);

}  // namespace penlog
