#include "operator/player.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace penlog {
namespace {

struct TrialForm : Form {
  Label lblSaid{*this, "lblSaid"};
  Button cmdGo{*this, "cmdGo", "GO"};
  TextBox txtName{*this, "txtName"};
  CheckBox chkIt{*this, "chkIt"};
  ComboBox cmbList{*this, "cmbList"};
  Shape shpLamp{*this, "shpLamp"};
  Frame frmBox{*this, "frmBox"};
  Button cmdInside{*this, "cmdInside"};
  TrialForm() : Form("Trial", "TRIAL") {
    Hold(frmBox, {&cmdInside});
    cmbList.List = {"one", "two", "three"};
    KeepFirstValues();
  }
};

/// Plays a script to the end of the program; the exit code.
int Play(const std::string& text, std::string* report = nullptr, PlayerHands hands = {}) {
  Player player(ParseScript("trial", text), std::move(hands));
  player.Start();
  try {
    for (;;) WaitYield("the script");
  } catch (const ProgramEnd&) {
  }
  const int code = player.Close();
  if (report != nullptr) *report = player.Report();
  return code;
}

class PlayerTest : public testing::Test {
 protected:
  PlayerTest() { Show(form); }
  World world;
  TrialForm form;
};

TEST_F(PlayerTest, ActsOnEachKindOfControl) {
  form.cmdGo.Click = [this] { form.lblSaid.Caption = "went"; };
  EXPECT_EQ(Play("click Trial.cmdGo\ntype Trial.txtName \"a b\"\ncheck Trial.chkIt\n"
                 "select Trial.cmbList two\nexpect Trial.lblSaid went\n"
                 "expect Trial.chkIt checked\nexpect Trial.cmbList two\n"
                 "select Trial.cmbList #2\nexpect Trial.cmbList three\nuncheck Trial.chkIt\n"
                 "expect Trial.chkIt unchecked\nexpect Trial.txtName \"~^a .$\"\n"
                 "expect Trial.shpLamp hollow\n"),
            0);
}

TEST_F(PlayerTest, FailsWithLineExpectedAndWas) {
  std::string report;
  EXPECT_EQ(Play("wait 1\nexpect Trial.lblSaid went 2\n", &report), 1);
  EXPECT_EQ(report, "trial:2: expected Trial.lblSaid \"went\", was \"\"");
}

TEST_F(PlayerTest, FailsOnADisabledControl) {
  std::string report;
  form.cmdGo.Enabled = false;
  EXPECT_EQ(Play("click Trial.cmdGo\n", &report), 1);
  EXPECT_EQ(report, "trial:1: expected Trial.cmdGo to take \"click\", was the control is disabled");
}

TEST_F(PlayerTest, SeesAControlInAHiddenFrameAsHidden) {
  form.frmBox.Visible = false;
  EXPECT_EQ(Play("expect Trial.cmdInside hidden\n"), 0);
  EXPECT_EQ(Play("expect Trial.cmdInside visible 1\n"), 1);
}

TEST_F(PlayerTest, FailsWhenTheProgramEndsEarly) {
  std::string report;
  form.cmdGo.Click = [] { EndProgram(); };
  EXPECT_EQ(Play("click Trial.cmdGo\nexpect Trial.lblSaid x\n", &report), 1);
  EXPECT_NE(report.find("the end of the program"), std::string::npos) << report;
}

TEST_F(PlayerTest, IsContentWhenTheProgramEndsBehindTheLastAction) {
  form.cmdGo.Click = [] { EndProgram(); };
  EXPECT_EQ(Play("click Trial.cmdGo\n"), 0);
}

TEST_F(PlayerTest, GoesOnInsideAHandlerThatNeverReturns) {
  form.cmdGo.Click = [this] {
    for (;;) {
      WaitYield("the handler");
      form.lblSaid.Caption = "running";
    }
  };
  EXPECT_EQ(Play("click Trial.cmdGo\nexpect Trial.lblSaid running\n"), 0);
}

TEST_F(PlayerTest, AnswersABoxThatBeginsWithItsText) {
  form.cmdGo.Click = [this] {
    const bool yes = MsgBox("GO ON? REALLY", BoxButtons::YesNo) == BoxAnswer::Yes;
    form.lblSaid.Caption = yes ? "yes" : "no";
  };
  EXPECT_EQ(Play("click Trial.cmdGo\nanswer yes \"GO ON?\"\nexpect Trial.lblSaid yes\n"), 0);
  std::string report;
  ResetYield();
  ResetBoxes();
  EXPECT_EQ(Play("click Trial.cmdGo\nanswer yes \"STOP\"\n", &report), 1);
  EXPECT_EQ(report, "trial:2: expected a box that begins with \"STOP\", was \"GO ON? REALLY\"");
}

TEST_F(PlayerTest, FailsOnAnAnswerThatTheBoxDoesNotOffer) {
  PostBox("TOLD");
  EXPECT_EQ(Play("answer yes \"TOLD\"\n"), 1);
}

TEST_F(PlayerTest, PressesAndReleases) {
  form.cmdGo.Press = [this] { form.lblSaid.Caption = "down"; };
  form.cmdGo.Release = [this] { form.lblSaid.Caption = "up"; };
  EXPECT_EQ(Play("press Trial.cmdGo\nexpect Trial.lblSaid down\nrelease Trial.cmdGo\n"
                 "expect Trial.lblSaid up\n"),
            0);
}

TEST_F(PlayerTest, HandsRigWordsOn) {
  std::string heard;
  PlayerHands hands;
  hands.rig = [&heard](const std::string& words) {
    heard = words;
    return std::string(words == "push 1" ? "" : "unknown");
  };
  EXPECT_EQ(Play("rig push 1\n", nullptr, hands), 0);
  EXPECT_EQ(heard, "push 1");
  ResetYield();
  EXPECT_EQ(Play("rig fly\n", nullptr, hands), 1);
}

TEST_F(PlayerTest, RefusesAnUnknownScreenAtOnce) {
  std::string report;
  EXPECT_EQ(Play("screen Trail\n", &report), 1);
  EXPECT_EQ(report, "trial:1: expected the screen Trail, was no such screen");
}

}  // namespace
}  // namespace penlog
