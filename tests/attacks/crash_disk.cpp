#include "attacks/crash_disk.h"

#include <set>
#include <string_view>
#include <utility>

#include "core/first_run_data.h"
#include "operator/virtual_session.h"

namespace penlog {

namespace {

/// The first-run settings for this rig, as an older version left them: without the last value.
std::string OlderSettings(std::string_view first_run) {
  std::vector<std::string> lines = WholeLines(std::string(first_run));
  lines.at(19) = lines.at(20) = "0.02";  // resolution and step
  for (const int line : {22, 23, 24, 25}) lines.at(static_cast<std::size_t>(line) - 1) = "1";
  lines.at(40) = "3";
  lines.at(41) = "0";  // the truck interface is to be found
  lines.at(55) = "6";
  lines.pop_back();
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace

std::string CrashData(std::string_view name) {
  return VirtualSession::DataDirectory() + "/" + std::string(name);
}

const std::string& ContentOf(const MemoryDisk& disk, const std::string& path) {
  static const std::string none;
  const auto found = disk.Files().find(path);
  return found == disk.Files().end() ? none : found->second;
}

const std::string& CrashTemporary() {
  static const std::string path = CrashData("TemporaryData.txt");
  return path;
}

const std::string& CrashCpt() {
  static const std::string path = "/soundings/S1.cpt";
  return path;
}

const std::string& CrashTim() {
  static const std::string path = "/soundings/S1.tim";
  return path;
}

const std::string& OldSounding() {
  static const std::string text = "/soundings/OLD.cpt\r\nOLD\r\nrows of another day\r\n";
  return text;
}

MemoryDisk DiskBeforeCrash() {
  MemoryDisk disk;
  for (const FirstRunFile& file : FirstRunFiles()) {
    const bool is_setup = file.name == "System Setup Values.txt";
    disk.Put(CrashData(file.name),
             is_setup ? OlderSettings(file.content) : std::string(file.content));
  }
  disk.Put(CrashTemporary(), OldSounding());
  disk.PutFolder("/soundings");
  return disk;
}

/// A promise is not taken back.
void SyncedRows::Promise(std::vector<std::string> lines) {
  if (lines.size() >= rows.size()) rows = std::move(lines);
}

void SyncedRows::Watch(MemoryDisk& disk) {
  disk.after = [this, &disk](std::string_view operation, const std::string& path) {
    const bool is_sync = operation == "sync";
    if (is_sync && path == CrashTemporary()) Promise(StoredLines(disk.Files().at(path)));
    if (is_sync && path == CrashTemporary() + ".new") beside = StoredLines(disk.Files().at(path));
    if (operation == "sync folder" && path == VirtualSession::DataDirectory()) {
      Promise(std::exchange(beside, {}));
    }
  };
}

bool NeedsNoWord(const DiskWork& work) {
  const std::set<std::string> above = {"/", "/allusers"};
  return work.operation == "close" ||
         (work.operation == "sync folder" && above.count(work.path) > 0);
}

}  // namespace penlog
