#include "sounding/moved_files.h"

#include <cstddef>
#include <exception>
#include <vector>

#include "core/error_trap.h"
#include "core/message.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_files.h"

namespace penlog {

namespace {

constexpr std::size_t kResultFile = 5;
constexpr std::size_t kFilm = 6;  ///< too long to be held in memory, and nothing is added to it

/// The files that go along.
constexpr std::array<std::size_t, 4> kSideFiles = {kDissipationFile, kSeismicFile, kTimFile,
                                                   kResultFile};

bool Stands(const std::string& path) {
  bool stands = false;
  Trapped([&] { stands = TheDisk().FileExists(path); });
  return stands;
}

void PutBeside(const std::string& path) {
  if (!TheDisk().FileExists(path)) return;
  TheDisk().Rename(path, FreeNameBeside(path));
  TheDisk().SyncFolder(FolderOf(path));  // its new name, before another file takes the old one
}

bool IsCopyOf(const std::string& path, const std::string& from) {
  bool is_copy = false;
  Trapped([&] { is_copy = ReadFile(path) == ReadFile(from); });
  return is_copy;
}

/// A copy that an attempt before this one has left is no other's file.
void CopySide(const std::string& from, const std::string& to) {
  const std::string text = ReadFile(from);
  if (TheDisk().FileExists(to) && ReadFile(to) != text) PutBeside(to);
  ReplaceFile(to, text);
}

/// False where the operator leaves it as it is.
template <class Work>
bool Try(const std::string& what, Work work) {
  for (;;) {
    try {
      work();
      return true;
    } catch (const std::exception& fault) {  // a file may be too long for the memory
      if (MsgBox(
              what + "  PRESS OK TO TRY AGAIN, OR CANCEL TO LEAVE IT WHERE IT IS.  " + fault.what(),
              BoxButtons::OkCancel) == BoxAnswer::Cancel) {
        return false;
      }
    }
  }
}

/// A medium that was pulled leaves an empty folder, or none.
bool IsAway(const std::string& folder) {
  bool is_away = true;
  Trapped([&] { is_away = TheDisk().List(folder).empty(); });
  return is_away;
}

std::string Listed(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += (text.empty() ? "" : ", ") + path;
  return text;
}

}  // namespace

SideFiles MoveSideFiles(const SoundingPaths& from, const SoundingPaths& to, bool is_its_place,
                        bool has_dissipation_file, bool has_seismic_file) {
  SideFiles anothers{};
  const bool is_away = IsAway(FolderOf(from[kCptFile]));
  std::array<bool, 7> expected{};
  expected[kDissipationFile] = has_dissipation_file;
  expected[kSeismicFile] = has_seismic_file;
  expected[kTimFile] = HasTimFile();
  std::vector<std::string> lacking;
  for (const std::size_t file : kSideFiles) {
    if (from[file] == to[file]) continue;
    anothers[file] = !is_its_place;
    // Another's file first: ours may not be given at all.
    const auto put_beside = [&] {
      const bool is_taken = anothers[file] && TheDisk().FileExists(to[file]);
      if (is_taken && !IsCopyOf(to[file], from[file])) PutBeside(to[file]);
      anothers[file] = false;
    };
    if (Stands(from[file])) {
      Try(from[file] + " CANNOT BE COPIED TO " + FolderOf(to[file]) + ".", [&] {
        put_beside();
        CopySide(from[file], to[file]);
      });
      continue;
    }
    if (expected[file] || is_away) lacking.push_back(from[file]);
    if (!is_its_place) {
      Try(to[file] + " IS ANOTHER SOUNDING'S AND CANNOT BE RENAMED.", put_beside);
    }
  }
  if (!lacking.empty()) {
    Tell("THESE FILES CANNOT BE READ.  WHAT STANDS THERE OF THEM STAYS THERE: " + Listed(lacking));
  }
  if (from[kFilm] != to[kFilm] && Stands(from[kFilm])) {
    Tell("THE FILM IS NOT COPIED AND STAYS WHERE IT IS: " + from[kFilm]);
  }
  return anothers;
}

}  // namespace penlog
