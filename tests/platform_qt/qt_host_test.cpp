#include "platform/qt/qt_host.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

namespace penlog {
namespace {

bool Appears(const QString& file) {
  QElapsedTimer since;
  since.start();
  while (since.elapsed() < 2500) {
    QFile content(file);
    if (content.open(QIODevice::ReadOnly) && content.size() > 0) return true;
    usleep(10'000);
  }
  return false;
}

std::string ContentOf(const QString& file) {
  QFile content(file);
  return content.open(QIODevice::ReadOnly) ? content.readAll().toStdString() : "";
}

TEST(QtHost, StartsAProgramWithItsWordsWhole) {
  const QTemporaryDir folder;
  const QString out = folder.filePath("two words.txt");
  QtHost host({});
  EXPECT_TRUE(host.StartProgram("/bin/sh",
                                {"-c", "printf '%s|' \"$@\" > \"$0.part\"; mv \"$0.part\" \"$0\"",
                                 out.toStdString(), "a b", "", "\"c\""}));
  ASSERT_TRUE(Appears(out));
  EXPECT_EQ(ContentOf(out), "a b||\"c\"|");
}

TEST(QtHost, ProgramThatIsMissingIsNotStarted) {
  QtHost host({});
  EXPECT_FALSE(host.StartProgram("/no/such/program", {}));
}

TEST(QtHost, StartsItselfWithTheSameWords) {
  const QTemporaryDir folder;
  const QString out = folder.filePath("tests.xml");
  QtHost host({"--gtest_list_tests", "--gtest_output=xml:" + out.toStdString()});
  EXPECT_TRUE(host.StartSelf());
  ASSERT_TRUE(Appears(out));
}

TEST(QtHost, EnvironmentGivesWhatIsSet) {
  qputenv("penlog_test_word", "here");
  qputenv("penlog_test_empty", "");
  QtHost host({});
  EXPECT_EQ(host.Environment("penlog_test_word"), "here");
  EXPECT_EQ(host.Environment("penlog_test_empty"), std::nullopt);
  EXPECT_EQ(host.Environment("penlog_test_missing"), std::nullopt);
}

TEST(QtHost, KnowsUserFoldersAndScreen) {
  QtHost host({});
  EXPECT_FALSE(host.UserName().empty());
  EXPECT_TRUE(QFile::exists(QString::fromStdString(host.ProgramFolder()) + "/test_platform_qt"));
  EXPECT_EQ(host.UserDataFolder().substr(0, 1), "/");
  EXPECT_EQ(host.SystemVersion(), std::nullopt);
  EXPECT_GT(host.ScreenWidth(), 0);
  EXPECT_GT(host.ScreenHeight(), 0);
}

TEST(QtHost, LocaleReadsByItsDecimalMark) {
  struct Row {
    const char* text;
    const char* mark;
    double number;
  };
  for (const Row& row :
       {Row{"2.1", ".", 2.1}, Row{"2.1", ",", 2.0}, Row{"2,1", ",", 2.1}, Row{"2,1", ".", 2.0},
        Row{"-0.5", ".", -0.5}, Row{"", ".", 0.0}, Row{"2.1", "\xD9\xAB", 2.0}}) {
    EXPECT_EQ(ReadWithMark(row.text, row.mark), row.number) << row.text << " with " << row.mark;
  }
}

/// The child's part of the next test.
void WriteWhatTheLocaleReads(QtHost& host, const std::string& name) {
  QFile out(QString::fromStdString(name));
  ASSERT_TRUE(out.open(QIODevice::WriteOnly));
  out.write(QByteArray::number(host.LocaleReads("2.1")));
}

// The locale is read once a process: the test starts itself under each.
TEST(QtHost, LocaleReadsUnderTheEnvironmentsLocale) {
  QtHost host({});
  if (const auto name = host.Environment("penlog_locale_out")) {
    WriteWhatTheLocaleReads(host, *name);
    return;
  }
  const QTemporaryDir folder;
  for (const bool comma : {false, true}) {
    const QString out = folder.filePath(comma ? "comma" : "point");
    const std::string locale = comma ? "de_DE.UTF-8" : "en_US.UTF-8";
    ASSERT_TRUE(host.StartProgram("/usr/bin/env",
                                  {"LC_ALL=" + locale, "penlog_locale_out=" + out.toStdString(),
                                   host.ProgramFolder() + "/test_platform_qt", "--gtest_brief=1",
                                   "--gtest_filter=QtHost.LocaleReadsUnderTheEnvironmentsLocale"}));
    ASSERT_TRUE(Appears(out));
    EXPECT_EQ(ContentOf(out), comma ? "2" : "2.1");
  }
}

}  // namespace
}  // namespace penlog
