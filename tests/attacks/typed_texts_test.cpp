// What an operator may type or paste: it is refused with a word, or recorded and read again.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "attacks/calm_operator.h"
#include "forms/create_new_directory_form.h"
#include "forms/operator_actions.h"
#include "forms/setup_sounding_form.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/yield.h"

namespace penlog {
namespace {

const std::vector<std::string> kTexts = {"",
                                         " ",
                                         std::string(100'000, 'x'),
                                         "two\nlines",
                                         "two\r\nlines",
                                         "\"",
                                         "\"quoted\"",
                                         "a,b,,c",
                                         "\t",
                                         std::string("a\0b", 3),
                                         "\xF0\x9F\x98\x80\xF0\x9F\x98\x80",
                                         "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                                         "\xFF\xFE\xFF",
                                         "1e999",
                                         "-0",
                                         "nan",
                                         "DONE",
                                         "%s%n{}"};

void Type(TextBox& box, const std::string& text) {
  OperatorAction action;
  action.form = &SetupSounding;
  action.control = &box;
  action.kind = ActionKind::Type;
  action.text = text;
  PostActionNow(std::move(action));
}

std::int64_t LinesIn(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

TEST(TypedTexts, InEveryFieldKeepTheHeadersLinesAndAreReadAgain) {
  for (const std::string& text : kTexts) {
    CalmOperator calm;
    calm.LayDown();
    calm.at = [&](const std::string& moment) {
      if (moment != "SetupSounding") return;
      for (TextBox* box :
           {&SetupSounding.txtOperator, &SetupSounding.txtConeNumber, &SetupSounding.txtLocation,
            &SetupSounding.txtHeader, &SetupSounding.txtFooter1, &SetupSounding.txtFooter2,
            &SetupSounding.txtJobNumber, &SetupSounding.txtHoleNumber}) {
        Type(*box, text);
      }
    };
    calm.Run();
    ASSERT_TRUE(calm.ended) << text.substr(0, 20) << "\n" << calm.Told();
    const std::string& cpt = calm.disk.Files().at("/soundings/S1.cpt");
    EXPECT_EQ(LinesIn(cpt), 23 + calm.rows) << text.substr(0, 20);
    calm.at = {};
    calm.name = "S2";
    calm.Run();
    EXPECT_TRUE(calm.ended) << "again after " << text.substr(0, 20) << "\n" << calm.Told();
    EXPECT_TRUE(calm.disk.FileExists("/soundings/S2.cpt"));
  }
}

struct TypedName {
  std::string name;
  const char* message;  ///< empty: taken
};

TEST(TypedNames, AreRefusedWithAWordOrTaken) {
  const std::vector<TypedName> rows = {
      {"", "Please enter a filename"},
      {"   ", "Please enter a filename"},
      {"a/b", "\"/\" is an invalid filename character."},
      {"../../x", "\"/\" is an invalid filename character."},
      {"a\"b", "\"\"\" is an invalid filename character."},
      {"a\nb", "\"(control character)\" is an invalid filename character."},
      {std::string("a\0b", 3), "\"(control character)\" is an invalid filename character."},
      {std::string(300, 'n'), "The file name is too long."},
      {std::string(100'000, 'n'), "The file name is too long."},
      {"taken", "A sounding file exists with the same name."},
      {".", ""},
      {"..", ""},
      {"a b ", ""},
      {"a,b", ""},
      {"-rf", ""},
      {"\xF0\x9F\x98\x80", ""},
      {"NUL", ""}};
  for (const TypedName& row : rows) {
    CalmOperator calm;
    calm.LayDown();
    calm.disk.Put("/soundings/taken.cpt", "rows");
    calm.name = row.name;
    calm.Run(*row.message == '\0' ? 30 * 60 * kSecond : 60 * kSecond);
    EXPECT_EQ(calm.ended, *row.message == '\0') << row.name.substr(0, 20);
    EXPECT_TRUE(calm.WasTold(row.message)) << row.name.substr(0, 20) << "\n" << calm.Told();
    EXPECT_EQ(calm.disk.Files().at("/soundings/taken.cpt"), "rows");
    if (calm.ended) {
      EXPECT_TRUE(calm.disk.FileExists("/soundings/" + row.name + ".cpt")) << row.name;
    }
  }
}

TEST(TypedDepths, AreNumbersOfThisWorldOrToldOf) {
  struct Row {
    const char* text;
    const char* message;
  };
  for (const Row& row :
       {Row{"1e999", "is not a number."}, Row{"nan", "is not a number."},
        Row{"inf", "is not a number."}, Row{"1e30", "is no depth."}, Row{"-99999", "is no depth."},
        Row{"0x10", "is not a number."}, Row{"1 2", "is not a number."},
        Row{"--1", "is not a number."}, Row{"-0", ""}, Row{"-5", ""}, Row{"1e1", ""},
        Row{" 2,5 ", ""}, Row{"", ""}}) {
    CalmOperator calm;
    calm.LayDown();
    calm.at = [&](const std::string& moment) {
      if (moment == "SetupSounding") Type(SetupSounding.txtStartDepth, row.text);
    };
    calm.Run(*row.message == '\0' ? 30 * 60 * kSecond : 60 * kSecond);
    EXPECT_EQ(calm.ended, *row.message == '\0') << row.text << "\n" << calm.Told();
    EXPECT_TRUE(calm.WasTold(row.message)) << row.text;
  }
}

TEST(TypedFolders, ThatCannotBeMadeAreToldOf) {
  for (const std::string& name :
       std::vector<std::string>{"", "  ", "a/b", "a:b", ".", "..", "a\nb", std::string("\0", 1)}) {
    CalmOperator calm;
    calm.LayDown();
    const auto before = calm.disk.List("/soundings").size();
    calm.at = [&](const std::string& moment) {
      if (moment != "SetupDisplay") return;
      Show(frmCreateNewDirectory);
      frmCreateNewDirectory.txtNewDirectoryName.Text = name;
      OperatorAction action;
      action.form = &frmCreateNewDirectory;
      action.control = &frmCreateNewDirectory.Command1;
      PostActionNow(std::move(action));
    };
    calm.Run(30 * kSecond);
    EXPECT_TRUE(calm.WasTold("DIRECTORY")) << name << "\n" << calm.Told();
    EXPECT_FALSE(calm.WasTold("SUCCESSFULLY")) << name;
    EXPECT_EQ(calm.disk.List("/soundings").size(), before);
  }
}

}  // namespace
}  // namespace penlog
