#include "platform/boxes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "support/world.h"

namespace penlog {
namespace {

struct Boxes : testing::Test {
  World world;
  std::vector<std::string> answered;

  void PostNamed(const std::string& text, BoxButtons buttons = BoxButtons::Ok) {
    PostBox(text, buttons, [this, text](BoxAnswer) { answered.push_back(text); });
  }
};

TEST(BoxButtonsTable, OffersItsOwnAnswersAlone) {
  const struct {
    BoxButtons buttons;
    bool ok, cancel, yes, no;
  } rows[] = {
      {BoxButtons::Ok, true, false, false, false},
      {BoxButtons::OkCancel, true, true, false, false},
      {BoxButtons::YesNo, false, false, true, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Offers(row.buttons, BoxAnswer::Ok), row.ok);
    EXPECT_EQ(Offers(row.buttons, BoxAnswer::Cancel), row.cancel);
    EXPECT_EQ(Offers(row.buttons, BoxAnswer::Yes), row.yes);
    EXPECT_EQ(Offers(row.buttons, BoxAnswer::No), row.no);
  }
}

TEST_F(Boxes, TheFirstPostedIsInFrontAndTheOthersWait) {
  PostNamed("first");
  PostNamed("second");
  ASSERT_NE(FrontBox(), nullptr);
  EXPECT_EQ(FrontBox()->text, "first");
  EXPECT_EQ(OpenBoxes().size(), 2u);
  AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  EXPECT_EQ(FrontBox()->text, "first") << "the answer comes in a yield";
  Yield();
  EXPECT_EQ(FrontBox()->text, "second");
  EXPECT_EQ(answered, (std::vector<std::string>{"first"}));
}

TEST_F(Boxes, AnAnswerToABoxBehindIsIgnored) {
  PostNamed("first");
  PostNamed("second");
  AnswerBox(OpenBoxes()[1].id, BoxAnswer::Ok);
  Yield();
  EXPECT_EQ(OpenBoxes().size(), 2u);
  EXPECT_TRUE(answered.empty());
}

TEST_F(Boxes, AnAnswerToABoxThatHasGoneIsIgnored) {
  PostNamed("first");
  PostNamed("second");
  const int id = FrontBox()->id;
  AnswerBox(id, BoxAnswer::Ok);
  AnswerBox(id, BoxAnswer::Ok);  // a second click before the box was gone
  Yield();
  EXPECT_EQ(answered, (std::vector<std::string>{"first"}));
  EXPECT_EQ(FrontBox()->text, "second");
}

TEST_F(Boxes, AButtonThatTheBoxDoesNotOfferIsIgnored) {
  PostNamed("really?", BoxButtons::YesNo);
  AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  AnswerBox(FrontBox()->id, BoxAnswer::Cancel);
  Yield();
  ASSERT_NE(FrontBox(), nullptr);
  AnswerBox(FrontBox()->id, BoxAnswer::No);
  Yield();
  EXPECT_EQ(FrontBox(), nullptr);
  EXPECT_EQ(answered.size(), 1u);
}

TEST_F(Boxes, TheBoxIsGoneWhenItsAnswerRunsAndMayPostAnother) {
  bool open_within = true;
  PostBox("first", BoxButtons::Ok, [&](BoxAnswer) {
    open_within = BoxIsOpen();
    PostNamed("next");
  });
  AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  Yield();
  EXPECT_FALSE(open_within);
  EXPECT_EQ(FrontBox()->text, "next");
}

TEST_F(Boxes, MsgBoxWaitsForItsOwnAnswer) {
  PostNamed("stands already");
  PostCall(kSecond, this, [] { AnswerBox(FrontBox()->id, BoxAnswer::Ok); });
  PostCall(2 * kSecond, this, [] { AnswerBox(FrontBox()->id, BoxAnswer::No); });
  EXPECT_EQ(MsgBox("save?", BoxButtons::YesNo), BoxAnswer::No);
  EXPECT_EQ(Now(), 2 * kSecond);
  EXPECT_EQ(answered, (std::vector<std::string>{"stands already"}));
}

TEST_F(Boxes, TheEndLeavesAMsgBoxWithoutAnAnswer) {
  PostCall(kSecond, this, [] { EndProgram(); });
  EXPECT_THROW(MsgBox("save?"), ProgramEnd);
}

TEST_F(Boxes, AFileDialogWaitsForItsAnswer) {
  PostCall(kSecond, this, [] {
    EXPECT_EQ(OpenFileDialog()->pattern, "*.cal");
    EXPECT_TRUE(BoxIsOpen());
    AnswerFileDialog(OpenFileDialog()->id, "/data/a file.cal");
  });
  EXPECT_EQ(AskFile("Open", "/data", "*.cal", false), "/data/a file.cal");
  EXPECT_EQ(OpenFileDialog(), nullptr);
  EXPECT_FALSE(BoxIsOpen());
}

TEST_F(Boxes, AnEmptyPathCancelsTheFileDialog) {
  PostCall(kSecond, this, [] { AnswerFileDialog(OpenFileDialog()->id, ""); });
  EXPECT_EQ(AskFile("Open", "/data", "*", false), std::nullopt);
}

TEST_F(Boxes, AnAnswerToAnEarlierFileDialogIsIgnored) {
  PostCall(kSecond, this, [] {
    AnswerFileDialog(OpenFileDialog()->id - 1, "/wrong");
    AnswerFileDialog(OpenFileDialog()->id, "/right");
  });
  EXPECT_EQ(AskFile("Save", "/data", "*", true), "/right");
}

TEST_F(Boxes, ASecondFileDialogIsRefusedWhileOneIsOpen) {
  PostCall(kSecond, this, [] {
    EXPECT_THROW(AskFile("Second", "/", "*", false), RuntimeFault);
    AnswerFileDialog(OpenFileDialog()->id, "/first");
  });
  EXPECT_EQ(AskFile("First", "/", "*", false), "/first");
}

}  // namespace
}  // namespace penlog
