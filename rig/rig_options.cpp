#include "rig/rig_options.h"

#include <array>
#include <cmath>
#include <string_view>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

int WholeNumber(const std::string& option, const std::string& text, int least, int most) {
  const auto number = WholeNumberText(text);
  if (!number || *number < least || *number > most || *number != std::floor(*number)) {
    throw RuntimeFault(option + ": \"" + text + "\" is no whole number from " + PlainNumber(least) +
                       " to " + PlainNumber(most));
  }
  return static_cast<int>(*number);
}

WireOption Wire(const std::string& option, const std::string& text) {
  if (text == "pty") return {};
  if (text == "rfc2217") return {true, 0};
  constexpr std::string_view kNetwork = "rfc2217:";
  if (!StartsWith(text, kNetwork)) {
    throw RuntimeFault(option + ": \"" + text + "\" is neither pty nor rfc2217:PORT");
  }
  return {true, WholeNumber(option, text.substr(kNetwork.size()), 1, 65535)};
}

WindowOption Window(const std::string& option, const std::string& text) {
  if (text == "auto") return WindowOption::IfDisplay;
  if (text == "yes") return WindowOption::Yes;
  if (text == "no") return WindowOption::No;
  throw RuntimeFault(option + ": \"" + text + "\" is neither auto, yes nor no");
}

ScreenPlace PlaceOf(const std::string& option, const std::string& text) {
  const auto place = ScreenPlaceOf(text);
  if (!place) {
    throw RuntimeFault(option + ": \"" + text +
                       "\" is neither left, right, whole nor WIDTHxHEIGHT+X+Y");
  }
  return *place;
}

struct Option {
  std::string_view name;
  std::string_view argument;
  std::string_view meaning;
  void (*take)(RigOptions& options, const std::string& name, const std::string& text);
};

using Text = const std::string&;

constexpr std::array<Option, 13> kOptions = {{
    {"--setup", "NAME", "which rig; dcs unless told",
     [](RigOptions& o, Text, Text text) { o.setup = text; }},
    {"--seed", "N", "of all that is drawn by lot; 1 unless told",
     [](RigOptions& o, Text name, Text text) {
       o.seed = static_cast<std::uint32_t>(WholeNumber(name, text, 0, 2000000000));
     }},
    {"--cone", "pty|rfc2217[:PORT]", "the cone's wire; pty unless told",
     [](RigOptions& o, Text name, Text text) { o.cone = Wire(name, text); }},
    {"--truck", "pty|rfc2217[:PORT]", "the truck's; rfc2217, since a pty has no modem lines",
     [](RigOptions& o, Text name, Text text) { o.truck = Wire(name, text); }},
    {"--cone-number", "N", "COM number of the cone; 3 unless told",
     [](RigOptions& o, Text name, Text text) { o.cone_number = WholeNumber(name, text, 1, 255); }},
    {"--truck-number", "N", "COM number of the truck; 4 unless told",
     [](RigOptions& o, Text name, Text text) { o.truck_number = WholeNumber(name, text, 1, 255); }},
    {"--links", "FOLDER", "where the pseudo terminals are linked as COM3",
     [](RigOptions& o, Text, Text text) { o.links = text; }},
    {"--ports-file", "FILE", "the console's list of ports, kept up to date",
     [](RigOptions& o, Text, Text text) { o.ports_file = text; }},
    {"--ground", "FILE", "a sounding in GEF or CSV instead of the usual ground",
     [](RigOptions& o, Text, Text text) { o.ground = text; }},
    {"--log", "FILE", "what goes over the wires, with times",
     [](RigOptions& o, Text, Text text) { o.log = text; }},
    {"--control", "PORT", "takes orders on 127.0.0.1:PORT, 0 for any; else from the input alone",
     [](RigOptions& o, Text name, Text text) { o.control = WholeNumber(name, text, 0, 65535); }},
    {"--window", "auto|yes|no", "auto: a window if there is a display",
     [](RigOptions& o, Text name, Text text) { o.window = Window(name, text); }},
    {"--place", "left|right|WxH+X+Y", "where on the screen the window stands",
     [](RigOptions& o, Text name, Text text) { o.place = PlaceOf(name, text); }},
}};

const Option& OptionOf(const std::string& word) {
  for (const auto& option : kOptions) {
    if (option.name == word) return option;
  }
  throw RuntimeFault("unknown word \"" + word + "\"");
}

}  // namespace

RigOptions ParseRigOptions(const std::vector<std::string>& words) {
  RigOptions options;
  for (std::size_t i = 0; i < words.size(); i += 2) {
    if (words[i] == "--help") {
      options.help = true;
      return options;
    }
    const Option& option = OptionOf(words[i]);
    if (i + 1 == words.size()) {
      throw RuntimeFault(words[i] + " needs " + std::string(option.argument));
    }
    option.take(options, words[i], words[i + 1]);
  }
  if (options.cone_number == options.truck_number) {
    throw RuntimeFault("cone and truck have the same COM number");
  }
  return options;
}

std::string RigProgramUsage() {
  std::string text = "penlog-rig [OPTION VALUE]...\n\n";
  for (const auto& option : kOptions) {
    std::string line = "  " + std::string(option.name) + " ";
    line += option.argument;
    line.resize(32, ' ');
    text += line;
    text += option.meaning;
    text += "\n";
  }
  return text;
}

}  // namespace penlog
