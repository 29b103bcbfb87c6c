// The far end of the cone's serial line: takes the console's characters at the pace of 19200 baud,
// hands each line to the cone or to a module, and sends the answer at the same pace, in pieces as
// a serial adapter delivers them. The place where the faults of the link strike.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "platform/wire_end.h"
#include "rig/faults.h"
#include "rig/rig_log.h"
#include "rig/sim_cone.h"
#include "rig/sim_module.h"

namespace penlog {

/// Time from the end of a command to the first bit of its answer.
Micros AnswerDelay(std::string_view command);

/// Characters that an adapter collects before it hands them over; the rest comes at once when the
/// answer ends.
constexpr std::int64_t kAdapterPiece = 16;

/// After a break the instruments start anew and hear nothing for this long.
constexpr Micros kStartTime = 40 * kMillisecond;

class ConeLine {
 public:
  ConeLine(RigFaults& faults, RigLog& log, std::uint32_t seed);
  ~ConeLine();
  ConeLine(const ConeLine&) = delete;
  ConeLine& operator=(const ConeLine&) = delete;

  SimCone* cone = nullptr;
  std::map<int, SimModule*> modules;
  /// The console's end; none while nothing is attached.
  WireEnd* wire = nullptr;
  /// m below the surface, for the log.
  std::function<double()> depth;
  /// An answer to "D" went out; `sampled` is when the cone took it.
  std::function<void(Micros sampled)> on_reading_sent;

  void TakeBytes(std::string_view bytes);
  void TakeBreak(bool on);
  void TakeSettings(const PortSettings& settings);
  /// Sends without being asked: the line that follows a seismic trigger.
  void SendAt(Micros time, int unit, const std::string& bytes);

 private:
  void Execute(const std::string& line);
  void AnswerNext();
  void Answer(int unit, const std::string& command);
  std::string Reply(int unit, const std::string& command);
  std::string Disturb(std::string bytes);
  std::string Garble(std::string bytes);
  void AnswerIsOut();
  Micros SendPieces(RigRecord reply);
  void Log(RigLogKind kind, int unit, std::string text);
  SimUnit* Unit(int number);

  RigFaults& faults_;
  RigLog& log_;
  std::mt19937 random_;
  std::string received_;
  Micros heard_until_ = 0;  // when the last character received so far is complete
  struct Waiting {
    int unit = 0;
    std::string command;
  };
  std::deque<Waiting> waiting_;  // commands in hand; the first is being answered
  Micros starting_until_ = 0;
  bool in_break_ = false;
  bool settings_fit_ = true;
  std::map<int, std::string> last_reading_;
};

}  // namespace penlog
