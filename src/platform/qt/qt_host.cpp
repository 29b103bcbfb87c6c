#include "platform/qt/qt_host.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QOperatingSystemVersion>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QStringList>

#include "platform/numbers.h"
#include "platform/qt/tone_player.h"

#ifdef __unix__
#include <pwd.h>
#include <unistd.h>
#endif

namespace penlog {

namespace {

constexpr QSize kScreenWithoutOne{1024, 768};

QSize ScreenSize() {
  const bool has_screen = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
                          QGuiApplication::primaryScreen() != nullptr;
  return has_screen ? QGuiApplication::primaryScreen()->size() : kScreenWithoutOne;
}

}  // namespace

void QtHost::Tone(int frequency_hz, int length_ms) {
  PlayTone(frequency_hz, length_ms);
}

bool QtHost::StartProgram(const std::string& path, const std::vector<std::string>& words) {
  QStringList list;
  for (const auto& word : words) list << QString::fromStdString(word);
  return QProcess::startDetached(QString::fromStdString(path), list);
}

bool QtHost::StartSelf() {
  return StartProgram(QCoreApplication::applicationFilePath().toStdString(), words_);
}

std::string QtHost::UserName() {
#ifdef __unix__
  const passwd* entry = getpwuid(geteuid());
  if (entry != nullptr && entry->pw_name != nullptr) return entry->pw_name;
#endif
  for (const char* name : {"USERNAME", "USER", "LOGNAME"}) {
    if (const auto value = Environment(name)) return *value;
  }
  return {};
}

std::optional<std::string> QtHost::Environment(const std::string& name) {
  const QString value = qEnvironmentVariable(name.c_str());
  if (value.isEmpty()) return std::nullopt;
  return value.toStdString();
}

std::string QtHost::ProgramFolder() {
  return QCoreApplication::applicationDirPath().toStdString();
}

std::string QtHost::UserDataFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString();
}

std::optional<int> QtHost::SystemVersion() {
  const auto version = QOperatingSystemVersion::current();
  if (version.type() != QOperatingSystemVersion::Windows) return std::nullopt;
  return version.majorVersion();
}

double ReadWithMark(const std::string& text, const std::string& decimal_mark) {
  std::string number = text.substr(0, text.find_first_not_of(" +-0123456789" + decimal_mark));
  const auto mark = number.find(decimal_mark);
  if (mark != std::string::npos) number.replace(mark, decimal_mark.size(), ".");
  return LeadingNumber(number);
}

double QtHost::LocaleReads(const std::string& text) {
  return ReadWithMark(text, QLocale::system().decimalPoint().toStdString());
}

int QtHost::ScreenWidth() {
  return ScreenSize().width();
}

int QtHost::ScreenHeight() {
  return ScreenSize().height();
}

}  // namespace penlog
