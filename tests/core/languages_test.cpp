#include "core/languages.h"

#include <gtest/gtest.h>

#include "platform/view.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

class Languages : public ::testing::Test {
 protected:
  Languages() { words = WordTables{}; }
  void PutList(const std::string& text) { world.disk.Put("/data/AvailableLanguages.txt", text); }
  std::string OnlyMessage() const {
    EXPECT_EQ(world.boxes.texts.size(), 1U);
    return world.boxes.texts.empty() ? "" : world.boxes.texts[0];
  }
  SettingsWorld world;
};

TEST_F(Languages, AreReadInOrder) {
  PutList("3\r\n\"English\"\r\n\"Deutsch\"\r\n\"Svenska\"\r\n");
  LoadLanguages();
  EXPECT_EQ(settings.LanguageCount, 3);
  EXPECT_EQ(settings.AvailableLanguages[0], "English");
  EXPECT_EQ(settings.AvailableLanguages[2], "Svenska");
  EXPECT_TRUE(world.boxes.texts.empty());
}

TEST_F(Languages, MissingListIsToldAndLeavesEnglish) {
  LoadLanguages();
  EXPECT_EQ(OnlyMessage().find("/data/AvailableLanguages.txt"), 0U);
  EXPECT_EQ(settings.LanguageCount, 1);
  EXPECT_EQ(settings.AvailableLanguages[0], "English");
}

TEST_F(Languages, BadListIsToldAndKeepsWhatCameBefore) {
  struct Row {
    const char* text;
    int count;
  };
  const std::string twelve = "12\r\na\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj\r\nk\r\nl\r\n";
  for (const Row& row : {Row{"", 1}, Row{"x\r\n", 1}, Row{"-1\r\n", 1}, Row{"0\r\n", 1},
                         Row{"3\r\n\"English\"\r\n\"Deutsch\"", 2}, Row{twelve.c_str(), 11}}) {
    world.boxes.texts.clear();
    PutList(row.text);
    LoadLanguages();
    EXPECT_EQ(OnlyMessage().find("AvailableLanguages.txt"), 0U) << row.text;
    EXPECT_EQ(settings.LanguageCount, row.count) << row.text;
  }
}

TEST_F(Languages, TranslateWholeTextsOnly) {
  settings.AvailableLanguages[1] = "Deutsch";
  settings.Language = 1;
  world.disk.Put("/data/Deutsch.txt", "2\r\n\"STOP\"\r\n\"STOPP\"\r\n\"UP\"\r\n\"AUF\"\r\n");
  LoadWordTable();
  EXPECT_EQ(words.WordCount, 2);
  EXPECT_EQ(Translate("STOP"), "STOPP");
  EXPECT_EQ(Translate("UP"), "AUF");
  EXPECT_EQ(ShownText("UP"), "AUF") << "the windows do not show the operator's language";
  EXPECT_EQ(Translate("STOP "), "STOP ");
  EXPECT_EQ(Translate("stop"), "stop");
  EXPECT_EQ(Translate("DOWN"), "DOWN");
}

TEST_F(Languages, EnglishNeedsNoTable) {
  settings.Language = 0;
  LoadWordTable();
  EXPECT_TRUE(world.boxes.texts.empty());
  EXPECT_EQ(Translate("STOP"), "STOP");
}

TEST_F(Languages, BackInEnglishNothingIsTranslated) {
  settings.AvailableLanguages[1] = "Deutsch";
  settings.Language = 1;
  world.disk.Put("/data/Deutsch.txt", "1\r\n\"STOP\"\r\n\"STOPP\"\r\n");
  LoadWordTable();
  settings.Language = 0;
  EXPECT_EQ(Translate("STOP"), "STOP");
  LoadWordTable();
  EXPECT_EQ(words.WordCount, 0);
}

TEST_F(Languages, BadWordTableIsToldAndItsWholePairsAreUsed) {
  settings.AvailableLanguages[1] = "Deutsch";
  settings.Language = 1;
  world.disk.Put("/data/Deutsch.txt", "3\r\n\"STOP\"\r\n\"STOPP\"\r\n\"UP\"\r\n");
  LoadWordTable();
  EXPECT_EQ(OnlyMessage().find("Deutsch.txt ends too early at line 5"), 0U);
  EXPECT_EQ(words.WordCount, 1);
  EXPECT_EQ(words.EnglishWords.size(), words.TranslatedWords.size());
  EXPECT_EQ(Translate("STOP"), "STOPP");
  EXPECT_EQ(Translate("UP"), "UP");
}

TEST_F(Languages, WordTableHoldsAThousandPairsAtMost) {
  settings.AvailableLanguages[1] = "Deutsch";
  settings.Language = 1;
  std::string text = "1001\r\n";
  for (int i = 1; i <= 1001; ++i) {
    text += "\"E" + std::to_string(i) + "\",\"D" + std::to_string(i) + "\"\r\n";
  }
  world.disk.Put("/data/Deutsch.txt", text);
  LoadWordTable();
  EXPECT_EQ(OnlyMessage().find("Deutsch.txt: 1001 entries, there can be 0 to 1000"), 0U);
  EXPECT_EQ(words.WordCount, 1000);
  EXPECT_EQ(Translate("E1000"), "D1000");
  EXPECT_EQ(Translate("E1001"), "E1001");
}

TEST_F(Languages, MissingWordTableIsToldAndShowsEnglish) {
  settings.AvailableLanguages[1] = "Deutsch";
  settings.Language = 1;
  LoadWordTable();
  EXPECT_EQ(OnlyMessage().find("/data/Deutsch.txt"), 0U);
  EXPECT_EQ(Translate("STOP"), "STOP");
}

TEST_F(Languages, OfTheFirstRunTranslateTheStartScreen) {
  LayDownFirstRunFiles();
  LoadLanguages();
  settings.Language = 1;
  LoadWordTable();
  EXPECT_TRUE(world.boxes.texts.empty());
  EXPECT_EQ(Translate("START NEW SOUNDING"), "NEUE SONDIERUNG STARTEN");
  EXPECT_EQ(Translate("CLAMP"), "KLEMME");
}

}  // namespace
}  // namespace penlog
