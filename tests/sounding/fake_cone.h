// A cone of a few lines at the far end of the console's wire: it answers each command 20 ms after
// its CR, with readings that never stand still, or with what a test scripts.
#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "forms/warning_form.h"
#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/main_loop.h"

namespace penlog {

struct FakeCone : Console {
  explicit FakeCone(WallTime start = {2026, 6, 15, 9, 30, 0, 0}) : Console(start) {
    Main.Timer1.OnTick = Main_Timer1_Timer;
    Main.Timer1.Start();
    cone.ChannelSelectCommand = "Z TFP";
    session.ReadingsAveraged = 1;
    ports.Wire(kConePort).OnBytes = [this](std::string_view bytes) { Take(bytes); };
    Main.ConeComm.SetCommPort(kConePort);
    Main.ConeComm.SetSettings("19200,N,8,1");
    Main.ConeComm.Open();
    OpenPorts();
  }
  ~FakeCone() {
    ports.Wire(kConePort).OnBytes = {};
    DropCalls(this);
  }

  /// Answers to the next readings; when they are used up, readings that move go on.
  std::deque<std::string> readings;
  std::vector<std::string> commands;
  std::vector<Micros> times;  ///< at which each of them had come whole
  bool silent = false;
  std::string mute;  ///< this command alone gets no answer

  long Count(const std::string& command) const {
    return std::count(commands.begin(), commands.end(), command);
  }
  bool WroteDistance() const {
    return std::any_of(commands.begin(), commands.end(),
                       [](const std::string& command) { return command.starts_with("W "); });
  }

 private:
  void Take(std::string_view bytes) {
    typed_ += bytes;
    for (auto end = typed_.find('\r'); end != typed_.npos; end = typed_.find('\r')) {
      commands.push_back(typed_.substr(0, end));
      times.push_back(Now());
      typed_.erase(0, end + 1);
      if (silent || commands.back() == mute) continue;
      PostCall(Now() + 20 * kMillisecond, this, [this, answer = AnswerTo(commands.back())] {
        ports.Wire(kConePort).Send(answer + "\r\n");
      });
    }
  }

  std::string AnswerTo(const std::string& command) {
    if (command == "Y") return "COPYRIGHT V3.10";
    if (command == "C 3 7") return "DSE1234";
    if (command.empty() || command.front() != 'D') return "OK";
    if (!readings.empty()) {
      std::string reading = readings.front();
      readings.pop_front();
      return reading;
    }
    ++reading_;
    const std::string tail = std::to_string(reading_ % 1000 + 1000).substr(1);
    return "1." + tail + " 2." + tail + " 3." + tail;
  }

  std::string typed_;
  int reading_ = 0;
};

}  // namespace penlog
