#include "core/first_run.h"

#include <algorithm>

#include "core/data_directory.h"
#include "core/first_run_data.h"
#include "platform/files.h"

namespace penlog {

namespace {

/// Stands while the files are laid down: if the machine dies meanwhile, the next start goes on.
constexpr std::string_view kMarker = "First Run.incomplete";

bool HoldsAnyFirstRunFile() {
  const auto& files = FirstRunFiles();
  return std::any_of(files.begin(), files.end(), [](const FirstRunFile& file) {
    return TheDisk().FileExists(DataPath(file.name));
  });
}

}  // namespace

void LayDownFirstRunFiles() {
  const bool cut_short = TheDisk().FileExists(DataPath(kMarker));
  if (!cut_short && HoldsAnyFirstRunFile()) return;
  ReplaceFile(DataPath(kMarker), "");
  for (const FirstRunFile& file : FirstRunFiles()) {
    if (!TheDisk().FileExists(DataPath(file.name))) ReplaceFile(DataPath(file.name), file.content);
  }
  TheDisk().Remove(DataPath(kMarker));
}

std::string_view FirstRunContent(std::string_view name) {
  for (const FirstRunFile& file : FirstRunFiles()) {
    if (file.name == name) return file.content;
  }
  return {};
}

}  // namespace penlog
