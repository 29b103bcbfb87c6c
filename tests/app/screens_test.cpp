// Every screen as a whole start and sounding leave it, in virtual time, with windows of each size,
// in English and in a language that is 30 % longer: no text is cut, nothing lies on another. And a
// sounding whose colours are changed while it records.
#include <gtest/gtest.h>

#include <QApplication>

#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "operator/virtual_session.h"
#include "platform/files.h"
#include "platform/memory_disk.h"
#include "platform/posix/posix_disk.h"
#include "platform_qt/room.h"
#include "rig/rig_setups.h"
#include "sounding/sounding_state.h"
#include "support/project_file.h"

namespace penlog {
namespace {

/// Looks at each screen that is shown whenever the script takes a picture.
struct RoomWatch {
  std::string Look(const std::string& screen) {
    Form* form = FindForm(screen);
    if (form == nullptr || !form->Visible) return "no screen " + screen;
    FormWindow window(*form);
    for (const auto translation : {false, true}) {
      UseTranslation(translation ? Longer : nullptr);
      for (const QSize& display : kDisplays) {
        ExpectNothingCut(window, display);
        ExpectNoOverlap(window, display);
      }
    }
    UseTranslation(nullptr);
    ++looks;
    return {};
  }
  int looks = 0;
};

SessionResult PlayWatched(const std::string& file, VirtualSession& session, RoomWatch& watch) {
  PlayerHands hands;
  hands.shot = [&watch](const std::string&, const std::string& screen) {
    return watch.Look(screen);
  };
  return session.Play(ParseScript(file, ProjectFile("operator/scripts/" + file)), std::move(hands));
}

TEST(Screens, OfTheDemoCutNothingAtAnySize) {
  VirtualSession session(MakeRigSetup("dcs"), {});
  RoomWatch watch;
  const SessionResult result = PlayWatched("demo.txt", session, watch);
  EXPECT_EQ(result.exit_code, 0) << result.report;
  EXPECT_GE(watch.looks, 13);
}

TEST(Screens, ChangingTheColoursLosesNoRow) {
  const auto rows_with = [](const std::string& lines) {
    VirtualSession session(MakeRigSetup("dcs"), {});
    std::string text = ProjectFile("operator/scripts/demo.txt");
    const std::string after = "wait 30\n";
    const auto at = text.find(after, text.find("rig push 5"));
    text.insert(at + after.size(), lines);
    std::int32_t rows = 0;
    const SessionResult result =
        session.Play(ParseScript("demo.txt", text), {}, [&] { rows = sounding.RowCount; });
    EXPECT_EQ(result.exit_code, 0) << result.report;
    return rows;
  };
  const std::int32_t plain = rows_with("");
  std::string changes;
  for (int i = 0; i < 20; ++i) changes += "menu Main.mnuNight\nmenu Main.mnuDay\n";
  EXPECT_EQ(rows_with(changes), plain);
  EXPECT_GT(plain, 200);
}

TEST(Screens, LongWorkShowsProgressThatMoves) {
  VirtualSessionSetup setup;
  setup.cone_port = 7;
  setup.truck_port = 4;
  VirtualSession session(MakeRigSetup("dcs"), setup);
  const SessionResult result =
      session.Play(ParseScript("progress",
                               "screen StartUp\n"
                               "click StartUp.cmdStart\n"
                               "expect StartUp.lblProgress \"STEP 1 OF 5\"\n"
                               "answer yes \"CONE SERIAL PORT NOT DETECTED.\"\n"
                               "expect StartUp.lblProgress \"PORT 1 OF 2\"\n"
                               "expect StartUp.lblProgress \"PORT 2 OF 2\"\n"
                               "answer ok \"CONE DETECTED ON PORT 7\"\n"
                               "answer ok \"PRESS OK TO VERIFY\"\n"
                               "expect StartUp.lblProgress \"STEP 2 OF 5\"\n"
                               "select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4\n"
                               "click frmSpecifyTruckInterface.cmdSavePort\n"
                               "answer ok \"TRUCK INTERFACE SERIAL PORT SET TO PORT 4\"\n"
                               "expect StartUp.lblProgress \"STEP 5 OF 5\"\n"
                               "expect StartUp.lblProgress \"CHANNEL RECORD 1\"\n"
                               "expect StartUp.lblProgress \"CHANNEL RECORD 3\"\n"
                               "screen frmConeSettings 60\n"
                               "click frmConeSettings.cmdClose\n"));
  EXPECT_EQ(result.exit_code, 0) << result.report;
  EXPECT_EQ(StartUp.lblProgress.Caption, "");
}

}  // namespace
}  // namespace penlog
