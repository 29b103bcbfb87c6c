// An instrument that answers by a table, at the far end of a wire in memory.
//
// Fault model: it can be silent, silent until a line break (its modules with it or not), silent to
// single commands, late, answer in pieces, without a line end, or with any bytes at all. It knows
// nothing of the line's pace: each piece arrives whole at its time.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/wire_end.h"

namespace penlog {

class ScriptedCone {
 public:
  /// A part of an answer, `delay` after the command.
  struct Piece {
    Micros delay;
    std::string bytes;
  };
  using Answer = std::vector<Piece>;

  explicit ScriptedCone(WireEnd& wire) : wire_(wire) {
    wire_.OnBytes = [this](std::string_view bytes) { Take(bytes); };
    wire_.OnBreak = [this](bool on) {
      const bool was_on = !breaks.empty() && breaks.back();
      if (on) break_began = Now();
      if (!on && was_on && Now() - break_began >= kShortestBreak) needs_break = false;
      breaks.push_back(on);
    };
    wire_.OnOpened = [this](const PortSettings& settings) { openings.push_back(settings); };
    wire_.OnClosed = [this] { ++closings; };
    wire_.OnOutputs = [this](bool dtr, bool rts) { outputs.push_back({dtr, rts}); };
  }
  ~ScriptedCone() {
    DropCalls(this);
    wire_.OnBytes = {};
    wire_.OnBreak = {};
    wire_.OnOpened = {};
    wire_.OnClosed = {};
    wire_.OnOutputs = {};
  }
  ScriptedCone(const ScriptedCone&) = delete;
  ScriptedCone& operator=(const ScriptedCone&) = delete;

  /// Answers `command` so from now on.
  void On(const std::string& command, const std::string& reply, Micros delay = 5 * kMillisecond) {
    always_[command] = {{delay, reply}};
  }
  void OnPieces(const std::string& command, Answer answer) { always_[command] = answer; }
  /// The next time so; several stand in a queue. An empty reply is silence.
  void Once(const std::string& command, const std::string& reply, Micros delay = 5 * kMillisecond) {
    once_[command].push_back({{delay, reply}});
  }
  /// Cone memory: address 1 is the first character. A unit is " 1" to " 9", or "" for the cone.
  void SetMemory(const std::string& memory, const std::string& unit = "") {
    memory_[unit] = memory;
  }
  /// A living unit: banner, the `X` answers, memory, and an echo of each selection.
  void SetUnit(const std::string& memory, const std::string& unit = "",
               const std::string& version = "3.20") {
    SetMemory(memory, unit);
    On(unit + "Y", "CONE " + unit + " COPYRIGHT 2009 V" + version + "\r\n");
    On(unit + "X", "OK\r\n");
  }
  void SendLater(Micros delay, const std::string& bytes) {
    PostCall(Now() + delay, this, [this, bytes] { wire_.Send(bytes); });
  }

  /// How often a command came.
  int Count(const std::string& command) const {
    int count = 0;
    for (const auto& text : heard) count += text == command ? 1 : 0;
    return count;
  }

  /// Takes every command instead of the table.
  std::function<void(const std::string&)> OnAny;
  bool silent = false;
  bool needs_break = false;     ///< silent until a break of `kShortestBreak` has ended
  bool modules_answer = false;  ///< also while the cone is silent or needs a break
  static constexpr Micros kShortestBreak = 200 * kMillisecond;
  char terminator = '\r';
  std::vector<std::string> heard;  ///< whole commands, without their end
  std::vector<Micros> heard_at;
  std::string raw;  ///< every byte
  std::vector<bool> breaks;
  Micros break_began = 0;
  std::vector<PortSettings> openings;
  int closings = 0;
  struct Outputs {
    bool dtr;
    bool rts;
  };
  std::vector<Outputs> outputs;

 private:
  void Take(std::string_view bytes) {
    raw += bytes;
    for (const char byte : bytes) {
      if (byte != terminator) {
        line_ += byte;
        continue;
      }
      heard.push_back(line_);
      heard_at.push_back(Now());
      const bool mute = silent || needs_break;
      if (!mute || (modules_answer && IsForAModule(line_))) Give(line_);
      line_.clear();
    }
  }

  static bool IsForAModule(const std::string& command) {
    return command.size() > 2 && command[0] == ' ';
  }

  void Give(const std::string& command) {
    if (OnAny) return OnAny(command);
    auto once = once_.find(command);
    if (once != once_.end() && !once->second.empty()) {
      const Answer answer = once->second.front();
      once->second.pop_front();
      Play(answer);
    } else if (always_.count(command) > 0) {
      Play(always_[command]);
    } else {
      ReadMemory(command);
    }
  }

  void Play(const Answer& answer) {
    for (const auto& piece : answer) {
      if (!piece.bytes.empty()) SendLater(piece.delay, piece.bytes);
    }
  }

  /// "C 31 17", " 3C 31 17"; a selection is answered with an empty line.
  void ReadMemory(const std::string& command) {
    const std::string unit = IsForAModule(command) ? command.substr(0, 2) : "";
    const std::string rest = command.substr(unit.size());
    const auto memory = memory_.find(unit);
    if (memory == memory_.end() || rest.empty()) return;
    if (rest[0] == 'Z') SendLater(5 * kMillisecond, "\r\n");
    if (rest.substr(0, 2) != "C ") return;
    const auto blank = rest.find(' ', 2);
    const auto address = static_cast<std::size_t>(std::stoi(rest.substr(2, blank - 2)));
    const auto length = static_cast<std::size_t>(std::stoi(rest.substr(blank + 1)));
    std::string bytes = memory->second;
    bytes.resize(std::max(bytes.size(), address - 1 + length), '@');
    SendLater(5 * kMillisecond, bytes.substr(address - 1, length) + "\r\n");
  }

  WireEnd& wire_;
  std::string line_;
  std::map<std::string, Answer> always_;
  std::map<std::string, std::deque<Answer>> once_;
  std::map<std::string, std::string> memory_;
};

}  // namespace penlog
