#include "platform/port_driver.h"

#include <charconv>
#include <cstdlib>
#include <vector>

#include "platform/runtime_fault.h"

namespace penlog {

namespace {

PortSystem* ports_in_use = nullptr;

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
  std::vector<std::string_view> parts;
  for (;;) {
    const auto comma = text.find(',');
    parts.push_back(text.substr(0, comma));
    if (comma == std::string_view::npos) return parts;
    text.remove_prefix(comma + 1);
  }
}

bool ToNumber(std::string_view text, int least, int most, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size() && number >= least &&
         number <= most;
}

}  // namespace

PortSettings ParsePortSettings(std::string_view text) {
  const auto parts = SplitAtCommas(text);
  PortSettings settings;
  const bool good = parts.size() == 4 && ToNumber(parts[0], 50, 4'000'000, settings.baud) &&
                    parts[1].size() == 1 &&
                    std::string_view("NEOMS").find(parts[1][0]) != std::string_view::npos &&
                    ToNumber(parts[2], 5, 8, settings.data_bits) &&
                    ToNumber(parts[3], 1, 2, settings.stop_bits);
  if (!good) throw RuntimeFault("Invalid port settings \"" + std::string(text) + "\"");
  settings.parity = parts[1][0];
  return settings;
}

PortSystem& ThePorts() {
  if (ports_in_use == nullptr) std::abort();  // a program without ports is mis-built
  return *ports_in_use;
}

void UsePorts(PortSystem* ports) { ports_in_use = ports; }

bool EnumSerPorts(int port) { return port >= 1 && port <= 255 && ThePorts().Exists(port); }

}  // namespace penlog
