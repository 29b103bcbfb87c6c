#include "screens/connection_status.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "support/state.h"

namespace penlog {
namespace {

class ConnectionStatus : public ::testing::Test {
 protected:
  ConnectionStatus() { frmWarning.Load = frmWarning_Load; }
  ~ConnectionStatus() override { frmWarning.Load = {}; }
  ClearedWorld world;
};

TEST_F(ConnectionStatus, OpensWithAGreenPanelForEachLinkInUse) {
  struct Row {
    int truck;
    int ascii;
    int overlay;
    int lumen_probe;
    bool truck_panel;
    bool ascii_panel;
    bool overlay_panel;
  };
  for (const Row& row : {
           Row{3, 0, 0, 0, false, false, false},  // on the cone's own port
           Row{4, 0, 0, 0, true, false, false}, Row{3, 5, 0, 0, false, true, false},
           Row{4, 5, 0, 0, true, true, false}, Row{3, 0, 7, 1, false, false, true},
           Row{4, 0, 7, 1, true, false, true}, Row{3, 5, 7, 1, false, true, true},
           Row{4, 5, 7, 1, true, true, true},
           Row{4, 5, 7, 0, true, true, false},  // a port, but no board
           Row{4, 5, 0, 1, true, true, false},  // a board without a port
       }) {
    SCOPED_TRACE(::testing::Message()
                 << "truck " << row.truck << ", ASCII " << row.ascii << ", overlay " << row.overlay
                 << ", Lumen probe " << row.lumen_probe);
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(row.truck);
    settings.ASCIIOutSerialPort = static_cast<std::int16_t>(row.ascii);
    settings.VideoOverlaySerialPort = static_cast<std::int16_t>(row.overlay);
    settings.LumenProbePresent = static_cast<std::int16_t>(row.lumen_probe);
    Show(frmWarning);
    EXPECT_TRUE(frmWarning.frmSerialConnected.Visible);
    EXPECT_TRUE(frmWarning.frmModulesConnected.Visible);
    EXPECT_EQ(bool(frmWarning.frmEncoderConnected.Visible), row.truck_panel);
    EXPECT_EQ(bool(frmWarning.frmASCIISerialConnected.Visible), row.ascii_panel);
    EXPECT_EQ(bool(frmWarning.frmFrameGrabberConnected.Visible), row.overlay_panel);
    for (const Frame* warning : {&frmWarning.frmSerialWarning, &frmWarning.frmEncoderWarning,
                                 &frmWarning.frmASCIIOutWarning, &frmWarning.frmSensorayWarning,
                                 &frmWarning.frmModuleWarning}) {
      EXPECT_FALSE(warning->Visible) << warning->Name();
    }
    Unload(frmWarning);
  }
}

TEST_F(ConnectionStatus, GoesBehindTheConsoleOnceItsTimerFindsAllClear) {
  struct Row {
    std::int16_t shown;
    std::int16_t pinned;
    bool behind;
  };
  for (const Row& row : {Row{0, 0, true}, Row{-1, 0, false}, Row{0, -1, false}}) {
    Show(Main);
    Show(frmWarning);
    frmWarning.Timer1.Start();
    cone.WarningShown = row.shown;
    cone.WarningPinned = row.pinned;
    frmWarning_Timer1_Timer();
    EXPECT_EQ(ShownForms().front() == &frmWarning, row.behind) << row.shown << row.pinned;
    EXPECT_FALSE(frmWarning.Timer1.Running());
    Unload(frmWarning);
  }
}

}  // namespace
}  // namespace penlog
