#include "sounding/soil_type.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace penlog {
namespace {

// Bounds as log10 of bar. Index 10 (1.0 %): zones 3, 5, 9; index 11: zone 5 gone, 3 and 9 higher.
SoilTables Chart() {
  SoilTables tables;
  tables.FrictionRatioMax = 20;
  tables.SptDivisor = {0, 2, 1, 1, 1.5f, 2, 2.5f, 3, 4, 5, 6, 1, 2};
  tables.SbtTable[10][1] = {3, 0.5f};
  tables.SbtTable[10][2] = {5, 1.0f};
  tables.SbtTable[10][3] = {9, 2.0f};
  tables.SbtTable[11][1] = {3, 0.7f};
  tables.SbtTable[11][3] = {9, 2.4f};
  return tables;
}

// At `ratio` percent and a tip of 10 to the power `log_tip` bar.
SoilTypeAndN At(float ratio, float log_tip, const SoilTables& tables) {
  const float qt = 100.0f * std::pow(10.0f, log_tip);
  return SoilType(qt, qt * ratio / 100.0f, tables);
}

TEST(SoilType, TipNotAboveZeroGivesNone) {
  for (const float qt : {0.0f, -0.001f, -5000.0f, std::nanf("")}) {
    const SoilTypeAndN soil_type = SoilType(qt, 10.0f, Chart());
    EXPECT_EQ(soil_type.zone, 0.0f) << qt;
    EXPECT_EQ(soil_type.n, 0.0f) << qt;
  }
}

TEST(SoilType, NegativeFrictionRatioGivesNone) {
  const SoilTypeAndN soil_type = SoilType(5000.0f, -0.01f, Chart());
  EXPECT_EQ(soil_type.zone, 0.0f);
  EXPECT_EQ(soil_type.n, 0.0f);
  EXPECT_EQ(SoilType(5000.0f, std::nanf(""), Chart()).zone, 0.0f);
}

TEST(SoilType, FrictionRatioOfZeroIsOnTheChart) {
  SoilTables tables = Chart();
  tables.SbtTable[0][1] = {1, 0.2f};
  EXPECT_EQ(SoilType(5000.0f, 0.0f, tables).zone, 1.0f);
}

TEST(SoilType, BelowAllBandsIsZoneTwo) {
  const SoilTypeAndN soil_type = At(1.0f, 0.4f, Chart());
  EXPECT_EQ(soil_type.zone, 2.0f);
  EXPECT_EQ(soil_type.n, 3.0f);  // 2.51 bar over 1
}

TEST(SoilType, IndexAtTheEndOfTheDataGivesNone) {
  SoilTables tables = Chart();
  tables.FrictionRatioMax = 11;
  EXPECT_EQ(At(1.05f, 1.5f, tables).zone, 5.0f);
  tables.FrictionRatioMax = 10;
  EXPECT_EQ(At(1.05f, 1.5f, tables).zone, 0.0f);
  EXPECT_EQ(At(1.05f, 1.5f, tables).n, 0.0f);
}

TEST(SoilType, FrictionRatioOfTenPercentIsStoppedByFrictionRatioMax) {
  SoilTables tables = Chart();
  tables.SbtTable[100][1] = {6, 1.0f};
  tables.FrictionRatioMax = 100;
  EXPECT_EQ(SoilType(10000.0f, 1000.0f, tables).zone, 0.0f);
  EXPECT_EQ(SoilType(1.0f, 1e30f, tables).zone, 0.0f);
}

TEST(SoilType, TheLastIndexHasNoContinuation) {
  SoilTables tables = Chart();
  tables.SbtTable[100][1] = {6, 1.0f};
  tables.FrictionRatioMax = 101;
  // What lies behind the grid in memory must not be taken for a column of it.
  tables.SptDivisor[1] = 6;
  tables.SptDivisor[2] = 9;
  EXPECT_EQ(SoilType(10000.0f, 1005.0f, tables).zone, 6.0f);
  EXPECT_EQ(SoilType(900.0f, 90.45f, tables).zone, 2.0f);
}

TEST(SoilType, BoundRunsStraightToTheSameZoneOfTheNextIndex) {
  struct Row {
    float ratio, log_tip, zone;
  };
  constexpr Row rows[] = {
      {1.05f, 0.61f, 3}, {1.05f, 0.59f, 2},  // 0.5 to 0.7: 0.6 in the middle
      {1.05f, 2.21f, 9}, {1.05f, 2.19f, 5},  // 2.0 to 2.4: 2.2
      {1.02f, 2.09f, 9}, {1.02f, 2.07f, 5},  // 2.08
  };
  for (const Row& row : rows) {
    EXPECT_EQ(At(row.ratio, row.log_tip, Chart()).zone, row.zone)
        << row.ratio << " " << row.log_tip;
  }
}

TEST(SoilType, ZoneWithoutContinuationKeepsAStepBoundary) {
  EXPECT_EQ(At(1.09f, 1.01f, Chart()).zone, 5.0f);
  EXPECT_EQ(At(1.09f, 0.99f, Chart()).zone, 3.0f);
  EXPECT_EQ(At(1.101f, 1.5f, Chart()).zone, 3.0f);
}

TEST(SoilType, TheLastOfTwoMatchingBandsHolds) {
  SoilTables tables = Chart();
  tables.SbtTable[10][4] = {4, 0.8f};  // later in the table, lower on the chart
  EXPECT_EQ(At(1.0f, 2.5f, tables).zone, 4.0f);
  EXPECT_EQ(At(1.0f, 0.7f, tables).zone, 3.0f);
}

TEST(SoilType, TheLastBandOfTheSameZoneIsTheContinuation) {
  SoilTables tables = Chart();
  tables.SbtTable[11][5] = {3, 0.9f};  // beside the one with 0.7
  EXPECT_EQ(At(1.05f, 0.69f, tables).zone, 2.0f);
  EXPECT_EQ(At(1.05f, 0.71f, tables).zone, 3.0f);
}

TEST(SoilType, BoundOfZeroOrBelowIsNoBand) {
  SoilTables tables = Chart();
  tables.SbtTable[15][1] = {6, 0.0f};
  EXPECT_EQ(At(1.55f, 1.0f, tables).zone, 2.0f);
  tables.SbtTable[15][1] = {6, 0.1f};
  tables.SbtTable[16][1] = {6, -0.5f};
  EXPECT_EQ(At(1.51f, 1.0f, tables).zone, 6.0f);
  EXPECT_EQ(At(1.55f, 1.0f, tables).zone, 2.0f);
}

TEST(SoilType, TipOnTheBoundIsStillBelow) {
  SoilTables tables = Chart();
  tables.SbtTable[0][1] = {1, 1.0f};
  EXPECT_EQ(SoilType(1000.0f, 0.0f, tables).zone, 2.0f);  // 10 bar
  EXPECT_EQ(SoilType(1001.0f, 0.0f, tables).zone, 1.0f);
}

TEST(SoilType, NIsTheTipInBarOverTheZonesDivisorToTheNearest) {
  SoilTables tables = Chart();
  tables.SbtTable[0][1] = {9, 0.1f};  // divisor 5
  struct Row {
    float qt, n;
  };
  constexpr Row rows[] = {{5000, 10}, {5200, 10}, {5250, 11}, {4700, 9}, {240, 0}, {250, 1}};
  for (const Row& row : rows) {
    const SoilTypeAndN soil_type = SoilType(row.qt, 0.0f, tables);
    EXPECT_EQ(soil_type.zone, 9.0f) << row.qt;
    EXPECT_EQ(soil_type.n, row.n) << row.qt;
  }
}

TEST(SoilType, WithoutTablesThereIsNone) {
  EXPECT_EQ(SoilType(5000.0f, 50.0f, SoilTables{}).zone, 0.0f);
  EXPECT_EQ(SoilType(5000.0f, 50.0f, SoilTables{}).n, 0.0f);
}

}  // namespace
}  // namespace penlog
