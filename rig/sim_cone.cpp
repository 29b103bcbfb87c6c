#include "rig/sim_cone.h"

#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

void SimCone::Reset() {
  SimUnit::Reset();
  recorder_.Disarm();
}

std::string SimCone::Arm(std::string_view arguments) {
  const std::size_t blank = arguments.find(' ');
  if (blank == std::string_view::npos || blank < 1 || blank > 2) return "?\r\n";
  const std::string_view numbers = arguments.substr(blank + 1);
  const std::size_t second = numbers.find(' ');
  const auto samples = WholeNumberText(numbers.substr(0, second));
  const auto divisor =
      second == std::string_view::npos ? std::nullopt : WholeNumberText(numbers.substr(second));
  if (!samples || !divisor || *samples < 1.0 || *samples > 20000.0 || *divisor < 1.0) {
    return "?\r\n";
  }
  recorder_.Arm(arguments.substr(0, blank), static_cast<int>(*samples), static_cast<int>(*divisor));
  return "";
}

std::string SimCone::SetOffset(std::string_view arguments) {
  const bool known = StartsWith(arguments, "0 ") || StartsWith(arguments, "1 ");
  const auto volts = WholeNumberText(arguments.substr(known ? 2 : 0));
  if (!known || !volts) return "?\r\n";
  recorder_.SetOffset(arguments.front() - '0', *volts);
  return "OK\r\n";
}

std::string SimCone::Answer(std::string_view command) {
  if (recorder_.Armed()) {
    if (command == "Y") return "";
    recorder_.Disarm();
  }
  if (StartsWith(command, "S")) return Arm(command.substr(1));
  if (command == "B") return recorder_.Block();
  if (StartsWith(command, "O")) return SetOffset(command.substr(1));
  return SimUnit::Answer(command);
}

}  // namespace penlog
