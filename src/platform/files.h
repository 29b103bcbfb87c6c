// File work as the subsystems use it: each call is whole, so that a crash leaves the old or the
// new content, and never half of it.
#pragma once

#include <string>
#include <string_view>

#include "platform/disk.h"

namespace penlog {

/// Appends with one write and one sync; makes the file if it is missing.
void AppendToFile(const std::string& path, std::string_view bytes);
/// Replaces a file as a whole: writes beside it, syncs, renames, syncs the folder.
void ReplaceFile(const std::string& path, std::string_view bytes);
/// Whole content as it stands on the disk.
std::string ReadFile(const std::string& path);
/// Whole content as UTF-8 (see `FromFileBytes`).
std::string ReadTextFile(const std::string& path);
void CopyFile(const std::string& from, const std::string& to);
/// What stands in the file, and its name, are on the medium when this returns: a process that died
/// may have written it and not lived to sync it.
void SettleFile(const std::string& path);
/// Makes a folder and those above it that are missing. Each is on the medium when this returns, so
/// that what is written into it can't vanish with it. One that stands there is synced once more:
/// the attempt that made it may have been cut off.
void MakeWholeFolder(const std::string& path);

/// Joins with the system's separator; none is doubled.
std::string JoinPath(std::string_view folder, std::string_view name);
/// The folder of a path, without the separator behind it (the root keeps it).
std::string FolderOf(std::string_view path);
/// Whether the path is a root: "/" or "C:\".
bool IsRoot(std::string_view path);
/// A path that was typed, from its root on: one that begins at no root goes on from `folder`; ".",
/// ".." and separators too many are taken out, as the words stand and without a look at the disk.
std::string ResolvedPath(std::string_view folder, std::string_view path);
/// `name`, or "name (2)", "name (3)" ... put before the extension: the first that is free.
std::string FreeNameBeside(const std::string& path);

}  // namespace penlog
