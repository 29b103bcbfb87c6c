// Letters for buttons: each its own, the captions as they are.
#include "platform/qt/mnemonics.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

using Texts = std::vector<QString>;

TEST(Mnemonics, TakeFirstLettersOfWordsBeforeOthers) {
  const struct {
    Texts captions;
    QString taken;
    Texts marked;
  } rows[] = {
      {{"OK", "CANCEL"}, "", {"&OK", "&CANCEL"}},
      {{"STOP", "SUSPEND"}, "", {"&STOP", "S&USPEND"}},
      {{"RESET PORTS", "RESET QUITS"}, "", {"&RESET PORTS", "RESET &QUITS"}},
      {{"EXIT"}, "E", {"E&XIT"}},
      {{"A", "A"}, "", {"&A", "A"}},
      {{""}, "", {""}},
      {{"SAVE & GO"}, "S", {"SAVE && &GO"}},
      {{"& AND"}, "", {"&& &AND"}},
      {{"ÜBER", "über"}, "", {"&ÜBER", "ü&ber"}},
  };
  for (const auto& row : rows) EXPECT_EQ(WithMnemonics(row.captions, row.taken), row.marked);
}

TEST(Mnemonics, GiveTheCaptionBack) {
  for (const QString caption : {"STOP", "SAVE & GO", "&", "A&&B", ""}) {
    EXPECT_EQ(WithoutMnemonic(WithMnemonics({caption}).front()), caption);
  }
}

TEST(Mnemonics, TellTheMarkedLetter) {
  EXPECT_EQ(MnemonicOf("S&uspend"), QChar('U'));
  EXPECT_EQ(MnemonicOf("A && &B"), QChar('B'));
  EXPECT_TRUE(MnemonicOf("A && B").isNull());
  EXPECT_TRUE(MnemonicOf("").isNull());
}

}  // namespace
}  // namespace penlog
