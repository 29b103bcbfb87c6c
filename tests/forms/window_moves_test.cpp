// The places of windows as data of their screens.
#include "forms/operator_actions.h"
#include "support/world.h"

namespace penlog {
namespace {

struct MovedForm : Form {
  MovedForm() : Form("Moved", "TRIAL") { KeepFirstValues(); }
};

TEST(WindowMoves, AreTakenWhereverTheScreenStandsAndWhateverLiesAbove) {
  World world;
  MovedForm form;
  PostBox("above");
  OperatorAction moved;
  moved.kind = ActionKind::Move;
  moved.form = &form;
  moved.text = WindowPlaceText({-5, 7, 300, 200});
  EXPECT_EQ(moved.text, "-5 7 300 200");
  PostActionNow(moved);
  Yield();
  EXPECT_EQ(form.Window, (WindowPlace{-5, 7, 300, 200}));
}

TEST(WindowMoves, WithATextThatIsNoPlaceChangeNothing) {
  for (const char* text : {"", "1 2 3", "1 2 3 x", "a b c d", "1 2 3 99999999999"}) {
    World world;
    MovedForm form;
    form.Window = {1, 1, 1, 1};
    OperatorAction moved;
    moved.kind = ActionKind::Move;
    moved.form = &form;
    moved.text = text;
    PostActionNow(moved);
    Yield();
    EXPECT_EQ(form.Window, (WindowPlace{1, 1, 1, 1})) << text;
  }
}

TEST(WindowMoves, ByTheProgramAreCounted) {
  World world;
  MovedForm form;
  const std::uint32_t before = form.Moves();
  MoveWindow(form, {1, 2, 3, 4});
  EXPECT_EQ(form.Moves(), before + 1);
  EXPECT_EQ(form.Window, (WindowPlace{1, 2, 3, 4}));
}

TEST(WindowMoves, StandInTheirEventsForAJournal) {
  World world;
  MovedForm form;
  OperatorAction moved;
  moved.kind = ActionKind::Move;
  moved.form = &form;
  moved.text = WindowPlaceText({10, 20, 30, 40});
  const Event event = EventOfAction(moved);
  EXPECT_EQ(event.text, "Moved 0 0 0 0 10 20 30 40");
  const auto read = ActionFromEvent(event);
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->form, &form);
  EXPECT_EQ(read->text, moved.text);
}

}  // namespace
}  // namespace penlog
