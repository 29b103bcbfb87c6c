#include "rig/sim_module.h"

namespace penlog {

namespace {

bool IsModuleDigit(std::string_view text, std::size_t at) {
  return text.size() > at && text[at] >= '1' && text[at] <= '9';
}

}  // namespace

std::string SimModule::Answer(std::string_view command) {
  std::string answer = SimUnit::Answer(command);
  if (command == "D" && answer.front() != '?')
    answer.insert(0, 1, static_cast<char>('0' + number_));
  return answer;
}

Addressed AddressOf(std::string_view line) {
  if (line.size() > 1 && line[0] == ' ' && IsModuleDigit(line, 1)) {
    return {line[1] - '0', line.substr(2)};
  }
  if (line.size() == 2 && line[0] == 'D' && IsModuleDigit(line, 1)) {
    return {line[1] - '0', line.substr(0, 1)};
  }
  return {0, line};
}

}  // namespace penlog
