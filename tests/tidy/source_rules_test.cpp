// Rules over the source itself. Each failure names the file, the line and the remedy.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace penlog {
namespace {

namespace fs = std::filesystem;

struct SourceFile {
  std::string path;  // relative to the project, with '/'
  std::vector<std::string> lines;
};

bool IsSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

std::vector<SourceFile> ReadSources(const fs::path& root, const std::vector<std::string>& folders) {
  std::vector<SourceFile> files;
  for (const auto& folder : folders) {
    if (!fs::exists(root / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      if (!entry.is_regular_file() || !IsSource(entry.path())) continue;
      SourceFile file{fs::relative(entry.path(), root).generic_string(), {}};
      std::ifstream in(entry.path());
      for (std::string line; std::getline(in, line);) file.lines.push_back(line);
      files.push_back(std::move(file));
    }
  }
  std::sort(files.begin(), files.end(),
            [](const auto& a, const auto& b) { return a.path < b.path; });
  return files;
}

const std::vector<SourceFile>& Sources() {
  static const auto files =
      ReadSources(PENLOG_SOURCE_DIR, {"src", "rig", "operator", "tests", "bench"});
  return files;
}

std::string WithoutExtension(const std::string& path) {
  return path.substr(0, path.rfind('.'));
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

/// The project file that an include line names, without its extension; empty for others.
std::string IncludedNode(const std::string& line, const std::set<std::string>& nodes) {
  static const std::regex include(R"(^\s*#\s*include\s*\"([^\"]+)\")");
  std::smatch match;
  if (!std::regex_search(line, match, include)) return {};
  const std::string name = WithoutExtension(match[1]);
  for (const std::string& candidate : {"src/" + name, name}) {
    if (nodes.count(candidate) > 0) return candidate;
  }
  return {};
}

/// "file:line" of the include that leads from one node to another.
using Graph = std::map<std::string, std::map<std::string, std::string>>;

/// A header and its source are one node.
Graph IncludeGraph(const std::vector<SourceFile>& files) {
  std::set<std::string> nodes;
  for (const auto& file : files) nodes.insert(WithoutExtension(file.path));
  Graph graph;
  for (const auto& file : files) {
    const std::string from = WithoutExtension(file.path);
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      const std::string to = IncludedNode(file.lines[i], nodes);
      if (to.empty() || to == from) continue;
      graph[from].emplace(to, file.path + ":" + std::to_string(i + 1));
    }
  }
  return graph;
}

/// "file:line: FROM includes TO" for each step of the way through `path` and back to its begin.
std::string CycleReport(const Graph& graph, const std::vector<std::string>& path) {
  std::string report;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const std::string& to = path[(i + 1) % path.size()];
    report += graph.at(path[i]).at(to) + ": " + path[i] + " includes " + to + "\n";
  }
  return report;
}

/// A line for each include of a cycle, or empty.
std::string FindCycle(const Graph& graph) {
  std::map<std::string, int> colour;  // 0 new, 1 on the path, 2 done
  std::vector<std::string> path;
  std::string cycle;
  const std::function<void(const std::string&)> visit = [&](const std::string& node) {
    colour[node] = 1;
    path.push_back(node);
    const auto edges = graph.find(node);
    if (edges != graph.end()) {
      for (const auto& [next, place] : edges->second) {
        if (!cycle.empty()) return;
        if (colour[next] == 1) {
          cycle = CycleReport(graph, {std::find(path.begin(), path.end(), next), path.end()});
          return;
        }
        if (colour[next] == 0) visit(next);
      }
    }
    path.pop_back();
    colour[node] = 2;
  };
  for (const auto& [node, edges] : graph) {
    if (cycle.empty() && colour[node] == 0) visit(node);
  }
  return cycle;
}

struct Rule {
  std::regex pattern;
  std::vector<std::string> allowed;  // path prefixes
  std::string remedy;
};

/// "file:line: remedy" for each line that breaks the rule.
std::string Broken(const Rule& rule, const std::vector<SourceFile>& files) {
  std::string report;
  for (const auto& file : files) {
    const bool exempt =
        std::any_of(rule.allowed.begin(), rule.allowed.end(),
                    [&](const auto& start) { return StartsWith(file.path, start); });
    if (exempt) continue;
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      if (std::regex_search(file.lines[i], rule.pattern)) {
        report += file.path + ":" + std::to_string(i + 1) + ": " + rule.remedy + "\n  " +
                  file.lines[i] + "\n";
      }
    }
  }
  return report;
}

TEST(Includes, FormNoCycle) {
  EXPECT_EQ(FindCycle(IncludeGraph(Sources())), "")
      << "remedy: move what both need into a header of its own, or hand the upward call over as a "
         "function member of a form";
}

TEST(Includes, CycleFinderFindsOne) {
  const std::vector<SourceFile> files = {{"src/a.h", {"#pragma once", "#include \"b.h\""}},
                                         {"src/b.h", {}},
                                         {"src/b.cpp", {"  #include \"a.h\"", "#include \"c.h\""}},
                                         {"src/c.h", {}}};
  EXPECT_EQ(FindCycle(IncludeGraph(files)),
            "src/a.h:2: src/a includes src/b\nsrc/b.cpp:1: src/b includes src/a\n");
}

TEST(Includes, CycleFinderPassesOverTheWayThatLeadsToTheCycle) {
  const std::vector<SourceFile> files = {{"src/a.h", {"#include \"b.h\""}},
                                         {"src/b.h", {"#include \"c.h\""}},
                                         {"src/c.h", {"", "#include \"d.h\""}},
                                         {"src/d.h", {"#include \"b.h\""}}};
  EXPECT_EQ(FindCycle(IncludeGraph(files)),
            "src/b.h:1: src/b includes src/c\nsrc/c.h:2: src/c includes src/d\n"
            "src/d.h:1: src/d includes src/b\n");
}

TEST(Qt, StandsOnlyWhereWindowsAre) {
  const Rule rule{std::regex(R"(#\s*include\s*[<\"](Q[A-Z]|Qt|ui_))"),
                  {"src/platform/qt/", "src/app/", "rig/window/", "tests/platform_qt/",
                   "tests/rig_window/", "tests/app/", "tests/real_time/", "bench/"},
                  "Qt stands only in src/platform/qt, src/app and rig/window: go through an "
                  "interface of src/platform"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

TEST(Qt, StaysOutOfTheWiring) {
  const Rule rule{std::regex(R"(#\s*include\s*[<\"](Q[A-Z]|Qt|ui_|platform/qt))"),
                  {},
                  "the wiring of the screens is free of Qt"};
  std::vector<SourceFile> wiring;
  for (const auto& file : Sources()) {
    if (StartsWith(file.path, "src/app/wiring") || StartsWith(file.path, "src/app/console")) {
      wiring.push_back(file);
    }
  }
  EXPECT_EQ(Broken(rule, wiring), "");
}

TEST(Clock, IsReadByThePlatformAlone) {
  const Rule rule{
      std::regex(R"(system_clock|steady_clock|high_resolution_clock|clock_gettime|gettimeofday)"
                 R"(|\btime\s*\(\s*(0|NULL|nullptr)\s*\)|\blocaltime|\bsleep_for|\busleep\s*\()"
                 R"(|\bnanosleep|std::thread|std::jthread|std::async|QThread|QElapsedTimer)"),
      {"src/platform/", "tests/platform", "tests/tidy/", "tests/app/", "tests/real_time/",
       "bench/"},
      "time comes from platform/clock.h, waiting from platform/yield.h"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

TEST(Files, AreOpenedByThePlatformAlone) {
  const Rule rule{std::regex(R"(\bfopen\s*\(|std::o?i?fstream|std::ofstream|std::filesystem|)"
                             R"(\bopen\s*\(\s*\"|QFile\b|QDir\b)"),
                  {"src/platform/", "tests/", "bench/"},
                  "file work goes through platform/files.h"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

TEST(Numbers, IgnoreTheLocale) {
  const Rule rule{
      std::regex(
          R"(\b(printf|sprintf|snprintf|sscanf|atof|atoi|strtod|strtof)\s*\(|std::sto[dfil]|)"
          R"(std::to_string\(\s*[0-9.]*f\b|std::[io]?stringstream)"),
      {"src/platform/", "src/app/", "tests/", "bench/"},
      "numbers become texts and back through platform/numbers.h"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

TEST(Lines, StayWithinAHundredColumns) {
  const Rule rule{std::regex(R"(^.{101,})"), {}, "break the line at 100 columns"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

TEST(FileLength, StaysWithinSixHundredLines) {
  for (const auto& file : Sources()) {
    EXPECT_LE(file.lines.size(), 600u) << file.path << ": split it by subject";
  }
}

/// Types of two parts under one name are merged by the linker without a word.
TEST(Types, HaveOneDefinitionOfAName) {
  static const std::regex definition(
      R"(^(struct|class|enum class|enum|union) (\w+)\b(?!::)[^;(]*\{)");
  std::map<std::string, std::string> places;
  for (const auto& file : Sources()) {
    if (StartsWith(file.path, "tests/") || StartsWith(file.path, "bench/")) continue;
    bool unnamed = false;
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      if (file.lines[i] == "namespace {") unnamed = true;
      if (file.lines[i] == "}  // namespace") unnamed = false;
      std::smatch match;
      if (unnamed || !std::regex_search(file.lines[i], match, definition)) continue;
      const std::string place = file.path + ":" + std::to_string(i + 1);
      const auto [at, is_new] = places.emplace(match[2], place);
      EXPECT_TRUE(is_new) << place << ": " << match[2] << " is defined in " << at->second
                          << " too; rename one";
    }
  }
}

/// What a handler remembers stands in a state table, where a test can clear it.
TEST(State, IsNotHiddenInSourceFiles) {
  static const std::regex variable(
      R"(^(static )?(?!constexpr|const |using |return|throw|class|struct|enum|friend|extern)"
      R"(|template|typedef|namespace|inline constexpr)[\w:<>,*& ]+ \w+(\[\w*\])?( = .*|\{.*\})?;)");
  for (const auto& file : Sources()) {
    if (!StartsWith(file.path, "src/") || StartsWith(file.path, "src/platform/") ||
        file.path.ends_with(".h")) {
      continue;
    }
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      if (StartsWith(file.lines[i], " ")) continue;
      EXPECT_FALSE(std::regex_search(file.lines[i], variable))
          << file.path << ":" << i + 1 << ": put it into the subsystem's state table\n  "
          << file.lines[i];
    }
  }
}

TEST(State, IsClearedAsAWhole) {
  static const std::regex table(R"(^inline (?!constexpr|const )[\w:<>, ]+ (\w+)( = .*|\{.*\})?;)");
  std::string reset;
  for (const auto& file : Sources()) {
    if (file.path != "src/core/reset_state.cpp") continue;
    for (const auto& line : file.lines) reset += line + "\n";
  }
  int tables = 0;
  for (const auto& file : Sources()) {
    if (!StartsWith(file.path, "src/") || StartsWith(file.path, "src/platform/") ||
        StartsWith(file.path, "src/forms/")) {
      continue;
    }
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      std::smatch match;
      if (!StartsWith(file.lines[i], "inline")) continue;
      if (!std::regex_search(file.lines[i], match, table)) continue;
      ++tables;
      EXPECT_NE(reset.find("  " + match[1].str() + " = "), std::string::npos)
          << file.path << ":" << i + 1 << ": clear " << match[1] << " in core/reset_state.cpp";
    }
  }
  EXPECT_GE(tables, 9);
}

TEST(LooseEnds, AreNotLeftBehind) {
  const Rule rule{std::regex(R"(\b(TODO|FIXME|XXX|HACK)\b)"),
                  {"tests/tidy/"},
                  "finish it, or say in docs/decisions.md what stands meanwhile"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

}  // namespace
}  // namespace penlog
