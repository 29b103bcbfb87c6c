#include "rig/console_watch.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

RigRecord Port(const char* text) {
  return {0, RigLogKind::Port, 0, 0.0, 0, text};
}

/// A reading that the unit sent at `ms`.
RigRecord Reading(Micros ms, int unit = 0) {
  return {ms * kMillisecond, RigLogKind::Reply, unit, 0.0, ms * kMillisecond - 1, "0.1 0.2\r\n"};
}

TEST(ConsoleWatch, KnowsWhichPortsAreOpen) {
  ConsoleWatch watch;
  EXPECT_FALSE(watch.ConeOpen());
  watch.Take(Port("cone opened at 19200"));
  EXPECT_TRUE(watch.ConeOpen());
  EXPECT_FALSE(watch.TruckOpen());
  watch.Take(Port("truck opened at 19200"));
  watch.Take(Port("cone unplugged"));
  EXPECT_TRUE(watch.ConeOpen());
  watch.Take(Port("cone closed"));
  EXPECT_FALSE(watch.ConeOpen());
  EXPECT_TRUE(watch.TruckOpen());
}

TEST(ConsoleWatch, CountsTheReadingsOfTheLastWholeSecond) {
  ConsoleWatch watch;
  for (Micros ms = 1000; ms < 2000; ms += 100) watch.Take(Reading(ms));
  EXPECT_EQ(watch.ReadingsPerSecond(1'999 * kMillisecond), 0) << "that second is not over";
  EXPECT_EQ(watch.ReadingsPerSecond(2'000 * kMillisecond), 10);
  watch.Take(Reading(2'100));
  EXPECT_EQ(watch.ReadingsPerSecond(2'900 * kMillisecond), 10);
  EXPECT_EQ(watch.ReadingsPerSecond(3'000 * kMillisecond), 1);
  EXPECT_EQ(watch.ReadingsPerSecond(4'000 * kMillisecond), 0);
}

TEST(ConsoleWatch, TakesNoSecondFromBeforeAPause) {
  ConsoleWatch watch;
  for (Micros ms = 1000; ms < 2000; ms += 100) watch.Take(Reading(ms));
  watch.Take(Reading(7'000));
  EXPECT_EQ(watch.ReadingsPerSecond(7'500 * kMillisecond), 0);
}

TEST(ConsoleWatch, ReadingsOfModulesAndOtherAnswersDoNotCount) {
  ConsoleWatch watch;
  watch.Take(Reading(1'000, 2));
  watch.Take({1'100 * kMillisecond, RigLogKind::Reply, 0, 0.0, 0, "READY\r\n"});
  EXPECT_EQ(watch.ReadingsPerSecond(2'000 * kMillisecond), 0);
  EXPECT_EQ(watch.LastReading(), "");
  watch.Take(Reading(1'200));
  EXPECT_EQ(watch.LastReading(), "0.1 0.2");
}

TEST(ConsoleWatch, TellsHowLongAgoTheConsoleAsked) {
  ConsoleWatch watch;
  EXPECT_EQ(watch.SinceCommand(5 * kSecond), -1);
  watch.Take({2 * kSecond, RigLogKind::Command, 0, 0.0, 0, "D"});
  EXPECT_EQ(watch.SinceCommand(5 * kSecond), 3 * kSecond);
}

}  // namespace
}  // namespace penlog
