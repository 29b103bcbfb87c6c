// The start screen with a stored sounding on its disk, a scripted cone, and an operator who
// answers.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "conelink/cone_settings_report.h"
#include "conelink/cone_state.h"
#include "conelink/scripted_cone.h"
#include "core/channel_files.h"
#include "core/resume.h"
#include "core/settings_file.h"
#include "forms/cone_settings_form.h"
#include "platform/runtime_fault.h"
#include "sounding/sounding_state.h"
#include "support/temporary_lines.h"
#include "tests/core/sample_cone.h"
#include "tests/core/start_up_world.h"

namespace penlog {

using Texts = std::vector<std::string>;

inline constexpr const char* kTemporary = "/data/TemporaryData.txt";

class ResumeScreen : public ::testing::Test {
 protected:
  ResumeScreen() {
    LayDownFirstRunFiles();
    LoadChannelFiles();
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
    settings.DepthStepCounts = 4;
    session.LastSoundingCompletedMessage = "LAST SOUNDING COMPLETED.  CANNOT RESTART.";
    world.ports.Wire(4);
    StartUp.cmdStart.Click = StartUp_cmdStart_Click;
    StartUp.cmdResume.Click = StartUp_cmdResume_Click;
    StartUp.cmdResumeAtLastDepth.Click = StartUp_cmdResumeAtLastDepth_Click;
    StartUp.cmdResumeAtSurface.Click = StartUp_cmdResumeAtSurface_Click;
    StartUp.cmdCancel.Click = StartUp_cmdCancel_Click;
    StartUp.cmdExit.Click = StartUp_cmdExit_Click;
    frmConeSettings.cmdClose.Click = [] { Hide(frmConeSettings); };
  }
  ~ResumeScreen() override {
    DropCalls(this);
    for (Button* button : {&StartUp.cmdStart, &StartUp.cmdResume, &StartUp.cmdResumeAtLastDepth,
                           &StartUp.cmdResumeAtSurface, &StartUp.cmdCancel, &StartUp.cmdExit,
                           &frmConeSettings.cmdClose}) {
      button->Click = {};
    }
    frmConeSettings.Load = {};
  }

  void Put(const TextLines& lines) { world.disk.Put(kTemporary, JoinedLines(lines)); }
  void PutRows(int rows) { Put(StoredLines(rows)); }
  /// Rows at these depths, and "mark" for that of a drilled gap; their values say nothing.
  void PutDepths(const Texts& depths) {
    TextLines lines = StoredHeader();
    for (const auto& depth : depths) {
      const int n = static_cast<int>(lines.size());
      lines.push_back(depth == "mark"
                          ? "DRILLOUT*****" + std::string(60, '*')
                          : StoredRowLine(depth, "2.00", {StoredValue(1, n), "2.0", "3.0"}));
    }
    Put(lines);
  }
  /// RESUME LAST SOUNDING.
  void Resume() { World::Press(StartUp, StartUp.cmdResume); }
  void AtLastDepth() {
    CloseReport();
    World::Press(StartUp, StartUp.cmdResumeAtLastDepth);
  }
  void AtSurface(const std::string& distance) {
    StartUp.txtDistanceDrilled.Text = distance;
    CloseReport();
    World::Press(StartUp, StartUp.cmdResumeAtSurface);
  }
  ScriptedCone& Plug(int number, const std::string& id = "DSE1234") {
    cones_.push_back(std::make_unique<ScriptedCone>(world.ports.Wire(number)));
    cones_.back()->SetUnit(SampleMemory(TipAndSleeve() + SampleRecord(3, 'P'), id));
    return *cones_.back();
  }
  void ExpectIdle() {
    EXPECT_TRUE(StartUp.Visible);
    EXPECT_FALSE(StartUp.frmResume.Visible);
    EXPECT_EQ(session.ResumeConeId, "");
    EXPECT_TRUE(StartUp.cmdStart.Enabled);
    EXPECT_TRUE(StartUp.cmdResume.Enabled);
    EXPECT_TRUE(StartUp.cmdCalibrate.Enabled);
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_FALSE(StartUp.Timer1.Running());
  }
  void ExpectPanel() {
    EXPECT_TRUE(StartUp.frmResume.Visible);
    EXPECT_FALSE(StartUp.cmdStart.Enabled) << "a start would run as a resume without rows";
    EXPECT_FALSE(StartUp.cmdResume.Enabled);
    EXPECT_FALSE(StartUp.cmdCalibrate.Enabled);
    EXPECT_FALSE(StartUp.cmdSystemSetup.Enabled);
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_TRUE(StartUp.cmdResumeAtLastDepth.Enabled);
    EXPECT_TRUE(StartUp.cmdResumeAtSurface.Enabled);
    EXPECT_TRUE(StartUp.txtDistanceDrilled.Enabled);
    EXPECT_TRUE(StartUp.cmdCancel.Enabled);
  }
  bool StatusWas(const std::string& text) const {
    return std::find(world.statuses.begin(), world.statuses.end(), text) != world.statuses.end();
  }

  StartUpWorld world;
  bool report_shown = false;

 private:
  void CloseReport() {
    world.WhenShown(frmConeSettings, [this] {
      report_shown = true;
      StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose);
    });
  }

  std::vector<std::unique_ptr<ScriptedCone>> cones_;
};

}  // namespace penlog
