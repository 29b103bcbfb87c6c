#include "fieldio/ascii_out.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

TEST(ASCIIOut, TestLineEndsInCarriageReturnAndLineFeedInThatOrder) {
  EXPECT_EQ(ASCIIOutTestLine(), "ASCII OUT TEST\r\n");
}

TEST(ASCIIOut, RunsAt19200Baud) {
  EXPECT_EQ(kASCIIOutSettings, "19200,N,8,1");
}

}  // namespace
}  // namespace penlog
