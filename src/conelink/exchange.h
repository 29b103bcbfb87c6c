// The plain exchange of a command and its reply, without port supervision: one engine, and a table
// of the dialects in which the screens speak it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/clock.h"

namespace penlog {

class SerialPort;

/// A reply starts its silence anew with each character, so a chattering device or noise on a cut
/// cable could hold an exchange for ever. No instrument comes near these bounds: its longest reply
/// is a reading of some 350 characters, 0.2 s at 19200 baud.
class ReplyBound {
 public:
  static constexpr std::size_t kCharacters = 4096;
  static constexpr Micros kTime = 30 * kSecond;

  /// True once the reply is too long, or has gone on too long; cuts it to its bound.
  bool IsPassed(std::string& reply) const;

 private:
  Micros end_ = Now() + kTime;
};

/// What tells one dialect from another. Limits are counts of 55 ms ticks and of attempts.
struct Dialect {
  char terminator;          ///< sent behind the command
  bool keeps_terminator;    ///< it stays in the caller's text, so that each attempt adds another
  char end_of_reply;        ///< the last character of a whole reply; 0: only silence ends it
  int silence_limit;        ///< ticks without a character, counted from 1
  int attempt_limit;        ///< commands that begin with "C" are repeated while the reply is empty
  std::size_t strip_above;  ///< a reply longer than this loses its end
  std::size_t strip_count;  ///< that many characters
  bool ends_program;        ///< with the message, when the last attempt was made
};

extern const Dialect kStartUpDialect;
extern const Dialect kSystemSetupDialect;
extern const Dialect kTroubleshootDialect;
/// Instruments other than the cone. No screen speaks these two.
extern const Dialect kResistivityDialect;
extern const Dialect kZOLDialect;

/// Sends `command` and returns the reply; empty if none came. `CommFailed` tells of a timeout, or
/// of a reply beyond its bound; what came before it is kept. When the attempts were all used, tells
/// `message` and ends the program, even if the last of them brought a reply.
std::string PlainExchange(SerialPort& port, std::int16_t& comm_tick, std::string& command,
                          const Dialect& dialect, const std::string& message);

}  // namespace penlog
