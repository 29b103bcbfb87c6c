// Colours and sizes stand in the look alone. Each failure names the file, the line and the remedy.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace penlog {
namespace {

namespace fs = std::filesystem;

/// The files that are the look, and the printer: paper is white, ink is black.
const std::vector<std::string> kLookFiles = {
    "src/platform/qt/look.h",         "src/platform/qt/look.cpp", "src/platform/qt/style_sheet.cpp",
    "src/platform/qt/qt_printer.cpp", "rig/window/rig_look.h",    "rig/window/rig_look.cpp"};

const std::regex& ColourLiteral() {
  static const std::regex rule(
      R"(QColor\s*[({]\s*(0x|[0-9"])|QColor\w*\s+\w+\s*[({]\s*(0x|[0-9"])|qRgba?\s*\()"
      R"(|Qt::(black|white|red|green|blue|cyan|magenta|yellow|gray|dark\w+|light\w+)\b)"
      R"(|"[^"]*#[0-9a-fA-F]{3,8}\b|\brgba?\(\s*[0-9]|<color\b|<brush\b|name="styleSheet")");
  return rule;
}

const std::regex& SizeLiteral() {
  static const std::regex rule(
      R"(setPointSizeF?\s*\(\s*[0-9]|setPixelSize\s*\(\s*(std::max\s*\(\s*)?[0-9])"
      R"(|font(-size)?\s*:\s*[0-9]|Scaled\s*\(\s*[0-9]|setSpacing\s*\(\s*[1-9])"
      R"(|setContentsMargins\s*\(\s*[1-9]|QFont\s*[({]\s*"|<font\b|<pointsize>)");
  return rule;
}

/// Words about code are none.
bool IsComment(const std::string& line) {
  const auto begin = line.find_first_not_of(' ');
  return begin != std::string::npos && line.compare(begin, 2, "//") == 0;
}

bool Breaks(const std::string& line) {
  return !IsComment(line) &&
         (std::regex_search(line, ColourLiteral()) || std::regex_search(line, SizeLiteral()));
}

TEST(LookRules, ColoursAndSizesStandInTheLookAlone) {
  const fs::path root = PENLOG_SOURCE_DIR;
  int files = 0;
  for (const char* folder : {"src/platform/qt", "src/app", "rig/window"}) {
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string kind = entry.path().extension().string();
      if (kind != ".cpp" && kind != ".h" && kind != ".ui") continue;
      const std::string path = fs::relative(entry.path(), root).generic_string();
      if (std::count(kLookFiles.begin(), kLookFiles.end(), path) > 0) continue;
      ++files;
      std::ifstream in(entry.path());
      int number = 0;
      for (std::string line; std::getline(in, line);) {
        ++number;
        EXPECT_FALSE(Breaks(line))
            << path << ":" << number << ": name a role of the look instead\n  " << line;
      }
    }
  }
  EXPECT_GT(files, 80);
}

TEST(LookRules, KnowWhatBreaksThem) {
  const struct {
    const char* line;
    bool breaks;
  } rows[] = {
      {"painter.setPen(QColor(0x12, 0x34, 0x56));", true},
      {"const QColor warm{200, 10, 10};", true},
      {"painter.fillRect(rect(), Qt::red);", true},
      {"label->setStyleSheet(\"color: #ff0000\");", true},
      {"sheet += \"background: rgb(1, 2, 3)\";", true},
      {"   <property name=\"styleSheet\">", true},
      {"font.setPointSize(12);", true},
      {"font.setPixelSize(std::max(6, size));", true},
      {"rule += \"font-size: 14px\";", true},
      {"layout->setSpacing(Scaled(18, scale));", true},
      {"row->setContentsMargins(4, 0, 0, 0);", true},
      {"     <pointsize>11</pointsize>", true},
      {"painter.setPen(QColor((one.red() + other.red()) / 2, 0, 0));", false},
      {"painter.setPen(Look().line);", false},
      {"font.setPixelSize(pixels);", false},
      {"places->setContentsMargins(0, 0, 0, 0);", false},
      {"rule += QString(\"font-size:%1px;\").arg(fitted);", false},
      {"setAttribute(Qt::WA_ShowWithoutActivating);", false},
      {"// was Qt::red once", false},
  };
  for (const auto& row : rows) EXPECT_EQ(Breaks(row.line), row.breaks) << row.line;
}

}  // namespace
}  // namespace penlog
