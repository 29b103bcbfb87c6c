#include "rig/cone_memory.h"

#include <gtest/gtest.h>

#include "rig/coding.h"

namespace penlog {
namespace {

UnitHeader Header() {
  UnitHeader header;
  header.field1 = "07";
  header.id = "DCS0417";
  header.created = "120315";
  header.calibrated = "260302";
  header.distance_pushed = 100;
  header.memory_size = 4096;
  header.clock_frequency = 14745;
  return header;
}

TEST(ConeMemory, HeaderFieldsStandAtTheirAddresses) {
  const ConeMemory memory(Header(), {});
  EXPECT_EQ(memory.Read(1, 2), "07");
  EXPECT_EQ(memory.Read(3, 7), "DCS0417");
  EXPECT_EQ(memory.Read(10, 6), "120315");
  EXPECT_EQ(memory.Read(16, 6), "260302");
  EXPECT_EQ(memory.Read(22, 3), "@Ad");
  EXPECT_EQ(DecodePlain(memory.Read(25, 3)), 4096);
  EXPECT_EQ(DecodePlain(memory.Read(28, 3)), 14745);
  EXPECT_EQ(memory.Read(31, 17), std::string(17, '@'));
}

TEST(ConeMemory, RecordWithoutFlagsHasSeventeenCharacters) {
  const UnitRecord tip = {1, 'T', 1000.0, 12.5, -3.0, 100, 0, 0.0, 0};
  EXPECT_EQ(RecordText(tip),
            "AT"
            "@@Oh"
            "D@A}"
            "`@@C"
            "Ad"
            "@");
}

TEST(ConeMemory, SubRecordsFollowTheirFlags) {
  const UnitRecord plain = {2, 'F', 1000.0, 12.5, 0.0, 0, 0, 0.0, 0};
  UnitRecord subtracts = plain;
  subtracts.subtract = 1;
  subtracts.subtract_factor = 12.5;
  UnitRecord with_area = plain;
  with_area.area_mm2 = 15000;
  UnitRecord both = subtracts;
  both.area_mm2 = 15000;
  const std::string start = RecordText(plain).substr(0, 16);
  EXPECT_EQ(RecordText(plain), start + "@");
  EXPECT_EQ(RecordText(subtracts), start + "A" + "A" + "D@A}");
  EXPECT_EQ(RecordText(with_area), start + "B" + EncodePlain(15000, 3));
  EXPECT_EQ(RecordText(both), start + "C" + "A" + "D@A}" + EncodePlain(15000, 3));
}

TEST(ConeMemory, RecordsFollowEachOtherAndEndInCode64) {
  UnitRecord sleeve = {2, 'F', 1000.0, 4.5, 0.3, 100, 1, 0.15, 15000};
  const UnitRecord tip = {1, 'T', 100000.0, 4.75, 0.25, 0, 0, 0.0, 1000};
  const ConeMemory memory(Header(), {sleeve, tip});
  EXPECT_EQ(memory.Read(31, 25), RecordText(sleeve));
  EXPECT_EQ(memory.Read(56, 20), RecordText(tip));
  EXPECT_EQ(memory.Read(76, 1), "@");
}

TEST(ConeMemory, WriteChangesTheDistancePushed) {
  ConeMemory memory(Header(), {});
  EXPECT_TRUE(memory.Write(22, 3, "@B@"));
  EXPECT_EQ(memory.DistancePushed(), 128);
  EXPECT_EQ(memory.Read(21, 5), "2@B@A") << "its neighbours stay";
}

TEST(ConeMemory, WriteOutsideOrOfAnotherLengthChangesNothing) {
  ConeMemory memory(Header(), {});
  EXPECT_FALSE(memory.Write(22, 3, "@B"));
  EXPECT_FALSE(memory.Write(0, 1, "A"));
  EXPECT_FALSE(memory.Write(5000, 1, "A"));
  EXPECT_EQ(memory.Read(22, 3), "@Ad");
}

}  // namespace
}  // namespace penlog
