#include "platform/port_map.h"

#include <array>
#include <charconv>
#include <optional>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr int kLastNumber = 255;
constexpr int kLastNetworkPort = 65535;
constexpr std::string_view kScheme = "rfc2217://";
constexpr std::string_view kBlanks = " \t";

struct Family {
  int first_number;
  int count;
  const char* path;
};

constexpr std::array<Family, 5> kFamilies = {{
    {1, 32, "/dev/ttyS"},
    {33, 64, "/dev/ttyUSB"},
    {97, 64, "/dev/ttyACM"},
    {161, 16, "/dev/ttyAMA"},
    {177, 32, "/dev/rfcomm"},
}};

/// A number that is the whole text, 1 to `most`.
std::optional<int> WholeNumber(std::string_view text, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end || number < 1 || number > most) return std::nullopt;
  return number;
}

std::string_view WithoutComment(std::string_view line) {
  for (std::size_t at = line.find('#'); at != std::string_view::npos; at = line.find('#', at + 1)) {
    if (at == 0 || kBlanks.find(line[at - 1]) != std::string_view::npos) return line.substr(0, at);
  }
  return line;
}

std::string_view WithoutBrackets(std::string_view host) {
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  return bracketed ? host.substr(1, host.size() - 2) : host;
}

PortDevice ParseNetworkDevice(std::string_view address) {
  const std::size_t colon = address.rfind(':');
  const auto port = colon == std::string_view::npos
                        ? std::nullopt
                        : WholeNumber(address.substr(colon + 1), kLastNetworkPort);
  const std::string_view host = WithoutBrackets(address.substr(0, colon));
  const bool plain = host.find_first_of(" \t/?") == std::string_view::npos;
  if (!port || host.empty() || !plain) {
    throw RuntimeFault("rfc2217://HOST:PORT was expected, PORT 1 to 65535");
  }
  return {"", {std::string(host), *port}};
}

PortDevice ParseDevice(std::string_view text) {
  if (text.empty()) throw RuntimeFault("the device is missing behind the number");
  if (EqualNoCase(text.substr(0, kScheme.size()), kScheme)) {
    return ParseNetworkDevice(text.substr(kScheme.size()));
  }
  if (text.front() != '/') {
    throw RuntimeFault("the device is neither a path from the root nor rfc2217://HOST:PORT");
  }
  return {std::string(text), {}};
}

void ParseLine(std::string_view line, PortMap& map) {
  const std::size_t blank = line.find_first_of(kBlanks);
  const auto number = WholeNumber(line.substr(0, blank), kLastNumber);
  if (!number) throw RuntimeFault("a port number from 1 to 255 was expected");
  const auto rest = blank == std::string_view::npos ? std::string_view() : line.substr(blank);
  PortDevice device = ParseDevice(Trim(rest));
  if (!map.devices.emplace(*number, std::move(device)).second) {
    throw RuntimeFault("COM" + PlainNumber(*number) + " stands above already");
  }
}

std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line;
}

}  // namespace

std::string PortDevice::Text() const {
  if (!path.empty()) return path;
  const bool is_ipv6 = network.host.find(':') != std::string::npos;
  const std::string host = is_ipv6 ? "[" + network.host + "]" : network.host;
  return std::string(kScheme) + host + ":" + PlainNumber(network.port);
}

PortMap ParsePortMap(std::string_view title, std::string_view text) {
  PortMap map;
  const std::string content = FromFileBytes(text);
  std::string_view rest = content;
  for (int number = 1; !rest.empty(); ++number) {
    const std::string_view line = Trim(WithoutComment(TakeLine(rest)));
    if (line.empty()) continue;
    try {
      ParseLine(line, map);
    } catch (const RuntimeFault& fault) {
      map.messages.push_back(std::string(title) + ", line " + PlainNumber(number) + ": " +
                             fault.what() + " (" + Left(line, 60) + ")");
    }
  }
  return map;
}

std::string FixedRuleDevice(int number) {
  for (const Family& family : kFamilies) {
    const int unit = number - family.first_number;
    if (unit >= 0 && unit < family.count) return family.path + PlainNumber(unit);
  }
  return {};
}

}  // namespace penlog
