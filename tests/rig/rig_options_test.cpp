#include "rig/rig_options.h"

#include <gtest/gtest.h>

#include "platform/runtime_fault.h"

namespace penlog {
namespace {

std::string FaultOf(const std::vector<std::string>& words) {
  try {
    ParseRigOptions(words);
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return "no fault";
}

TEST(RigOptions, StandAsTheyAreWithoutWords) {
  const RigOptions options = ParseRigOptions({});
  EXPECT_EQ(options.setup, "dcs");
  EXPECT_FALSE(options.cone.network);
  EXPECT_TRUE(options.truck.network);
  EXPECT_EQ(options.truck.port, 0);
  EXPECT_FALSE(options.control.has_value());
  EXPECT_EQ(options.window, WindowOption::IfDisplay);
  EXPECT_EQ(options.place.kind, ScreenPlace::Kind::Whole);
}

TEST(RigOptions, AreTaken) {
  const RigOptions options = ParseRigOptions(
      {"--setup",       "dse",     "--seed",         "9",    "--cone",       "rfc2217:4001",
       "--truck",       "rfc2217", "--links",        "/a b", "--ports-file", "p",
       "--log",         "l",       "--control",      "0",    "--ground",     "g.gef",
       "--cone-number", "11",      "--truck-number", "12",   "--window",     "no",
       "--place",       "left"});
  EXPECT_EQ(options.setup, "dse");
  EXPECT_EQ(options.seed, 9u);
  EXPECT_TRUE(options.cone.network);
  EXPECT_EQ(options.cone.port, 4001);
  EXPECT_EQ(options.truck.port, 0);
  EXPECT_EQ(options.links, "/a b");
  EXPECT_EQ(options.ports_file, "p");
  EXPECT_EQ(options.log, "l");
  EXPECT_EQ(options.control, 0);
  EXPECT_EQ(options.ground, "g.gef");
  EXPECT_EQ(options.cone_number, 11);
  EXPECT_EQ(options.truck_number, 12);
  EXPECT_EQ(options.window, WindowOption::No);
  EXPECT_EQ(options.place.kind, ScreenPlace::Kind::Left);
  EXPECT_EQ(ParseRigOptions({"--window", "yes"}).window, WindowOption::Yes);
  EXPECT_EQ(ParseRigOptions({"--window", "auto"}).window, WindowOption::IfDisplay);
}

TEST(RigOptions, WrongWordsAreNamed) {
  EXPECT_EQ(FaultOf({"--dance", "x"}), "unknown word \"--dance\"");
  EXPECT_EQ(FaultOf({"--seed"}), "--seed needs N");
  EXPECT_EQ(FaultOf({"--seed", "x"}), "--seed: \"x\" is no whole number from 0 to 2000000000");
  EXPECT_EQ(FaultOf({"--cone", "string"}), "--cone: \"string\" is neither pty nor rfc2217:PORT");
  EXPECT_EQ(FaultOf({"--cone", "rfc2217:0"}), "--cone: \"0\" is no whole number from 1 to 65535");
  EXPECT_EQ(FaultOf({"--cone-number", "256"}),
            "--cone-number: \"256\" is no whole number from 1 to 255");
  EXPECT_EQ(FaultOf({"--window", "big"}), "--window: \"big\" is neither auto, yes nor no");
  EXPECT_EQ(FaultOf({"--place", "top"}),
            "--place: \"top\" is neither left, right, whole nor WIDTHxHEIGHT+X+Y");
  EXPECT_EQ(FaultOf({"--cone-number", "4"}), "cone and truck have the same COM number");
}

TEST(RigOptions, HelpListsEveryWord) {
  EXPECT_TRUE(ParseRigOptions({"--help"}).help);
  for (const char* word :
       {"--setup", "--seed", "--cone", "--links", "--control", "--window", "--place"}) {
    EXPECT_NE(RigProgramUsage().find(word), std::string::npos);
  }
}

}  // namespace
}  // namespace penlog
