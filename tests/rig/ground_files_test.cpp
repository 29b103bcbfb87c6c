#include "rig/ground_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/memory_disk.h"
#include "platform/runtime_fault.h"
#include "rig/table_text.h"

namespace penlog {
namespace {

const char kGef[] =
    "#GEFID= 1, 1, 0\r\n"
    "#COLUMN= 4\r\n"
    "#COLUMNINFO= 1, m, Sondeerlengte, 1\r\n"
    "#COLUMNINFO= 2, %, Wrijvingsgetal, 4\r\n"
    "#COLUMNINFO= 3, MPa, Conusweerstand, netto, 2\r\n"
    "#COLUMNINFO= 4, kPa, Plaatselijke wrijving, 3\r\n"
    "#COLUMNVOID= 4, -999\r\n"
    "#COLUMNSEPARATOR= ;\r\n"
    "#RECORDSEPARATOR= !\r\n"
    "#COMMENT= co\xEB\x66\x66iciënt\r\n"
    "#EOH=\r\n"
    "0.50;1.1;2.5;12;!\r\n"
    "1.00;1.2;3.5;-999;!\r\n"
    "1.50;1.2;4.5;14;!\r\n";

std::string FaultOf(const std::string& text) {
  try {
    GroundFromText(text, "hole.gef");
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return "no fault";
}

std::string Without(std::string text, const std::string& piece) {
  const std::size_t at = text.find(piece);
  return at == std::string::npos ? text : text.erase(at, piece.size());
}

std::string Replaced(std::string text, const std::string& piece, const std::string& by) {
  const std::size_t at = text.find(piece);
  return at == std::string::npos ? text : text.replace(at, piece.size(), by);
}

TEST(Gef, ColumnsAreToldByTheirQuantityAndUnit) {
  const Ground ground = GroundFromText(kGef, "hole.gef");
  EXPECT_DOUBLE_EQ(ground.At(0.5).qc, 2500.0);
  EXPECT_DOUBLE_EQ(ground.At(0.75).qc, 3000.0);
  EXPECT_DOUBLE_EQ(ground.At(1.0).fs, 13.0) << "the void between 12 and 14";
  EXPECT_EQ(ground.At(1.0).u2, 0.0);
  EXPECT_DOUBLE_EQ(ground.Deepest(), 1.5);
}

TEST(Gef, WithoutSeparatorsBlanksPart) {
  std::string text = Without(Without(kGef, "#COLUMNSEPARATOR= ;\r\n"), "#RECORDSEPARATOR= !\r\n");
  text = text.substr(0, text.find("0.50;")) + " 5.0e-001  1.1\t2.5000e+000 12\n\n";
  EXPECT_DOUBLE_EQ(GroundFromText(text, "x").At(0.5).qc, 2500.0);
}

TEST(Gef, DepthServesWhereNoLengthIsGiven) {
  const std::string text = Replaced(kGef, "Sondeerlengte, 1\r", "Diepte, 11\r");
  EXPECT_DOUBLE_EQ(GroundFromText(text, "x").At(0.5).qc, 2500.0);
}

TEST(Gef, BadFileSaysWhatIsWrongAndWhere) {
  EXPECT_EQ(FaultOf(Without(kGef, "#EOH=\r\n")),
            "hole.gef, line 11: a row before the end of the header (#EOH=)");
  EXPECT_EQ(FaultOf(std::string(kGef, 29)), "hole.gef: no end of the header (#EOH=)");
  EXPECT_EQ(FaultOf(Replaced(kGef, "netto, 2", "netto, 12")),
            "hole.gef: no column of tip resistance (quantity 2)");
  for (const char* odd : {"netto, 1e300", "netto, -1e300", "netto, 1001", "netto, -1"}) {
    EXPECT_EQ(FaultOf(Replaced(kGef, "netto, 2", odd)), "hole.gef, line 5: no such quantity")
        << odd;
  }
  EXPECT_EQ(FaultOf(Replaced(kGef, "lengte, 1", "lengte, 99")),
            "hole.gef: no column of penetration length (quantity 1) or depth (11)");
  EXPECT_EQ(FaultOf(Replaced(kGef, "3, MPa", "3, furlong")), "hole.gef: unknown unit \"furlong\"");
  EXPECT_EQ(FaultOf(Replaced(kGef, "3.5;-999;", "")),
            "hole.gef, line 13: the row ends before column 3");
  EXPECT_EQ(FaultOf(Replaced(kGef, "3.5;", "3,5;")), "hole.gef, line 13: \"3,5\" is no number");
  EXPECT_EQ(FaultOf(Replaced(kGef, "#COLUMN= 4", "#REPORTCODE= GEF-DISS-Report, 1, 0, 0")),
            "hole.gef, line 2: this is a dissipation, not a sounding");
  EXPECT_EQ(FaultOf(std::string(kGef).substr(0, std::string(kGef).find("0.50;"))),
            "hole.gef: no rows behind the header");
}

TEST(Csv, LinesBeforeTheHeadingArePassedOver) {
  const Ground ground = GroundFromText(
      ",,,\n,,,\nAssumed GWL:,0.94,m,\nDepth (m),qc (MPa),fs (kPa),u2 (MPa)\n0.5,1.5,20,0.01\n"
      "1.0,2.5,,0.02\n,,,\n1.5,3.5,40,\n",
      "x.csv");
  EXPECT_DOUBLE_EQ(ground.At(0.75).qc, 2000.0);
  EXPECT_DOUBLE_EQ(ground.At(1.0).fs, 30.0);
  EXPECT_DOUBLE_EQ(ground.At(1.5).u2, 20.0);
}

TEST(Csv, SemicolonsAndTabsPartToo) {
  EXPECT_DOUBLE_EQ(GroundFromText("depth;qc\n1;2\n", "x").At(1.0).qc, 2000.0);
  EXPECT_DOUBLE_EQ(GroundFromText("Depth [mm]\tqc [bar]\n1000\t2\n", "x").At(1.0).qc, 200.0);
}

TEST(Csv, BadFileSaysWhatIsWrongAndWhere) {
  EXPECT_EQ(FaultOf("a,b\n1,2\n"), "hole.gef: no heading with depth and qc");
  EXPECT_EQ(FaultOf(""), "hole.gef: no heading with depth and qc");
  EXPECT_EQ(FaultOf("Depth,qc\n"), "hole.gef: no rows behind the heading");
  EXPECT_EQ(FaultOf("Depth,qc\n1,x\n"), "hole.gef, line 2: \"x\" is no number");
  EXPECT_EQ(FaultOf("Depth,qc (pint)\n1,1\n"), "hole.gef, line 1: unknown unit \"pint\"");
}

TEST(Units, AreToldWithoutCaseByTheirFirstWord) {
  EXPECT_EQ(UnitSize("MPa", Measure::Pressure), 1000.0);
  EXPECT_EQ(UnitSize("Mpa", Measure::Pressure), 1000.0);
  EXPECT_EQ(UnitSize("MPa (megaPascal)", Measure::Pressure), 1000.0);
  EXPECT_EQ(UnitSize("kPa", Measure::Pressure), 1.0);
  EXPECT_EQ(UnitSize("m (meter)", Measure::Length), 1.0);
  EXPECT_EQ(UnitSize("bananas", Measure::Pressure), 0.0);
  EXPECT_EQ(UnitSize("m", Measure::Pressure), 0.0);
  EXPECT_EQ(UnitSize("MPa", Measure::Length), 0.0);
}

TEST(LoadGround, MissingFileIsAFault) {
  MemoryDisk disk;
  UseDisk(&disk);
  EXPECT_THROW(LoadGround("/nowhere.gef"), RuntimeFault);
}

// Real soundings, where they stand beside the project.

std::string SharedFile(const std::string& name) {
  const auto path = std::filesystem::path(PENLOG_SOURCE_DIR) / ".." / "shared" / "data" / name;
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

struct RealRow {
  const char* file;
  double deepest;
  double depth;  // of a line of the file
  double qc;     // kPa there
  double fs;
  double u2;
};

class RealSounding : public testing::TestWithParam<RealRow> {};

TEST_P(RealSounding, IsReadAsItStands) {
  const RealRow& row = GetParam();
  const std::string text = SharedFile(row.file);
  if (text.empty()) GTEST_SKIP() << row.file << " is not here";
  const Ground ground = GroundFromText(text, row.file);
  EXPECT_NEAR(ground.Deepest(), row.deepest, 0.02);
  EXPECT_NEAR(ground.At(row.depth).qc, row.qc, 1e-6);
  EXPECT_NEAR(ground.At(row.depth).fs, row.fs, 1e-6);
  EXPECT_NEAR(ground.At(row.depth).u2, row.u2, 1e-6);
}

TEST(RealDissipation, IsRefusedAsASounding) {
  const std::string text = SharedFile("gef/CPT000000036524_dissipation.gef");
  if (text.empty()) GTEST_SKIP();
  EXPECT_NE(FaultOf(text).find("this is a dissipation"), std::string::npos) << FaultOf(text);
}

INSTANTIATE_TEST_SUITE_P(
    Files, RealSounding,
    testing::Values(RealRow{"gef/pygef_cpt.gef", 20.05, 9.95, 2265.0, 12.0, 36.0},
                    RealRow{"gef/pygef_cpt2.gef", 10.38, 4.98, 278.7, 8.0, 0.0},
                    RealRow{"gef/pygef_example.gef", 29.66, 9.96, 15590.0, 90.0, 0.0},
                    RealRow{"csv/liquepy_standard_1_cptu.csv", 27.64, 10.05, 3810.0, 34.06, 82.5}));

}  // namespace
}  // namespace penlog
