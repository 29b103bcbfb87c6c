#include "core/data_directory.h"

#include "core/session.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::string_view kFolderName = "PENLOG(KQ)";

void WriteOnce() {
  const std::string probe = DataPath("Write Test.tmp");
  TheDisk().MakeFolder(session.DataDirectory);
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

std::string WhyNotWritable() {
  try {
    WriteOnce();
    return {};
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
}

}  // namespace penlog
