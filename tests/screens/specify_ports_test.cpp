#include "screens/specify_ports.h"

#include <gtest/gtest.h>

#include <map>

#include "app/wiring.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "platform/clock.h"
#include "support/boxes.h"
#include "support/state.h"

namespace penlog {
namespace {

class SpecifyPortsTest : public testing::Test {
 protected:
  SpecifyPortsTest() {
    WireScreens();
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    for (const int port : {3, 12}) {
      WireEnd& wire = world.ports.Wire(port);
      wire.OnBytes = [this, port](std::string_view bytes) { heard[port] += bytes; };
      wire.OnOpened = [this](const PortSettings& opened) { opened_with.push_back(opened); };
      wire.OnClosed = [this] { closed_at.push_back(Now()); };
    }
  }

  static void Choose(Form& form, Control& list, int entry) {
    OperatorAction choice;
    choice.kind = ActionKind::Select;
    choice.form = &form;
    choice.control = &list;
    choice.number = entry;
    PostActionNow(choice);
    World::RunFor(10 * kMillisecond);
  }

  static void Click(Form& form, Control& control) {
    OperatorAction click;
    click.form = &form;
    click.control = &control;
    PostActionNow(click);
  }

  /// A test waits above whoever pressed its button: what comes beside it stands in the queue.
  void Later(Micros time, std::function<void()> act) {
    PostCall(Now() + time, this, std::move(act));
  }

  /// Lets the operator act while the screen is open.
  void While(int (*screen)(), std::function<void()> acts) {
    PostCall(Now(), this, std::move(acts));
    chosen = screen();
  }

  ClearedWorld world;
  BoxAnswerer boxes;
  std::map<int, std::string> heard;
  std::vector<PortSettings> opened_with;
  std::vector<Micros> closed_at;
  int chosen = -1;
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

TEST_F(SpecifyPortsTest, TheirWordsStandAsQuoted) {
  const auto& truck = frmSpecifyTruckInterface;
  const auto& ascii = frmSpecifyASCIIOut;
  const auto& overlay = frmSpecifyVideoOverlay;
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"SPECIFY TRUCK INTERFACE PORT", {truck.Caption}},
      {"SPECIFY ASCII OUT PORT", {ascii.Caption}},
      {"SPECIFY VIDEO OVERLAY PORT", {overlay.Caption}},
      {"CONE SERIAL PORT:",
       {truck.lblConeSerialPortCaption.Caption, ascii.lblConeSerialPortCaption.Caption,
        overlay.lblConeSerialPortCaption.Caption}},
      {"TRUCK INTERFACE SERIAL PORT:",
       {truck.lblChoose.Caption, ascii.lblTruckInterfaceSerialPortCaption.Caption,
        overlay.lblTruckInterfaceSerialPortCaption.Caption}},
      {"ASCII OUT SERIAL PORT:",
       {truck.lblASCIIOutSerialPortCaption.Caption, ascii.lblChoose.Caption,
        overlay.lblASCIIOutSerialPortCaption.Caption}},
      {"VIDEO OVERLAY SERIAL PORT:",
       {truck.lblVideoOverlaySerialPortCaption.Caption,
        ascii.lblVideoOverlaySerialPortCaption.Caption, overlay.lblChoose.Caption}},
      {"TEST PORT", {ascii.cmdTestPort.Caption, overlay.cmdTestPort.Caption}},
      {"SAVE PORT",
       {truck.cmdSavePort.Caption, ascii.cmdSavePort.Caption, overlay.cmdSavePort.Caption}},
      {"CANCEL", {truck.cmdCancel.Caption, ascii.cmdCancel.Caption, overlay.cmdCancel.Caption}},
      {"SELECT A PORT FROM THE DROPDOWN LIST. TO TEST THE PORT, CLICK THE 'TEST PORT' BUTTON. IF "
       "AN OVERLAY APPEARS ON THE VIDEO SCREEN, THE PROPER PORT HAS BEEN SELECTED",
       {overlay.lblHint.Caption}},
  };
  for (const auto& [quoted, shown] : rows) {
    for (const std::string& text : shown) EXPECT_EQ(text, quoted);
  }
}

TEST_F(SpecifyPortsTest, EachShowsThePortsOfTheOthers) {
  settings.ASCIIOutSerialPort = 5;
  settings.VideoOverlaySerialPort = 6;
  While(SpecifyTruckInterface, [] { frmSpecifyTruckInterface_cmdCancel_Click(); });
  While(SpecifyASCIIOut, [] { frmSpecifyASCIIOut_cmdCancel_Click(); });
  While(SpecifyVideoOverlay, [] { frmSpecifyVideoOverlay_cmdCancel_Click(); });
  const auto& truck = frmSpecifyTruckInterface;
  const auto& ascii = frmSpecifyASCIIOut;
  const auto& overlay = frmSpecifyVideoOverlay;
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"3",
       {truck.lblConeSerialPort.Caption, ascii.lblConeSerialPort.Caption,
        overlay.lblConeSerialPort.Caption}},
      {"4",
       {ascii.lblTruckInterfaceSerialPort.Caption, overlay.lblTruckInterfaceSerialPort.Caption}},
      {"5", {truck.lblASCIIOutSerialPort.Caption, overlay.lblASCIIOutSerialPort.Caption}},
      {"6", {truck.lblVideoOverlaySerialPort.Caption, ascii.lblVideoOverlaySerialPort.Caption}},
  };
  for (const auto& [port, shown] : rows) {
    for (const std::string& text : shown) EXPECT_EQ(text, port);
  }
}

TEST_F(SpecifyPortsTest, SavesTheChosenPort) {
  auto& form = frmSpecifyASCIIOut;
  While(SpecifyASCIIOut, [&] {
    frmSpecifyASCIIOut_cmdSavePort_Click();  // nothing chosen yet: refused
    Choose(form, form.cmbASCIIOutSerialPort, 1);
    Click(form, form.cmdSavePort);
  });
  EXPECT_EQ(chosen, 12);
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{"NO SERIAL PORT SELECTED"}));
  EXPECT_EQ(settings.ASCIIOutSerialPort, 0);
  EXPECT_FALSE(form.Visible);
}

TEST_F(SpecifyPortsTest, CancelForgetsAnEarlierChoice) {
  auto& form = frmSpecifyVideoOverlay;
  While(SpecifyVideoOverlay, [&] {
    Choose(form, form.cmbVideoOverlaySerialPort, 0);
    Click(form, form.cmdSavePort);
  });
  EXPECT_EQ(chosen, 3);
  While(SpecifyVideoOverlay, [&] { Click(form, form.cmdCancel); });
  EXPECT_EQ(chosen, 0);
  EXPECT_EQ(form.cmbVideoOverlaySerialPort.ListIndex, -1);
}

// The lines of the truck interface.

std::string Lamps() {
  const auto& form = frmSpecifyTruckInterface;
  std::string lamps;
  for (const Shape* lamp : {&form.shpDCD, &form.shpCTS, &form.shpDSR, &form.shpDTR}) {
    lamps += lamp->Fill == FillStyle::Solid ? '*' : '.';
  }
  return lamps;
}

TEST_F(SpecifyPortsTest, TruckLinesHaveTheirNames) {
  const auto& form = frmSpecifyTruckInterface;
  EXPECT_EQ(form.lblDCD.Caption, "Depth / Chan A");
  EXPECT_EQ(form.lblCTS.Caption, "Press / Chan B");
  EXPECT_EQ(form.lblDSR.Caption, "Clamp");
  EXPECT_EQ(form.lblDTR.Caption, "Trigger");
}

TEST_F(SpecifyPortsTest, LampsFollowTheLinesOfTheChosenPort) {
  auto& form = frmSpecifyTruckInterface;
  WireEnd& wire = world.ports.Wire(12);
  wire.SetLines({false, true, false});
  While(SpecifyTruckInterface, [&] {
    EXPECT_EQ(Lamps(), "....");
    Choose(form, form.cmbTruckInterfaceSerialPort, 1);
    EXPECT_EQ(Lamps(), "..*.") << "as the lines stand at the opening";
    const struct {
      ModemLines lines;
      const char* lamps;
    } rows[] = {{{false, true, true}, "*.*."},
                {{true, true, true}, "***."},
                {{true, false, true}, "**.."},
                {{true, false, false}, ".*.."},
                {{false, false, false}, "...."}};
    for (const auto& row : rows) {
      wire.SetLines(row.lines);
      World::RunFor(10 * kMillisecond);
      EXPECT_EQ(Lamps(), row.lamps);
    }
    Click(form, form.cmdCancel);
  });
  ASSERT_EQ(opened_with.size(), 1U);
  EXPECT_EQ(opened_with[0], (PortSettings{19200, 'N', 8, 1}));
}

TEST_F(SpecifyPortsTest, AnotherChoiceClosesThePortOfBefore) {
  auto& form = frmSpecifyTruckInterface;
  world.ports.Wire(3).SetLines({true, true, true});
  While(SpecifyTruckInterface, [&] {
    Choose(form, form.cmbTruckInterfaceSerialPort, 0);
    EXPECT_EQ(Lamps(), "***.");
    Choose(form, form.cmbTruckInterfaceSerialPort, 1);
    EXPECT_EQ(Lamps(), "....");
    EXPECT_EQ(closed_at.size(), 1U);
    EXPECT_EQ(form.EncoderComm.CommPort(), 12);
    Click(form, form.cmdCancel);
  });
}

TEST_F(SpecifyPortsTest, LeavingTheTruckScreenInAnyWayClosesItsPort) {
  auto& form = frmSpecifyTruckInterface;
  for (Button* way : {&form.cmdSavePort, &form.cmdCancel}) {
    While(SpecifyTruckInterface, [&] {
      Choose(form, form.cmbTruckInterfaceSerialPort, 1);
      EXPECT_TRUE(form.EncoderComm.PortOpen());
      Click(form, *way);
    });
    EXPECT_FALSE(form.EncoderComm.PortOpen());
  }
}

TEST_F(SpecifyPortsTest, ATruckPortThatRefusesIsToldAndTheListStaysUsable) {
  auto& form = frmSpecifyTruckInterface;
  world.ports.SetRefused(12, true);
  While(SpecifyTruckInterface, [&] {
    Choose(form, form.cmbTruckInterfaceSerialPort, 1);
    World::RunFor(kSecond);
    EXPECT_EQ(Lamps(), "....");
    EXPECT_TRUE(form.cmbTruckInterfaceSerialPort.Enabled);
    world.ports.SetRefused(12, false);
    Choose(form, form.cmbTruckInterfaceSerialPort, 1);
    EXPECT_TRUE(form.EncoderComm.PortOpen());
    Click(form, form.cmdCancel);
  });
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{"PORT 12 CAN'T BE OPENED.  COM12 is in use"}));
}

TEST_F(SpecifyPortsTest, ATruckPortThatVanishesDarkensItsLamps) {
  auto& form = frmSpecifyTruckInterface;
  WireEnd& wire = world.ports.Wire(12);
  wire.SetLines({true, true, true});
  While(SpecifyTruckInterface, [&] {
    Choose(form, form.cmbTruckInterfaceSerialPort, 1);
    wire.SetPresent(false);
    World::RunFor(10 * kMillisecond);
    EXPECT_EQ(Lamps(), "....");
    Click(form, form.cmdCancel);
  });
}

// The tests of the outputs.

TEST_F(SpecifyPortsTest, ATestIsOfferedOnlyWithAPortChosen) {
  auto& ascii = frmSpecifyASCIIOut;
  for (int round = 0; round < 2; ++round) {  // the second opening has forgotten the choice
    While(SpecifyASCIIOut, [&] {
      EXPECT_FALSE(ascii.cmdTestPort.Enabled);
      Choose(ascii, ascii.cmbASCIIOutSerialPort, 0);
      EXPECT_TRUE(ascii.cmdTestPort.Enabled);
      Choose(ascii, ascii.cmbASCIIOutSerialPort, -1);
      EXPECT_FALSE(ascii.cmdTestPort.Enabled);
      Click(ascii, ascii.cmdCancel);
    });
  }
  auto& overlay = frmSpecifyVideoOverlay;
  While(SpecifyVideoOverlay, [&] {
    EXPECT_FALSE(overlay.cmdTestPort.Enabled);
    Choose(overlay, overlay.cmbVideoOverlaySerialPort, 0);
    EXPECT_TRUE(overlay.cmdTestPort.Enabled);
    Click(overlay, overlay.cmdCancel);
  });
  EXPECT_EQ(ascii.cmdTestPort.Caption, "TEST PORT");
  EXPECT_EQ(overlay.cmdTestPort.Caption, "TEST PORT");
}

TEST_F(SpecifyPortsTest, TheASCIITestSendsItsLineAndClosesThePort) {
  auto& form = frmSpecifyASCIIOut;
  While(SpecifyASCIIOut, [&] {
    Choose(form, form.cmbASCIIOutSerialPort, 1);
    Click(form, form.cmdTestPort);
    Later(20 * kMillisecond, [&] { EXPECT_FALSE(form.cmdTestPort.Enabled) << "while it runs"; });
    Later(kSecond, [&] {
      EXPECT_TRUE(form.cmdTestPort.Enabled);
      EXPECT_FALSE(form.ASCIIOutComm.PortOpen());
      Click(form, form.cmdCancel);
    });
  });
  EXPECT_EQ(heard, (std::map<int, std::string>{{12, "ASCII OUT TEST\r\n"}}));
  EXPECT_EQ(opened_with, (std::vector<PortSettings>{{19200, 'N', 8, 1}}));
}

TEST_F(SpecifyPortsTest, TheOverlayTestBuildsTheScreenAndClosesThePort) {
  auto& form = frmSpecifyVideoOverlay;
  session.SoundingName = "H9";
  While(SpecifyVideoOverlay, [&] {
    Choose(form, form.cmbVideoOverlaySerialPort, 1);
    Click(form, form.cmdTestPort);
    Later(2 * kSecond, [&] { EXPECT_FALSE(form.cmdTestPort.Enabled); });
    Later(3 * kSecond, [&] {
      EXPECT_TRUE(form.cmdTestPort.Enabled);
      EXPECT_FALSE(form.VideoOverlayComm.PortOpen());
      Click(form, form.cmdCancel);
    });
  });
  EXPECT_EQ(heard[12], "{R{F0{MF{ML{F4{A17{C0101Sounding: H9{C01152026-06-15{C3715m");
  EXPECT_EQ(opened_with, (std::vector<PortSettings>{{9600, 'N', 8, 1}}));
}

TEST_F(SpecifyPortsTest, LeavingEndsATest) {
  auto& form = frmSpecifyVideoOverlay;
  While(SpecifyVideoOverlay, [&] {
    Choose(form, form.cmbVideoOverlaySerialPort, 1);
    Click(form, form.cmdTestPort);
    Later(500 * kMillisecond, [&] { Click(form, form.cmdCancel); });
  });
  World::RunFor(5 * kSecond);
  EXPECT_EQ(heard[12], "{R{F0{MF");
  EXPECT_FALSE(form.VideoOverlayComm.PortOpen());
  EXPECT_EQ(specify_ports.TestUnderWay, 0);
}

TEST_F(SpecifyPortsTest, AChoiceDuringATestOffersNoSecondOne) {
  auto& form = frmSpecifyVideoOverlay;
  While(SpecifyVideoOverlay, [&] {
    Choose(form, form.cmbVideoOverlaySerialPort, 1);
    Click(form, form.cmdTestPort);
    Later(100 * kMillisecond, [&] {
      Choose(form, form.cmbVideoOverlaySerialPort, 0);
      EXPECT_FALSE(form.cmdTestPort.Enabled);
    });
    Later(4 * kSecond, [&] {
      EXPECT_TRUE(form.cmdTestPort.Enabled);
      Click(form, form.cmdCancel);
    });
  });
  EXPECT_EQ(heard.count(3), 0U);
}

TEST_F(SpecifyPortsTest, APortThatRefusesItsTestIsTold) {
  world.ports.SetRefused(12, true);
  auto& ascii = frmSpecifyASCIIOut;
  While(SpecifyASCIIOut, [&] {
    Choose(ascii, ascii.cmbASCIIOutSerialPort, 1);
    Click(ascii, ascii.cmdTestPort);
    World::RunFor(kSecond);
    EXPECT_TRUE(ascii.cmdTestPort.Enabled);
    Click(ascii, ascii.cmdCancel);
  });
  auto& overlay = frmSpecifyVideoOverlay;
  While(SpecifyVideoOverlay, [&] {
    Choose(overlay, overlay.cmbVideoOverlaySerialPort, 1);
    Click(overlay, overlay.cmdTestPort);
    World::RunFor(kSecond);
    Click(overlay, overlay.cmdCancel);
  });
  const std::string refused = "PORT 12 CAN'T BE OPENED.  COM12 is in use";
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{refused, refused}));
}

}  // namespace
}  // namespace penlog
