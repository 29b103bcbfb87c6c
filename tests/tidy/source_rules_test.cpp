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

using Graph = std::map<std::string, std::set<std::string>>;

/// A header and its source are one node.
Graph IncludeGraph(const std::vector<SourceFile>& files) {
  std::set<std::string> nodes;
  for (const auto& file : files) nodes.insert(WithoutExtension(file.path));
  Graph graph;
  for (const auto& file : files) {
    const std::string from = WithoutExtension(file.path);
    for (const auto& line : file.lines) {
      const std::string to = IncludedNode(line, nodes);
      if (!to.empty() && to != from) graph[from].insert(to);
    }
  }
  return graph;
}

/// A cycle as "a -> b -> a", or empty.
std::string FindCycle(const Graph& graph) {
  std::map<std::string, int> colour;  // 0 new, 1 on the path, 2 done
  std::vector<std::string> path;
  std::string cycle;
  const std::function<void(const std::string&)> visit = [&](const std::string& node) {
    colour[node] = 1;
    path.push_back(node);
    const auto edges = graph.find(node);
    if (edges != graph.end()) {
      for (const auto& next : edges->second) {
        if (!cycle.empty()) return;
        if (colour[next] == 1) {
          const auto start = std::find(path.begin(), path.end(), next);
          for (auto at = start; at != path.end(); ++at) cycle += *at + " -> ";
          cycle += next;
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
  const std::vector<SourceFile> files = {
      {"src/a.h", {"#include \"b.h\""}}, {"src/b.h", {}}, {"src/b.cpp", {"  #include \"a.h\""}}};
  EXPECT_EQ(FindCycle(IncludeGraph(files)), "src/a -> src/b -> src/a");
}

TEST(Qt, StandsOnlyWhereWindowsAre) {
  const Rule rule{std::regex(R"(#\s*include\s*[<\"](Q[A-Z]|Qt|ui_))"),
                  {"src/platform/qt/", "src/app/", "rig/window/", "tests/platform_qt/",
                   "tests/app/", "tests/real_time/", "bench/"},
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
  static const std::regex definition(R"(^(struct|class|enum class|enum|union) (\w+)\b[^;(]*\{)");
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

TEST(LooseEnds, AreNotLeftBehind) {
  const Rule rule{std::regex(R"(\b(TODO|FIXME|XXX|HACK)\b)"),
                  {"tests/tidy/"},
                  "finish it, or say in docs/decisions.md what stands meanwhile"};
  EXPECT_EQ(Broken(rule, Sources()), "");
}

}  // namespace
}  // namespace penlog
