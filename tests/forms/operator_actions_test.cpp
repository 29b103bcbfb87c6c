// Who may run inside whom: each action of the operator is checked when its turn comes.
#include "forms/operator_actions.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
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

/// With what a journal would hold: the events in the order of their turns.
struct Journal : Actions {
  Journal() {
    TheQueue().on_taken = [this](Micros, const Event& event) {
      if (event.kind == EventKind::OperatorAction) taken.push_back(event);
    };
  }
  ~Journal() override { TheQueue().on_taken = nullptr; }

  void Post(Control& control, ActionKind kind, int number = 0, const std::string& text = {}) {
    OperatorAction action = On(control, kind);
    action.number = number;
    action.text = text;
    PostAction(action);
  }
  /// The screen as at the start of a program.
  void Begin() {
    Unload(form);
    Show(form);
    CountStampsFromHere();
    events.clear();
    served.clear();
    taken.clear();
  }

  std::vector<Event> taken;
};

TEST_F(Journal, HoldsTheWholeActionOfEachKind) {
  form.cmdGo.Enabled = false;
  form.cmdGo.Enabled = true;
  CountStampsFromHere();
  Unload(form);
  Show(form);
  form.frmOuter.Visible = false;
  form.frmOuter.Visible = true;
  using Kind = ActionKind;
  const std::vector<OperatorAction> rows = {
      {Kind::Click, &form, &form.cmdInside, "", 0, 0, 0, {}},
      {Kind::Press, &form, &form.cmdGo, "", 0, 0, 0, {}},
      {Kind::Release, &form, &form.cmdGo, "", 0, 0, 0, {}},
      {Kind::Type, &form, &form.txtName, " two  words # \"x\"\n", 0, 0, 0, {}},
      {Kind::Type, &form, &form.txtName, "", 0, 0, 0, {}},
      {Kind::Select, &form, &form.cmbList, "", 1, 0, 0, {}},
      {Kind::Select, &form, &form.cmbList, "", -1, 0, 0, {}},
      {Kind::Check, &form, &form.chkIt, "", 1, 0, 0, {}},
      {Kind::Check, &form, &form.chkIt, "", 0, 0, 0, {}},
      {Kind::Point, &form, &form.picView, "", 0, 0.1, 1.0 / 3.0, {}},
      {Kind::Point, &form, &form.picView, "", 1, 1e-17, 1, {}},
      {Kind::Close, &form, nullptr, "", 0, 0, 0, {}},
  };
  std::set<Kind> kinds;
  for (OperatorAction row : rows) {
    SCOPED_TRACE(static_cast<int>(row.kind));
    kinds.insert(row.kind);
    row.stamp = StampOf(form, row.control);
    taken.clear();
    PostAction(row);
    Yield();
    ASSERT_EQ(taken.size(), 1u);
    const auto action = ActionFromEvent(taken[0]);
    ASSERT_TRUE(action.has_value()) << taken[0].text;
    EXPECT_EQ(action->kind, row.kind);
    EXPECT_EQ(action->form, row.form);
    EXPECT_EQ(action->control, row.control);
    EXPECT_EQ(action->text, row.text);
    EXPECT_EQ(action->number, row.number);
    EXPECT_EQ(action->x, row.x);
    EXPECT_EQ(action->y, row.y);
    EXPECT_EQ(action->stamp, row.stamp);
  }
  EXPECT_EQ(kinds.size(), static_cast<std::size_t>(Kind::Close) + 1);
}

TEST_F(Journal, PlayedBackGivesTheSameResult) {
  form.cmdGo.Click = [this] {
    events.push_back("once");
    form.cmdGo.Enabled = false;
    form.cmdGo.Enabled = true;
  };
  form.txtName.Change = [this] { events.push_back(form.txtName.Text); };
  form.cmbList.Click = [this] { events.push_back(form.cmbList.Text); };
  form.chkIt.Click = [this] { events.push_back(form.chkIt.Checked ? "on" : "off"); };
  Begin();
  Click(form.cmdGo);
  Click(form.cmdGo);  // stale when its turn comes
  Post(form.txtName, ActionKind::Type, 0, "a b");
  Post(form.cmbList, ActionKind::Select, 1);
  Post(form.cmbList, ActionKind::Select, 0);
  Post(form.chkIt, ActionKind::Check, 1);
  Press(form.cmdStop);
  Release(form.cmdStop);
  Yield();
  Click(form.cmdGo);
  Yield();
  const Events events_then = events;
  const auto served_then = served;
  const auto taken_then = taken;
  EXPECT_EQ(events_then,
            (Events{"once", "a b", "two", "one", "on", "cmdStop down", "cmdStop up", "once"}));

  Begin();
  for (const Event& event : taken_then) TheQueue().Post(Now(), event);
  Yield();
  EXPECT_EQ(events, events_then);
  EXPECT_EQ(served, served_then);
}

TEST_F(Journal, OfARepeatedRunIsTheSameInOneProcess) {
  std::vector<std::string> texts[2];
  for (auto& run : texts) {
    Begin();
    form.cmdGo.Enabled = false;
    form.cmdGo.Enabled = true;
    Click(form.cmdGo);
    Post(form.cmbList, ActionKind::Select, 1);
    Yield();
    for (const Event& event : taken) run.push_back(event.text);
  }
  EXPECT_EQ(texts[0], (std::vector<std::string>{"Trial.cmdGo 0 1 0 0 ", "Trial.cmbList 0 0 0 0 "}));
  EXPECT_EQ(texts[1], texts[0]);
}

TEST_F(Journal, EventThatHoldsNoActionIsPassedOver) {
  const auto click = static_cast<std::int64_t>(ActionKind::Click);
  const auto close = static_cast<std::int64_t>(ActionKind::Close);
  const struct {
    std::int64_t kind;
    const char* text;
  } rows[] = {
      {click, ""},
      {click, "Trial.cmdGo"},
      {click, "Trial.cmdGo 0 0 0"},
      {click, "Trial 0 0 0 0 "},
      {click, "Nowhere.cmdGo 0 0 0 0 "},
      {click, "Trial.cmdNone 0 0 0 0 "},
      {click, "Trial.cmdGo x 0 0 0 "},
      {click, "Trial.cmdGo 0 -1 0 0 "},
      {click, "Trial.cmdGo 0 4294967296 0 0 "},
      {click, "Trial.cmdGo 0 0 0 y "},
      {click, "Trial.cmdGo  0 0 0 0 "},
      {close, "Trial.cmdGo 0 0 0 0 "},
      {close, "Nowhere 0 0 0 0 "},
      {-1, "Trial.cmdGo 0 0 0 0 "},
      {close + 1, "Trial.cmdGo 0 0 0 0 "},
  };
  Event event = EventOfAction(On(form.cmdGo));
  ASSERT_TRUE(ActionFromEvent(event).has_value()) << event.text;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    event.number = row.kind;
    event.text = row.text;
    EXPECT_FALSE(ActionFromEvent(event).has_value());
    TheQueue().Post(Now(), event);
    Yield();
  }
  EXPECT_TRUE(served.empty());
  event = EventOfAction(On(form.cmdGo));
  event.kind = EventKind::Answer;
  EXPECT_FALSE(ActionFromEvent(event).has_value());
}

TEST_F(Journal, ActionOnAScreenThatIsGoneIsPassedOver) {
  {
    TrialForm passing("Passing");
    Show(passing);
    Click(passing.cmdGo);
  }
  Yield();
  EXPECT_EQ(taken.size(), 1u);
  EXPECT_TRUE(served.empty());
}

TEST(Names, LeadToEachControlOfEachScreen) {
  ASSERT_GE(AllForms().size(), 11u);
  for (const Form* screen : AllForms()) {
    EXPECT_EQ(FindForm(screen->Name()), screen);
    EXPECT_EQ(screen->Name().find_first_of(" ."), std::string::npos) << screen->Name();
    for (const Control* control : screen->Controls()) {
      EXPECT_EQ(screen->Find(control->Name()), control) << screen->Name() << control->Name();
      EXPECT_EQ(control->Name().find(' '), std::string::npos) << control->Name();
    }
  }
}

TEST_F(Actions, WaitsUntilItsTurnOrUntilItWasDropped) {
  Click(form.chkIt);
  EXPECT_TRUE(ActionWaits(form.chkIt));
  TheQueue().Clear();
  Click(form.cmdGo);
  EXPECT_TRUE(ActionWaits(form.cmdGo));
  Yield();
  EXPECT_FALSE(ActionWaits(form.cmdGo));
  EXPECT_FALSE(ActionWaits(form.chkIt));
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
