#include "conelink/cone_settings_report.h"

#include <gtest/gtest.h>

#include "conelink/cone_settings_text.h"
#include "conelink/link_world.h"
#include "forms/cone_settings_form.h"
#include "forms/setup_sounding_form.h"

namespace penlog {
namespace {

class ReportScreen : public ::testing::Test {
 protected:
  ReportScreen() {
    cone.ConeId = "DCS0042";
    frmConeSettings.Load = ConeSettingsOpen;
    frmConeSettings.cmdClose.Click = frmConeSettings_cmdClose_Click;
    frmConeSettings.RunMainloop = [this] { ++loops; };
    Show(StartUp);
  }
  ~ReportScreen() override {
    frmConeSettings.Load = {};
    frmConeSettings.cmdClose.Click = {};
    frmConeSettings.RunMainloop = {};
  }

  LinkWorld world;
  int loops = 0;
};

TEST_F(ReportScreen, OpensWithTheReport) {
  Show(frmConeSettings);
  EXPECT_EQ(frmConeSettings.lblReport.Caption, ConeSettingsReport());
  EXPECT_NE(frmConeSettings.lblReport.Caption.find("Cone #: DCS0042\n"), std::string::npos);
}

TEST_F(ReportScreen, RightConeOfAResumeIsAccepted) {
  session.ResumeConeId = "DCS0042";
  Show(frmConeSettings);
  EXPECT_EQ(FrontBox(), nullptr);
  EXPECT_TRUE(frmConeSettings.Visible);
}

TEST_F(ReportScreen, WrongConeOfAResumeIsToldAndEndsTheProgram) {
  session.ResumeConeId = "DCS0007";
  std::string text;
  world.AnswerNextBox(text);
  EXPECT_THROW(Show(frmConeSettings), ProgramEnd);
  EXPECT_EQ(text,
            "Cone #DCS0007 is required to resume the last sounding.  Please attach it and restart "
            "the program.");
  ResetYield();
}

TEST_F(ReportScreen, CloseOpensTheSetupOfTheSounding) {
  PostCall(Now() + kSecond, this, [] {
    PostActionNow(
        {ActionKind::Click, &frmConeSettings, &frmConeSettings.cmdClose, "", 0, 0, 0, {}});
  });
  ShowModal(frmConeSettings);
  EXPECT_FALSE(frmConeSettings.Visible);
  EXPECT_TRUE(SetupSounding.Visible);
  EXPECT_FALSE(Main.Visible);
  EXPECT_EQ(loops, 0);
  EXPECT_TRUE(StartUp.Timer1.Running());
}

TEST_F(ReportScreen, CloseInAResumeOpensTheConsoleAndStartsItsLoop) {
  session.ResumeConeId = "DCS0042";
  Show(frmConeSettings);
  World::Press(frmConeSettings, frmConeSettings.cmdClose);
  EXPECT_TRUE(Main.Visible);
  EXPECT_FALSE(StartUp.Visible);
  EXPECT_FALSE(SetupSounding.Visible);
  EXPECT_FALSE(frmConeSettings.Visible);
  EXPECT_EQ(loops, 1);
}

TEST_F(ReportScreen, CloseInCalibrationModeOpensTheConsole) {
  session.CalibrationMode = kTrue;
  Show(frmConeSettings);
  World::Press(frmConeSettings, frmConeSettings.cmdClose);
  EXPECT_TRUE(Main.Visible);
  EXPECT_FALSE(SetupSounding.Visible);
  EXPECT_EQ(loops, 1);
}

}  // namespace
}  // namespace penlog
