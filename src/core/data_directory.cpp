#include "core/data_directory.h"

#include "core/session.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::string_view kFolderName = "PENLOG(KQ)";

void WriteOnce(const std::string& folder) {
  const std::string probe = JoinPath(folder, "PENLOG Write Test.tmp");
  MakeWholeFolder(folder);
  TheDisk().Close(TheDisk().Create(probe));
  TheDisk().Remove(probe);
}

}  // namespace

std::string FindDataDirectory() {
  const auto version = TheHost().SystemVersion();
  if (version && *version < 6) return TheHost().ProgramFolder();
  const auto all_users = TheHost().Environment("allusersprofile");
  return JoinPath(all_users ? *all_users : TheHost().UserDataFolder(), kFolderName);
}

std::string DataPath(std::string_view name) {
  return JoinPath(session.DataDirectory, name);
}

std::string WhyNotWritable(const std::string& folder) {
  try {
    WriteOnce(folder);
    return {};
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
}

}  // namespace penlog
