#include "screens/specify_ports.h"

#include <gtest/gtest.h>

#include "core/settings.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "support/boxes.h"
#include "support/world.h"

namespace penlog {
namespace {

class SpecifyPortsTest : public testing::Test {
 protected:
  SpecifyPortsTest() {
    settings = SettingsState{};
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    world.ports.Wire(3);
    world.ports.Wire(12);
  }
  ~SpecifyPortsTest() override { settings = SettingsState{}; }

  World world;
  BoxAnswerer boxes;
};

TEST_F(SpecifyPortsTest, ListsExistingPortsByNumberWithTheirDevices) {
  PostCall(Now(), this, [] { frmSpecifyTruckInterface_cmdCancel_Click(); });
  EXPECT_EQ(SpecifyTruckInterface(), 0);
  const auto& list = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort;
  EXPECT_EQ(list.List, (std::vector<std::string>{"3", "12"}));
  EXPECT_EQ(list.Beside, (std::vector<std::string>{"wire 3", "wire 12"}));
  EXPECT_EQ(frmSpecifyTruckInterface.lblConeSerialPort.Caption, "3");
  EXPECT_EQ(frmSpecifyTruckInterface.lblASCIIOutSerialPort.Caption, "N/A");
}

TEST_F(SpecifyPortsTest, SavesTheChosenPort) {
  PostCall(Now(), this, [] {
    frmSpecifyASCIIOut_cmdSavePort_Click();  // nothing chosen yet: refused
    OperatorAction choice;
    choice.kind = ActionKind::Select;
    choice.form = &frmSpecifyASCIIOut;
    choice.control = &frmSpecifyASCIIOut.cmbASCIIOutSerialPort;
    choice.number = 1;
    PostActionNow(choice);
    PostCall(Now(), nullptr, [] { frmSpecifyASCIIOut_cmdSavePort_Click(); });
  });
  EXPECT_EQ(SpecifyASCIIOut(), 12);
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{"NO SERIAL PORT SELECTED"}));
  EXPECT_EQ(settings.ASCIIOutSerialPort, 0);
  EXPECT_FALSE(frmSpecifyASCIIOut.Visible);
}

TEST_F(SpecifyPortsTest, CancelForgetsAnEarlierChoice) {
  PostCall(Now(), this, [] {
    frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort.ListIndex = 0;
    frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort.Text = "3";
    frmSpecifyVideoOverlay_cmdSavePort_Click();
  });
  EXPECT_EQ(SpecifyVideoOverlay(), 3);
  PostCall(Now(), this, [] { frmSpecifyVideoOverlay_cmdCancel_Click(); });
  EXPECT_EQ(SpecifyVideoOverlay(), 0);
  EXPECT_EQ(frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort.ListIndex, -1);
}

}  // namespace
}  // namespace penlog
