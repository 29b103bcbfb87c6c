// Which screen asked for a box.
#include "platform/box_askers.h"

#include <gtest/gtest.h>

#include "forms/start_up_form.h"
#include "support/world.h"

namespace penlog {
namespace {

std::string AskerOfFront() {
  return FrontBox() == nullptr ? "no box" : AskerOfBox(FrontBox()->id);
}

TEST(BoxAsker, IsTheInnermostOne) {
  World world;
  {
    const BoxAsker outer("SetupDisplay");
    const BoxAsker inner("frmResetComms");
    PostBox("text");
  }
  EXPECT_EQ(AskerOfFront(), "frmResetComms");
}

TEST(BoxAsker, IsNobodyOutsideOfHandlers) {
  World world;
  PostBox("text");
  EXPECT_EQ(AskerOfFront(), "");
}

TEST(BoxAsker, IsTheScreenWhoseButtonWasPressed) {
  World world;
  StartUp.cmdStart.Click = [] { PostBox("text"); };
  Show(StartUp);
  World::Press(StartUp, StartUp.cmdStart);
  StartUp.cmdStart.Click = nullptr;
  EXPECT_EQ(AskerOfFront(), "StartUp");
}

TEST(BoxAsker, OfAnAnswerIsThatOfTheQuestion) {
  World world;
  {
    const BoxAsker asker("frmResetComms");
    PostBox("question", BoxButtons::YesNo, [](BoxAnswer) { PostBox("what follows"); });
  }
  const int question = FrontBox()->id;
  AnswerBox(question, BoxAnswer::Yes);
  Yield();
  EXPECT_EQ(FrontBox()->text, "what follows");
  EXPECT_EQ(AskerOfFront(), "frmResetComms");
  EXPECT_EQ(AskerOfBox(question), "") << "it is gone";
}

TEST(BoxAsker, OfAFileDialogIsKept) {
  World world;
  std::string asker;
  PostCall(Now() + kSecond, &world, [&] {
    asker = AskerOfBox(OpenFileDialog()->id);
    AnswerFileDialog(OpenFileDialog()->id, "");
  });
  const BoxAsker asks("frmConeSettings");
  AskFile("OPEN", "/tmp", "*.cal", false);
  EXPECT_EQ(asker, "frmConeSettings");
}

}  // namespace
}  // namespace penlog
