#include "operator/run_hash.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/world.h"

namespace penlog {
namespace {

struct TrialForm : Form {
  TextBox txtName{*this, "txtName"};
  CheckBox chkIt{*this, "chkIt"};
  ListBox lstFiles{*this, "lstFiles"};
  Picture pctGraph{*this, "pctGraph"};
  TrialForm() : Form("Trial", "TRIAL") {
    lstFiles.List = {"ab", "c", "d"};
    lstFiles.Beside = {"1", "2", "3"};
    KeepFirstValues();
  }
};

struct HashTest : testing::Test {
  HashTest() { Show(form); }

  /// Of the events alone: the controls are not looked at.
  std::uint64_t HashOfAction(Control& control, ActionKind kind, int number, double x = 0,
                             double y = 0, const std::string& text = {}) {
    OperatorAction action;
    action.kind = kind;
    action.form = &form;
    action.control = &control;
    action.number = number;
    action.x = x;
    action.y = y;
    action.text = text;
    const RunHash hash;
    PostActionNow(action);
    Yield();
    return hash.Value();
  }

  static std::uint64_t HashOfControls() {
    RunHash hash;
    hash.AddControls();
    return hash.Value();
  }

  World world;
  TrialForm form;
};

TEST_F(HashTest, EachPartOfAnActionCounts) {
  ListBox& list = form.lstFiles;
  const auto select = HashOfAction(list, ActionKind::Select, 1);
  EXPECT_EQ(HashOfAction(list, ActionKind::Select, 1), select);
  EXPECT_NE(HashOfAction(list, ActionKind::Select, 2), select);
  EXPECT_NE(HashOfAction(list, ActionKind::Select, -1), select);
  EXPECT_NE(HashOfAction(form.chkIt, ActionKind::Check, 1),
            HashOfAction(form.chkIt, ActionKind::Check, 0));
  const auto point = HashOfAction(form.pctGraph, ActionKind::Point, 0, 0.25, 0.5);
  EXPECT_NE(HashOfAction(form.pctGraph, ActionKind::Point, 1, 0.25, 0.5), point);
  EXPECT_NE(HashOfAction(form.pctGraph, ActionKind::Point, 0, 0.5, 0.5), point);
  EXPECT_NE(HashOfAction(form.pctGraph, ActionKind::Point, 0, 0.25, 0.25), point);
  EXPECT_NE(HashOfAction(form.txtName, ActionKind::Type, 0, 0, 0, "a"),
            HashOfAction(form.txtName, ActionKind::Type, 0, 0, 0, "b"));
}

TEST_F(HashTest, TheStampOfAnActionCounts) {
  const auto before = HashOfAction(form.chkIt, ActionKind::Check, 1);
  form.chkIt.Enabled = false;
  form.chkIt.Enabled = true;
  EXPECT_NE(HashOfAction(form.chkIt, ActionKind::Check, 1), before);
  CountStampsFromHere();
  EXPECT_EQ(HashOfAction(form.chkIt, ActionKind::Check, 1), before)
      << "a run counts from its own start";
}

TEST_F(HashTest, EachTextOfAScreenCounts) {
  const struct {
    const char* what;
    std::function<void(TrialForm&)> change;
  } rows[] = {
      {"the screen's caption", [](TrialForm& f) { f.Caption = "TRAIL"; }},
      {"a caption", [](TrialForm& f) { f.chkIt.Caption = "IT"; }},
      {"a text", [](TrialForm& f) { f.txtName.Text = "x"; }},
      {"an entry", [](TrialForm& f) { f.lstFiles.List[2] = "e"; }},
      {"the order of the entries",
       [](TrialForm& f) {
         f.lstFiles.List = {"c", "ab", "d"};
       }},
      {"where an entry ends",
       [](TrialForm& f) {
         f.lstFiles.List = {"a", "bc", "d"};
       }},
      {"an entry less", [](TrialForm& f) { f.lstFiles.List.pop_back(); }},
      {"what stands beside an entry", [](TrialForm& f) { f.lstFiles.Beside[0] = "9"; }},
      {"where an entry stands",
       [](TrialForm& f) {
         f.lstFiles.List = {"ab", "c"};
         f.lstFiles.Beside = {"d", "1", "2", "3"};
       }},
  };
  const auto first = HashOfControls();
  EXPECT_EQ(HashOfControls(), first);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    row.change(form);
    EXPECT_NE(HashOfControls(), first);
    Unload(form);
    Show(form);
    EXPECT_EQ(HashOfControls(), first);
  }
}

}  // namespace
}  // namespace penlog
