// One sounding played to its end, in virtual or in real time, and what it left behind.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "rig/rig_log.h"

namespace penlog {

struct SoundingPlan {
  std::string script;                   ///< a file of this folder
  std::string rig = "dcs";              ///< the setup's name
  std::map<int, std::string> settings;  ///< by position, over the first-run settings; none: no file
  int idle_ports = 0;                   ///< in real time: ports on which nobody answers
};

struct Played {
  int exit_code = -1;
  std::string report;
  std::string cpt;
  std::string temporary;      ///< "TemporaryData.txt" at the script's shot, before the end
  std::string temporary_end;  ///< and after it
  std::string parameters;     ///< "Last Sounding Parameters.txt"
  std::string folder;         ///< of the sounding's files
  std::vector<RigRecord> log;
};

Played PlayVirtual(const SoundingPlan& plan);
/// With windows: the player acts on their widgets.
Played PlayReal(const SoundingPlan& plan, bool cone_on_network);

}  // namespace penlog
