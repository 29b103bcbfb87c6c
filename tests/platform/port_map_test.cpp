#include "platform/port_map.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace penlog {
namespace {

TEST(PortMap, GoodLines) {
  const struct {
    const char* line;
    int number;
    const char* device;
  } rows[] = {
      {"1 /dev/ttyS0", 1, "/dev/ttyS0"},
      {"255 /dev/ttyUSB0", 255, "/dev/ttyUSB0"},
      {"  7 \t /dev/pts/3  \r", 7, "/dev/pts/3"},
      {"7 /tmp/a place/port", 7, "/tmp/a place/port"},
      {"7 /dev/ttyS0 # the truck", 7, "/dev/ttyS0"},
      {"7 /dev/serial#1", 7, "/dev/serial#1"},
      {"3 rfc2217://192.168.1.7:2217", 3, "rfc2217://192.168.1.7:2217"},
      {"3 rfc2217://rig.example.org:65535", 3, "rfc2217://rig.example.org:65535"},
      {"3 RFC2217://localhost:1", 3, "rfc2217://localhost:1"},
      {"3 rfc2217://[::1]:2217 # loopback", 3, "rfc2217://[::1]:2217"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    const PortMap map = ParsePortMap("ports", row.line);
    EXPECT_TRUE(map.messages.empty());
    ASSERT_EQ(map.devices.size(), 1u);
    EXPECT_EQ(map.devices.begin()->first, row.number);
    EXPECT_EQ(map.devices.begin()->second.Text(), row.device);
  }
}

TEST(PortMap, HostAndPortAreTakenApart) {
  const auto device = ParsePortMap("ports", "3 rfc2217://[fe80::1]:2217").devices.at(3);
  EXPECT_EQ(device.path, "");
  EXPECT_EQ(device.network, (NetworkAddress{"fe80::1", 2217}));
}

TEST(PortMap, BadLinesAreToldWithTheirNumberAndTextAndSkipped) {
  for (const char* bad : {
           "0 /dev/ttyS0",
           "256 /dev/ttyS0",
           "-1 /dev/ttyS0",
           "COM3 /dev/ttyS0",
           "3.5 /dev/ttyS0",
           "3",
           "3 ttyS0",
           "3 COM3",
           "/dev/ttyS0",
           "/dev/ttyS0 3",
           "3 rfc2217://host",
           "3 rfc2217://host:",
           "3 rfc2217://:2217",
           "3 rfc2217://host:0",
           "3 rfc2217://host:65536",
           "3 rfc2217://host:22x",
           "3 rfc2217://a b:2217",
           "3 rfc2217:host:2217",
           "3 http://host:2217",
           "4 /dev/again",
       }) {
    SCOPED_TRACE(bad);
    const PortMap map =
        ParsePortMap("ports", "# list\n4 /dev/ttyS4\n" + std::string(bad) + "\n5 /dev/ttyS5\n");
    ASSERT_EQ(map.messages.size(), 1u);
    EXPECT_EQ(map.messages[0].find("ports, line 3: "), 0u) << map.messages[0];
    EXPECT_NE(map.messages[0].find(bad), std::string::npos) << map.messages[0];
    ASSERT_EQ(map.devices.size(), 2u);
    EXPECT_EQ(map.devices.at(4).path, "/dev/ttyS4") << "the first of two stands";
    EXPECT_EQ(map.devices.at(5).path, "/dev/ttyS5");
  }
}

TEST(PortMap, EmptyLinesCommentsAndLineEndsOfBothKinds) {
  const PortMap map = ParsePortMap(
      "ports", "\xEF\xBB\xBF# ports\r\n\r\n   \n  # 1 /dev/no\n2 /dev/ttyS1\r\n3 /dev/ttyS2");
  EXPECT_TRUE(map.messages.empty());
  EXPECT_EQ(map.devices.size(), 2u);
}

TEST(FixedRule, GivesEachNumberItsOwnDevice) {
  const struct {
    int number;
    const char* device;
  } rows[] = {
      {0, ""},
      {1, "/dev/ttyS0"},
      {32, "/dev/ttyS31"},
      {33, "/dev/ttyUSB0"},
      {96, "/dev/ttyUSB63"},
      {97, "/dev/ttyACM0"},
      {160, "/dev/ttyACM63"},
      {161, "/dev/ttyAMA0"},
      {176, "/dev/ttyAMA15"},
      {177, "/dev/rfcomm0"},
      {208, "/dev/rfcomm31"},
      {209, ""},
      {255, ""},
  };
  for (const auto& row : rows) EXPECT_EQ(FixedRuleDevice(row.number), row.device) << row.number;
  std::set<std::string> all;
  for (int number = 1; number <= 208; ++number) all.insert(FixedRuleDevice(number));
  EXPECT_EQ(all.size(), 208u);
}

}  // namespace
}  // namespace penlog
