// Who may run inside whom: each action of the operator is checked when its turn comes.
#include "forms/operator_actions.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/world.h"

namespace penlog {
namespace {

struct TrialForm : Form {
  explicit TrialForm(const std::string& name) : Form(name, "TRIAL") {
    Hold(frmOuter, {&frmInner});
    Hold(frmInner, {&cmdInside});
    cmdStop.AlwaysUsable = true;
    cmbList.List = {"one", "two"};
    KeepFirstValues();
  }
  Button cmdGo{*this, "cmdGo", "GO"};
  Button cmdStop{*this, "cmdStop", "STOP"};
  Frame frmOuter{*this, "frmOuter"};
  Frame frmInner{*this, "frmInner"};
  Button cmdInside{*this, "cmdInside"};
  TextBox txtName{*this, "txtName"};
  CheckBox chkIt{*this, "chkIt"};
  OptionButton optIt{*this, "optIt"};
  ComboBox cmbList{*this, "cmbList"};
  Picture picView{*this, "picView"};
};

struct Actions : testing::Test {
  Actions() {
    for (Button* button : {&form.cmdGo, &form.cmdStop, &form.cmdInside}) {
      button->Click = [this, button] { events.push_back(button->Name()); };
      button->Press = [this, button] { events.push_back(button->Name() + " down"); };
      button->Release = [this, button] { events.push_back(button->Name() + " up"); };
    }
    OnActionServed(
        [this](const OperatorAction&, bool was_served) { served.push_back(was_served); });
    Show(form);
  }

  OperatorAction On(Control& control, ActionKind kind = ActionKind::Click) {
    OperatorAction action;
    action.kind = kind;
    action.form = &control.Owner();
    action.control = &control;
    action.stamp = StampOf(*action.form, &control);
    return action;
  }
  void Click(Control& control) { PostAction(On(control)); }
  void Press(Control& control) { PostAction(On(control, ActionKind::Press)); }
  void Release(Control& control) { PostAction(On(control, ActionKind::Release)); }

  using Events = std::vector<std::string>;
  World world;
  TrialForm form{"Trial"};
  TrialForm other{"Other"};
  Events events;
  std::vector<bool> served;
};

TEST_F(Actions, AreServedInAYieldInTheOrderOfTheirPosting) {
  Click(form.cmdGo);
  Click(form.cmdStop);
  Click(form.cmdInside);
  EXPECT_TRUE(events.empty());
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo", "cmdStop", "cmdInside"}));
}

TEST_F(Actions, ASecondClickQueuedBeforeTheFirstDisabledAndEnabledIsStale) {
  form.cmdGo.Click = [this] {
    events.push_back("once");
    form.cmdGo.Enabled = false;
    form.cmdGo.Enabled = true;
  };
  Click(form.cmdGo);
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"once"}));
  EXPECT_EQ(served, (std::vector<bool>{true, false}));
}

TEST_F(Actions, AClickSeenAfterTheChangeIsServedAgain) {
  form.cmdGo.Enabled = false;
  form.cmdGo.Enabled = true;
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo"}));
}

TEST_F(Actions, AreRefusedWhenSomethingOnTheWayToTheControlHasChanged) {
  struct Row {
    const char* what;
    std::function<void(TrialForm&)> change;
  };
  const std::vector<Row> rows = {
      {"the control disabled", [](TrialForm& f) { f.cmdInside.Enabled = false; }},
      {"the control hidden", [](TrialForm& f) { f.cmdInside.Visible = false; }},
      {"its frame disabled", [](TrialForm& f) { f.frmInner.Enabled = false; }},
      {"its frame hidden", [](TrialForm& f) { f.frmInner.Visible = false; }},
      {"the frame around that hidden", [](TrialForm& f) { f.frmOuter.Visible = false; }},
      {"the screen disabled", [](TrialForm& f) { f.Enabled = false; }},
      {"the screen hidden", [](TrialForm& f) { Hide(f); }},
      {"the screen unloaded", [](TrialForm& f) { Unload(f); }},
      {"the control disabled and enabled",
       [](TrialForm& f) {
         f.cmdInside.Enabled = false;
         f.cmdInside.Enabled = true;
       }},
      {"its frame hidden and shown",
       [](TrialForm& f) {
         f.frmOuter.Visible = false;
         f.frmOuter.Visible = true;
       }},
      {"the screen hidden and shown",
       [](TrialForm& f) {
         Hide(f);
         Show(f);
       }},
      {"the screen unloaded and shown",
       [](TrialForm& f) {
         Unload(f);
         Show(f);
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ResetForms();
    form.Enabled = true;
    Show(form);
    events.clear();
    Click(form.cmdInside);
    row.change(form);
    Yield();
    EXPECT_TRUE(events.empty());
    EXPECT_FALSE(served.back());
  }
}

TEST_F(Actions, WhatChangesElsewhereLeavesAnActionAlone) {
  Click(form.cmdGo);
  form.cmdStop.Enabled = false;
  form.frmOuter.Visible = false;
  form.cmdGo.Caption = "GO ON";
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo"}));
}

TEST_F(Actions, AnActionOnAControlThatWasDisabledAllAlongIsRefused) {
  form.cmdGo.Enabled = false;
  Click(form.cmdGo);
  Yield();
  EXPECT_TRUE(events.empty());
}

TEST_F(Actions, AModalScreenAboveRefusesThoseBelowAndTakesItsOwn) {
  Click(form.cmdGo);
  PostCall(Now() + kSecond, this, [this] {
    Click(form.cmdGo);
    Click(other.cmdGo);
  });
  other.cmdGo.Click = [this] {
    events.push_back("modal");
    Hide(other);
  };
  Yield();
  ShowModal(other);
  EXPECT_EQ(events, (Events{"cmdGo", "modal"}));
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events.size(), 3u);
}

TEST_F(Actions, AScreenThatIsNotModalAboveRefusesNothing) {
  Show(other);
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo"}));
}

TEST_F(Actions, ABoxAboveRefusesAllUntilItIsAnswered) {
  Click(form.cmdGo);
  PostBox("stands");
  Yield();
  EXPECT_TRUE(events.empty());
  AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo"}));
}

TEST_F(Actions, AFileDialogAboveRefusesAll) {
  PostCall(Now() + kSecond, this, [this] { Click(form.cmdGo); });
  PostCall(Now() + 2 * kSecond, this, [] { AnswerFileDialog(OpenFileDialog()->id, "/x"); });
  AskFile("Open", "/", "*", false);
  EXPECT_TRUE(events.empty());
}

TEST_F(Actions, AnAlwaysUsableControlWorksBelowABoxAndAModalScreen) {
  PostBox("stands");
  other.Modal = true;
  Show(other);
  Click(form.cmdStop);
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdStop"}));
}

TEST_F(Actions, AnAlwaysUsableControlMustStillBeVisibleEnabledAndAsSeen) {
  Click(form.cmdStop);
  form.cmdStop.Enabled = false;
  Yield();
  Click(form.cmdStop);
  Yield();
  form.cmdStop.Enabled = true;
  form.cmdStop.Visible = false;
  Click(form.cmdStop);
  Yield();
  EXPECT_TRUE(events.empty());
}

TEST_F(Actions, AReleaseIsServedWheneverItsPressWas) {
  struct Row {
    const char* what;
    std::function<void(TrialForm&)> change;
  };
  const std::vector<Row> rows = {
      {"nothing", [](TrialForm&) {}},
      {"disabled", [](TrialForm& f) { f.cmdGo.Enabled = false; }},
      {"hidden", [](TrialForm& f) { f.cmdGo.Visible = false; }},
      {"the screen hidden", [](TrialForm& f) { Hide(f); }},
      {"the screen unloaded", [](TrialForm& f) { Unload(f); }},
      {"a box above", [](TrialForm&) { PostBox("stands"); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ResetForms();
    ResetBoxes();
    Show(form);
    events.clear();
    Press(form.cmdGo);
    Yield();
    row.change(form);
    Release(form.cmdGo);
    Yield();
    EXPECT_EQ(events, (Events{"cmdGo down", "cmdGo up"}));
  }
}

TEST_F(Actions, AReleaseWithoutAServedPressDoesNothing) {
  Release(form.cmdGo);
  Press(form.cmdGo);
  form.cmdGo.Enabled = false;
  Yield();
  Release(form.cmdGo);
  form.cmdGo.Enabled = true;
  Release(form.cmdGo);
  Yield();
  EXPECT_TRUE(events.empty());
}

TEST_F(Actions, AKeysRepeatIsNoNewPress) {
  Press(form.cmdGo);
  Press(form.cmdGo);
  Press(form.cmdGo);
  Release(form.cmdGo);
  Release(form.cmdGo);
  Press(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdGo down", "cmdGo up", "cmdGo down"}));
}

TEST_F(Actions, MayRunInsideAWaitOfAnotherHandler) {
  form.cmdGo.Click = [this] {
    Click(form.cmdStop);
    while (events.empty()) WaitYield("the stop");
    events.push_back("went on");
  };
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"cmdStop", "went on"}));
}

TEST_F(Actions, AHandlerMayReplaceItself) {
  form.cmdGo.Click = [this] {
    form.cmdGo.Click = [this] { events.push_back("second"); };
    events.push_back("first");
  };
  Click(form.cmdGo);
  Click(form.cmdGo);
  Yield();
  EXPECT_EQ(events, (Events{"first", "second"}));
}

TEST_F(Actions, ATypedTextFiresOneChangeAndTheSameTextNone) {
  form.txtName.Change = [this] { events.push_back(form.txtName.Text); };
  for (const char* text : {"a", "ab", "ab"}) {
    OperatorAction action = On(form.txtName, ActionKind::Type);
    action.text = text;
    PostAction(action);
  }
  Yield();
  EXPECT_EQ(events, (Events{"a", "ab"}));
}

TEST_F(Actions, AChoiceOutsideTheListIsIgnored) {
  form.cmbList.Click = [this] { events.push_back(form.cmbList.Text); };
  for (const int entry : {1, 2, -2, 0}) {
    OperatorAction action = On(form.cmbList, ActionKind::Select);
    action.number = entry;
    PostAction(action);
  }
  Yield();
  EXPECT_EQ(events, (Events{"two", "one"}));
  EXPECT_EQ(form.cmbList.ListIndex, 0);
}

TEST_F(Actions, ATickFiresOnAChangeAndAnOptionIsNotTakenBack) {
  form.chkIt.Click = [this] { events.push_back(form.chkIt.Checked ? "on" : "off"); };
  form.optIt.Click = [this] { events.push_back("option"); };
  const auto check = [this](Control& control, int on) {
    OperatorAction action = On(control, ActionKind::Check);
    action.number = on;
    PostAction(action);
  };
  check(form.chkIt, 1);
  check(form.chkIt, 1);
  check(form.chkIt, 0);
  check(form.optIt, 1);
  check(form.optIt, 0);
  Yield();
  EXPECT_EQ(events, (Events{"on", "off", "option"}));
  EXPECT_TRUE(form.optIt.Checked);
}

TEST_F(Actions, APointerOverAPictureBringsFractionsAndItsClick) {
  std::vector<std::pair<double, bool>> points;
  form.picView.Point = [&](double x, double, bool clicked) { points.push_back({x, clicked}); };
  OperatorAction action = On(form.picView, ActionKind::Point);
  action.x = 0.25;
  PostAction(action);
  action.number = 1;
  PostAction(action);
  Yield();
  EXPECT_EQ(points, (std::vector<std::pair<double, bool>>{{0.25, false}, {0.25, true}}));
}

struct Closing : Actions {
  void Close(Form& closed) {
    OperatorAction action;
    action.kind = ActionKind::Close;
    action.form = &closed;
    PostActionNow(action);
  }
};

TEST_F(Closing, AWindowWithoutARoutineForItStays) {
  Close(form);
  Yield();
  EXPECT_TRUE(form.Visible);
}

TEST_F(Closing, RunsTheScreensOwnRoutine) {
  form.ClosingEnds = true;
  form.QueryUnload = [this] { events.push_back("asked"); };
  Close(form);
  Yield();
  EXPECT_EQ(events, (Events{"asked"}));
}

TEST_F(Closing, AWindowOnTheMainWayEndsTheProgram) {
  form.ClosingEnds = true;
  Close(form);
  EXPECT_THROW(Yield(), ProgramEnd);
}

TEST_F(Closing, IsRefusedBelowABox) {
  form.ClosingEnds = true;
  PostBox("stands");
  Close(form);
  EXPECT_NO_THROW(Yield());
}

}  // namespace
}  // namespace penlog
