#include "operator/player.h"

#include <gtest/gtest.h>

#include "platform/numbers.h"
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
  OptionButton optOne{*this, "optOne"};
  MenuEntry mnuShow{*this, "mnuShow", "Show"};
  Picture pctGraph{*this, "pctGraph"};
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

TEST_F(PlayerTest, TakesANumberInQuotesForTheTextOfAnEntry) {
  form.cmbList.List = {"one", "#2", "three", "#0"};
  EXPECT_EQ(Play("select Trial.cmbList \"#2\"\nexpect Trial.cmbList \"#2\"\n"
                 "select Trial.cmbList #2\nexpect Trial.cmbList three\n"
                 "select Trial.cmbList \"#0\"\nexpect Trial.cmbList \"#0\"\n"),
            0);
  ResetYield();
  std::string report;
  EXPECT_EQ(Play("select Trial.cmbList \"#1\"\n", &report), 1);
  EXPECT_NE(report.find("no entry \"#1\""), std::string::npos) << report;
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
  EXPECT_EQ(report, "trial:2: expected \"expect\" to be played, was the end of the program");
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

TEST_F(PlayerTest, TakesBoxesThatTheScriptDoesNotAnswerWhereItIsTold) {
  form.cmdGo.Click = [this] {
    PostBox("TOLD");
    const bool yes = MsgBox("GO ON?", BoxButtons::YesNo) == BoxAnswer::Yes;
    form.lblSaid.Caption = yes ? "yes" : "no";
  };
  const std::string script = "click Trial.cmdGo\nexpect Trial.lblSaid yes 2\n";
  PlayerHands hands;
  hands.takes_boxes = true;
  std::vector<std::string> taken;
  hands.took_box = [&taken](const std::string& text) { taken.push_back(text); };
  EXPECT_EQ(Play(script, nullptr, hands), 0);
  EXPECT_EQ(taken, (std::vector<std::string>{"TOLD", "GO ON?"}));
  ResetYield();
  ResetBoxes();
  form.lblSaid.Caption.clear();
  EXPECT_EQ(Play(script), 1) << "else each one must be named";
  ResetYield();
  ResetBoxes();
  form.cmdGo.Click = [this] {
    const bool no = MsgBox("GO ON?", BoxButtons::YesNo) == BoxAnswer::No;
    form.lblSaid.Caption = no ? "no" : "yes";
  };
  std::string report;
  const std::string answered = "click Trial.cmdGo\nanswer no \"GO ON?\"\n";
  EXPECT_EQ(Play(answered + "expect Trial.lblSaid no\n", &report, hands), 0) << report;
}

TEST_F(PlayerTest, TellsEachActionAsItsTurnComes) {
  std::vector<std::string> told;
  PlayerHands hands;
  hands.turn = [&](const ScriptAction& action) {
    told.push_back(std::to_string(action.line) + " " + form.lblSaid.Caption);
  };
  form.cmdGo.Click = [this] { form.lblSaid.Caption = "went"; };
  EXPECT_EQ(Play("wait 1\n\nclick Trial.cmdGo\nexpect Trial.lblSaid went\n", nullptr, hands), 0);
  EXPECT_EQ(told, (std::vector<std::string>{"1 ", "3 ", "4 went"}));
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

TEST_F(PlayerTest, ChoosesMenuEntriesAndOptionsAndPointsAtPictures) {
  std::string seen;
  form.mnuShow.Click = [&seen] { seen += "menu "; };
  form.pctGraph.Point = [&seen](double x, double y, bool clicked) {
    seen += Format(x, "0.00") + "," + Format(y, "0.00") + (clicked ? "! " : " ");
  };
  EXPECT_EQ(Play("menu Trial.mnuShow\npoint Trial.pctGraph 0.25 1\n"
                 "point Trial.pctGraph 0 0.5 click\ncheck Trial.optOne\n"
                 "expect Trial.optOne checked\n"),
            0);
  EXPECT_EQ(seen, "menu 0.25,1.00 0.00,0.50! ");
}

TEST_F(PlayerTest, AClickOnACheckBoxTicksItAndAnotherTakesTheTickBack) {
  EXPECT_EQ(Play("click Trial.chkIt\nexpect Trial.chkIt checked\nclick Trial.chkIt\n"
                 "expect Trial.chkIt unchecked\n"),
            0);
}

TEST_F(PlayerTest, GoesOnWhereNothingIsToBeChanged) {
  form.chkIt.Checked = true;
  form.txtName.Text = "anna";
  EXPECT_EQ(Play("check Trial.chkIt\ntype Trial.txtName anna\n"), 0);
}

TEST_F(PlayerTest, FailsAtOnceOnAControlThatTakesNoSuchAction) {
  const char* const rows[] = {"click Trial.lblSaid",  "type Trial.lblSaid x",
                              "press Trial.chkIt",    "check Trial.cmdGo",
                              "uncheck Trial.optOne", "select Trial.txtName x",
                              "menu Trial.cmdGo",     "point Trial.cmdGo 0 0",
                              "click Trial.mnuShow",  "click Trial.cmbList"};
  for (const std::string row : rows) {
    ResetYield();
    std::string report;
    const Micros start = Now();
    EXPECT_EQ(Play(row + "\n", &report), 1) << row;
    EXPECT_NE(report.find("was a control of another kind"), std::string::npos) << report;
    EXPECT_LT(Now() - start, kSecond) << row;
  }
}

TEST_F(PlayerTest, ExpectKnowsEachState) {
  form.chkIt.Checked = true;
  form.shpLamp.Fill = FillStyle::Solid;
  form.cmdInside.Enabled = false;
  form.txtName.Text = "visible";
  EXPECT_EQ(Play("expect Trial.cmdGo enabled\nexpect Trial.cmdInside disabled\n"
                 "expect Trial.cmdGo visible\nexpect Trial.chkIt checked\n"
                 "expect Trial.shpLamp solid\nexpect Trial.txtName \"visible\"\n"),
            0);
  for (const char* row : {"expect Trial.cmdGo disabled 1", "expect Trial.cmdInside enabled 1",
                          "expect Trial.cmdGo hidden 1", "expect Trial.chkIt unchecked 1",
                          "expect Trial.shpLamp hollow 1", "expect Trial.txtName \"hidden\" 1"}) {
    ResetYield();
    EXPECT_EQ(Play(std::string(row) + "\n"), 1) << row;
  }
}

TEST_F(PlayerTest, WaitsTenSecondsUnlessTold) {
  const struct {
    const char* script;
    double seconds;
  } rows[] = {
      {"screen Trial2", 10},           {"screen Trial2 3", 3},  {"expect Trial.lblSaid x", 10},
      {"expect Trial.lblSaid x 2", 2}, {"answer ok \"X\"", 30}, {"file cancel", 30},
  };
  Form second("Trial2", "SECOND");
  for (const auto& row : rows) {
    ResetYield();
    const Micros start = Now();
    EXPECT_EQ(Play(std::string(row.script) + "\n"), 1) << row.script;
    const double seconds = static_cast<double>(Now() - start) / kSecond;
    EXPECT_NEAR(seconds, row.seconds, 0.1) << row.script;
  }
}

TEST_F(PlayerTest, AnswersTheNextBoxToo) {
  PostCall(Now() + 20 * kSecond, this, [] { PostBox("LATER"); });
  EXPECT_EQ(Play("answer ok \"LATER\"\n"), 0);
}

TEST_F(PlayerTest, PressesTheButtonOfTheBoxWhereThereAreWindows) {
  PostBox("TOLD");
  std::string pressed;
  PlayerHands hands;
  hands.answer = [&pressed](BoxAnswer answer) {
    pressed += answer == BoxAnswer::Ok ? "ok" : "?";
    return std::string(pressed.size() < 4 ? "covered" : "");
  };
  EXPECT_EQ(Play("answer ok \"TOLD\"\n", nullptr, hands), 0);
  EXPECT_EQ(pressed, "okok") << "tried again until the hand succeeds";
}

TEST_F(PlayerTest, AnswersAFileDialogNowOrNext) {
  form.cmdGo.Click = [this] {
    form.lblSaid.Caption = AskFile("OPEN", "/", "*.cal", false).value_or("none");
  };
  EXPECT_EQ(Play("click Trial.cmdGo\nfile \"/a b.cal\"\nexpect Trial.lblSaid \"/a b.cal\"\n"
                 "click Trial.cmdGo\nfile cancel\nexpect Trial.lblSaid none\n"),
            0);
}

TEST_F(PlayerTest, TakesPicturesOfTheNamedOrTheFrontScreen) {
  std::string taken;
  PlayerHands hands;
  hands.shot = [&taken](const std::string& file, const std::string& screen) {
    taken += file + "(" + screen + ")";
    return std::string(file == "bad.png" ? "no room" : "");
  };
  EXPECT_EQ(Play("shot a.png\nshot b.png Trial\n", nullptr, hands), 0);
  EXPECT_EQ(taken, "a.png()b.png(Trial)");
  ResetYield();
  std::string report;
  EXPECT_EQ(Play("shot bad.png\n", &report, hands), 1);
  EXPECT_EQ(report, "trial:1: expected \"shot bad.png\" to succeed, was no room");
}

TEST_F(PlayerTest, KillEndsAtOnceWithoutTheWindowsRoutine) {
  bool killed = false;
  PlayerHands hands;
  hands.kill = [&killed] {
    killed = true;
    RequestEnd();
  };
  form.ClosingEnds = true;
  form.QueryUnload = [] { ADD_FAILURE() << "a crash asks nobody"; };
  EXPECT_EQ(Play("kill\n", nullptr, hands), 0);
  EXPECT_TRUE(killed);
}

TEST_F(PlayerTest, EndClosesTheWindowThatEndsTheProgram) {
  bool asked = false;
  form.ClosingEnds = true;
  form.QueryUnload = [&asked] {
    asked = true;
    EndProgram();
  };
  Form side("Side", "SIDE");
  Show(side);
  EXPECT_EQ(Play("end\n"), 0);
  EXPECT_TRUE(asked);
}

TEST_F(PlayerTest, EndCannotCloseAWindowBelowABox) {
  form.ClosingEnds = true;
  PostBox("ANSWER ME");
  std::string report;
  EXPECT_EQ(Play("end\n", &report), 1);
  EXPECT_EQ(report, "trial:1: expected the window to close, was a message box or a dialog is open");
}

TEST_F(PlayerTest, NothingIsPlayedBehindTheEnd) {
  form.ClosingEnds = true;
  std::string report;
  EXPECT_EQ(Play("end\nclick Trial.cmdGo\n", &report), 1);
  EXPECT_NE(report.find("the end of the program"), std::string::npos) << report;
}

}  // namespace
}  // namespace penlog
