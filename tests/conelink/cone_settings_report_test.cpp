#include "conelink/cone_settings_report.h"

#include <gtest/gtest.h>

#include <new>

#include "conelink/cone_settings_text.h"
#include "conelink/link_world.h"
#include "core/box_answers.h"
#include "core/resumed_copy.h"
#include "forms/cone_settings_form.h"
#include "forms/setup_sounding_form.h"
#include "support/temporary_lines.h"

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

  /// A suspended sounding of three rows, read back, with its sounding file.
  void PutSounding() {
    session.SoundingFiles = {
        "/data/TemporaryData.txt", "/data/s.cpt", "", "", "/data/s.tim", "", ""};
    settings.DepthSignificantDigits = 3;
    settings.DepthStep = 0.02F;
    TextLines lines = StoredLines(3);
    lines[4] = session.ResumeConeId = "DCS0042";
    resumed_copy.Text = JoinedLines(lines);
    world.disk.Put("/data/TemporaryData.txt", resumed_copy.Text);
    for (const int channel : {1, 2, 3}) channels.ChannelPresent(channel) = kTrue;
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

TEST_F(ReportScreen, CloseTellsOfAConeWithoutANumber) {
  cone.ConeId = "  ";
  BoxAnswers boxes;
  PostCall(Now() + kSecond, this, [] {
    PostActionNow(
        {ActionKind::Click, &frmConeSettings, &frmConeSettings.cmdClose, "", 0, 0, 0, {}});
  });
  ShowModal(frmConeSettings);
  ASSERT_EQ(boxes.texts.size(), 1U);
  EXPECT_EQ(boxes.texts[0].find("THE CONE GIVES NO NUMBER."), 0U);
  EXPECT_TRUE(SetupSounding.Visible);
}

TEST_F(ReportScreen, BlanksAtTheEndsOfAConesNumberAreNoOtherCone) {
  session.ResumeConeId = " DCS0042 ";
  Show(frmConeSettings);
  EXPECT_EQ(FrontBox(), nullptr);
  EXPECT_TRUE(frmConeSettings.Visible);
}

TEST_F(ReportScreen, CloseInAResumeOpensTheConsoleAndStartsItsLoop) {
  PutSounding();
  Show(frmConeSettings);
  std::string text;
  world.AnswerNextBox(text);
  World::Press(frmConeSettings, frmConeSettings.cmdClose);
  EXPECT_EQ(text.find("THE SOUNDING FILE WAS MENDED"), 0U) << text;
  EXPECT_EQ(world.disk.Read("/data/s.cpt").find("KQ Sounding File"), 0U)
      << "its files are made whole first";
  EXPECT_TRUE(Main.Visible);
  EXPECT_FALSE(StartUp.Visible);
  EXPECT_FALSE(SetupSounding.Visible);
  EXPECT_FALSE(frmConeSettings.Visible);
  EXPECT_EQ(loops, 1);
}

TEST_F(ReportScreen, CloseInAResumeThatCannotBeTakenUpLeadsBackToTheStart) {
  PutSounding();
  world.disk.Remove("/data/TemporaryData.txt");
  Show(frmConeSettings);
  std::string text;
  world.AnswerNextBox(text);
  World::Press(frmConeSettings, frmConeSettings.cmdClose);
  EXPECT_EQ(text.find("THE LAST SOUNDING CANNOT BE RESUMED.  /data/TemporaryData.txt"), 0U) << text;
  EXPECT_FALSE(frmConeSettings.Visible);
  EXPECT_TRUE(StartUp.Visible);
  EXPECT_EQ(session.ResumeConeId, "") << "another sounding may be begun";
  EXPECT_FALSE(Main.Visible);
  EXPECT_EQ(loops, 0);
}

/// A disk whose files take more memory than there is.
struct FullMemory : MemoryDisk {
  std::string Read(const std::string&) override { throw std::bad_alloc(); }
};

TEST_F(ReportScreen, CloseInAResumeWithoutMemoryForItsFilesLeadsBackToTheStart) {
  PutSounding();
  FullMemory disk;
  disk.Put("/data/TemporaryData.txt", resumed_copy.Text);
  UseDisk(&disk);
  Show(frmConeSettings);
  std::string text;
  world.AnswerNextBox(text);
  World::Press(frmConeSettings, frmConeSettings.cmdClose);
  UseDisk(&world.disk);
  EXPECT_EQ(text, "THE LAST SOUNDING CANNOT BE RESUMED.  THERE IS NOT ENOUGH MEMORY.");
  EXPECT_FALSE(frmConeSettings.Visible);
  EXPECT_TRUE(StartUp.Visible);
  EXPECT_EQ(loops, 0);
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
