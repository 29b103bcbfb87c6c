#include "fieldio/video_overlay.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "support/state.h"

namespace penlog {
namespace {

using Texts = std::vector<PacedText>;

const Texts kBuild = {{"{R", 0},     {"{F0", 0},        {"{MF", 10},   {"{ML", 10},
                      {"{F4", 0},    {"{A17", 0},       {"{C0101", 0}, {"Sounding: HOLE 7", 0},
                      {"{C0115", 0}, {"2026-06-15", 0}, {"{C3715", 0}};

Texts With(Texts texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

TEST(Overlay, ScreenIsBuiltInItsOrderWithItsPauses) {
  const OverlayTexts metres{"HOLE 7", "2026-06-15", 0, {}};
  EXPECT_EQ(OverlayScreen(metres), With(kBuild, {{"m", 0}}));
  const OverlayTexts feet{"HOLE 7", "2026-06-15", 1, {}};
  EXPECT_EQ(OverlayScreen(feet), With(kBuild, {{"ft", 0}}));
}

TEST(Overlay, ScreenWithADepthEndsInIt) {
  const OverlayTexts texts{"HOLE 7", "2026-06-15", 0, 12.0f};
  EXPECT_EQ(OverlayScreen(texts), With(kBuild, {{"m", 0}, {"{C3015", 0}, {"011.25", 0}}));
}

TEST(Overlay, DepthIsTheCamerasAndItsRightEdgeStays) {
  const struct {
    float depth;
    int units;
    const char* cursor;
    const char* text;
  } rows[] = {
      {0.0f, 0, "{C2915", "-000.75"},    // the sign stands at column 29
      {0.5f, 0, "{C2915", "-000.25"},    //
      {0.75f, 0, "{C3015", "000.00"},    // at the camera
      {0.8f, 0, "{C3015", "000.05"},     //
      {12.345f, 0, "{C3015", "011.60"},  // half away from zero
      {0.0f, 1, "{C2915", "-002.46"},    // feet
      {100.0f, 1, "{C3015", "325.64"},   //
      {1200.0f, 1, "{C2915", "3934.74"}  // longer: it begins further left
  };
  for (const auto& row : rows) {
    EXPECT_EQ(OverlayDepthTexts(row.depth, row.units), (Texts{{row.cursor, 0}, {row.text, 0}}))
        << row.depth << " " << row.units;
  }
}

TEST(Overlay, CursorHasItsColumnAndTwoDigitsOfRow) {
  EXPECT_EQ(OverlayCursor(1, 1), "{C0101");
  EXPECT_EQ(OverlayCursor(37, 15), "{C3715");
  EXPECT_EQ(OverlayCursor(6, 8), "{C0608");
}

class Resending : public testing::Test {
 protected:
  Resending() {
    session.SoundingName = "HOLE 7";
    cone.ConeId = "DCS1";
    sounding.CurrentDepth = 12.0f;
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.VideoOverlaySerialPort = 6;
    Open(Main.EncoderComm, 4);
    Open(Main.VideoOverlayComm, 6);
  }

  void Open(SerialPort& port, int number) {
    world.ports.Wire(number).OnBytes = [this, number](std::string_view bytes) {
      heard[number] += bytes;
    };
    port.SetCommPort(number);
    port.Open();
  }

  ClearedWorld world;
  std::map<int, std::string> heard;
};

const char* const kWhole =
    "{R{F0{MF{ML{F4{A17{C0101Sounding: HOLE 7{C01152026-06-15{C3715m{C3015011.25";

TEST_F(Resending, GoesToThePortThatCarriesTheOverlay) {
  const struct {
    std::int16_t lumen_probe;
    std::map<int, std::string> expected;
  } rows[] = {{0, {}}, {1, {{6, kWhole}}}, {2, {{4, kWhole}}}, {3, {}}, {4, {}}, {5, {}}};
  for (const auto& row : rows) {
    settings.LumenProbePresent = row.lumen_probe;
    heard.clear();
    ResendOverlayScreen();
    World::RunFor(5 * kSecond);
    EXPECT_EQ(heard, row.expected) << row.lumen_probe;
  }
}

TEST_F(Resending, WritesNoDepthBeforeAConeWasIdentified) {
  settings.LumenProbePresent = 1;
  cone.ConeId.clear();
  ResendOverlayScreen();
  World::RunFor(5 * kSecond);
  EXPECT_TRUE(heard[6].ends_with("{C3715m")) << heard[6];
}

TEST_F(Resending, TakesItsTextsWhenItIsAsked) {
  settings.LumenProbePresent = 1;
  settings.DepthUnits = 1;
  ResendOverlayScreen();
  World::RunFor(5 * kSecond);
  EXPECT_TRUE(heard[6].ends_with("{C3715ft{C3015036.91")) << heard[6];
}

TEST_F(Resending, NothingGoesToTheConeWhereTheTruckSharesItsPort) {
  settings.LumenProbePresent = 2;
  settings.TruckInterfaceSerialPort = 3;
  Main.EncoderComm.Close();
  Open(Main.ConeComm, 3);
  ResendOverlayScreen();
  World::RunFor(5 * kSecond);
  EXPECT_EQ(heard, (std::map<int, std::string>{}));
}

TEST_F(Resending, AClosedPortGetsNothingAndEndsWhatWasUnderWay) {
  settings.LumenProbePresent = 1;
  ResendOverlayScreen();
  Main.VideoOverlayComm.Close();
  ResendOverlayScreen();
  EXPECT_FALSE(OverlayOutput().Busy());
}

}  // namespace
}  // namespace penlog
