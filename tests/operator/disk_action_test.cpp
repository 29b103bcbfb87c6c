// The disk that an operator script lets refuse.
#include <gtest/gtest.h>

#include "operator/script.h"
#include "operator/virtual_session.h"
#include "platform/runtime_fault.h"
#include "rig/rig_setups.h"

namespace penlog {
namespace {

bool Takes(MemoryDisk& disk) {
  try {
    const Disk::Handle file = disk.Create("/probe");
    disk.Write(file, "a byte");
    disk.Close(file);
    return true;
  } catch (const RuntimeFault&) {
    return false;
  }
}

TEST(DiskAction, FillsAndFreesTheDisk) {
  const struct {
    const char* lines;
    bool takes;
  } rows[] = {{"", true}, {"disk full\n", false}, {"disk full\ndisk free\n", true}};
  for (const auto& row : rows) {
    VirtualSession session(MakeRigSetup("dcs"), {});
    const std::string text = std::string("screen StartUp\n") + row.lines + "end\n";
    const SessionResult result = session.Play(ParseScript("disk", text));
    EXPECT_EQ(result.exit_code, 0) << result.report;
    EXPECT_EQ(Takes(session.disk), row.takes) << row.lines;
  }
}

}  // namespace
}  // namespace penlog
