// One sounding played to its end, in virtual or in real time, and what it left behind.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "rig/rig.h"
#include "rig/rig_log.h"

namespace penlog {

class RealSession;

struct SoundingPlan {
  std::string script;                   ///< a file of this folder
  std::string body;                     ///< takes the place of @BODY@ in it
  std::string rig = "dcs";              ///< the setup's name
  std::map<int, std::string> settings;  ///< by position, over the first-run settings; none: no file
  // In real time:
  std::function<void(RigSetup& rig)> change_rig;
  int idle_ports = 0;  ///< ports on which nobody answers
  std::function<void(RealSession& session)> begin;
  std::function<void(const std::string& words)> test;  ///< `rig test WORDS` in the script
};

struct Played {
  int exit_code = -1;
  std::string report;
  std::string cpt;
  std::string temporary;      ///< "TemporaryData.txt" at the script's shot, before the end
  std::string temporary_end;  ///< and after it
  std::string parameters;     ///< "Last Sounding Parameters.txt"
  std::string settings;       ///< "System Setup Values.txt"
  std::string folder;         ///< of the sounding's files
  std::vector<RigRecord> log;
};

Played PlayVirtual(const SoundingPlan& plan);
/// With windows: the player acts on their widgets. The cone's port and the idle ones are on the
/// network, or on pseudo terminals.
Played PlayReal(const SoundingPlan& plan, bool on_network);

}  // namespace penlog
