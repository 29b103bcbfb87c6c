#include "sounding/resumed_files.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/message.h"
#include "core/resume.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/temporary_data.h"
#include "display/display_state.h"
#include "display/graph_slots.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "platform/yield.h"
#include "screens/last_sounding_parameters.h"
#include "sounding/held_rows.h"
#include "sounding/resume_rebuild.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {

namespace {

constexpr std::size_t kHeadLines = 23;
constexpr std::size_t kNumberLine = 15;  ///< from 0
constexpr std::size_t kTitleLine = 16;
constexpr std::size_t kBlanks = 13;  ///< characters of depth and speed
constexpr std::size_t kColumn = 20;
constexpr float kHundredth = 0.0051f;      ///< m; the recovery copy's last digit, and its rounding
constexpr std::size_t kRowsMatched = 200;  ///< enough to know a delay by

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

/// Whole lines with their ends; what stands behind the last line end is left in `text`.
std::vector<std::string> TakeLines(std::string_view& text) {
  std::vector<std::string> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.emplace_back(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::string WithoutEnd(const std::string& line) {
  return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

CptForm FormOf(const std::string& line) {
  const std::string text = WithoutEnd(line);
  if (text.starts_with("KQ Sounding File")) return CptForm::New;
  return text == "Dravenholtz Sounding File" ? CptForm::Old : CptForm::OfSettings;
}

std::string NumberLineOf(const std::vector<int>& columns) {
  std::string line(kBlanks, ' ');
  for (const int channel : columns) {
    line += RightField(PlainNumber(channel), static_cast<int>(kColumn));
  }
  return line;
}

/// The new form has one more digit, and one character more for the depth.
std::size_t DepthWidth(CptForm form) {
  return form == CptForm::New ? 7 : 6;
}

bool AgreesButForLastDigit(const std::string& row, const std::string& expected, CptForm form) {
  const std::size_t width = DepthWidth(form);
  if (row.size() != expected.size() || row.size() < width) return false;
  if (row.compare(width, std::string::npos, expected, width, std::string::npos) != 0) return false;
  const auto depth = WholeSingleText(row.substr(0, width));
  const auto wanted = WholeSingleText(expected.substr(0, width));
  return depth && wanted && std::abs(*depth - *wanted) <= kHundredth;
}

CptForm FormOfSettings() {
  return settings.DepthSignificantDigits > 2 ? CptForm::New : CptForm::Old;
}

std::string WordOf(CptForm form) {
  return form == CptForm::New ? "NEW" : "OLD";
}

// What the sounding records.

bool IsRecorded(const StoredSounding& stored, int channel) {
  return std::binary_search(stored.columns.begin(), stored.columns.end(), channel);
}

bool HasField(const StoredSounding& stored, int channel) {
  return std::find(stored.row_channels.begin(), stored.row_channels.end(), channel) !=
         stored.row_channels.end();
}

/// A channel that is no column is not recorded any more, one that is stays; one without a field in
/// the rows keeps its header column alone.
std::int16_t ModeOf(const StoredSounding& stored, int channel) {
  if (!IsRecorded(stored, channel)) return 0;
  const std::int16_t mode = channels.RecordMode(channel);
  if (channel == 21 || channel == 22) return mode > 0 ? mode : std::int16_t{1};
  if (!HasField(stored, channel)) return 3;
  return mode == 2 ? mode : std::int16_t{1};
}

std::string NameOf(int channel) {
  const std::string& label = channels.ChannelLabel(1, channel);
  return PlainNumber(channel) + (label.empty() ? "" : " (" + label + ")");
}

void TakeColumns(const StoredSounding& stored) {
  std::string lacking;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    channels.RecordMode(channel) = ModeOf(stored, channel);
    const bool lacks = IsRecorded(stored, channel) && channels.ChannelPresent(channel) != kTrue;
    sounding.KeptColumn(channel) = lacks ? kTrue : kFalse;
    if (lacks) lacking += (lacking.empty() ? "" : ", ") + NameOf(channel);
  }
  if (lacking.empty()) return;
  Tell(
      "RECORDED CHANNELS ARE MISSING NOW.  THEIR COLUMNS STAY IN THE FILE, AND NEW ROWS HOLD "
      "-32768 THERE: " +
      lacking);
}

void TakeGraphs(const StoredSounding& stored) {
  display.GraphChannel = {};
  display.GraphChannel[1] = 1;
  std::copy(stored.graphs.begin(), stored.graphs.end(), display.GraphChannel.begin() + 2);
  KeepGraphSlots([](int channel) { return channels.ChannelPresent(channel) == kTrue; });
  display.GraphCount = static_cast<std::int16_t>(1 + FilledSlots());
}

// The recovery copy.

/// Tries until it works or the operator ends the program; the sounding stays resumable.
template <class Work>
void Insist(const std::string& what, Work work) {
  for (;;) {
    try {
      return work();
    } catch (const RuntimeFault& fault) {
      if (MsgBox(what +
                     "  FREE SOME ROOM OR PLUG IN THE MEDIUM AND PRESS OK TO TRY AGAIN, OR "
                     "CANCEL TO END THE PROGRAM.  " +
                     fault.what(),
                 BoxButtons::OkCancel) == BoxAnswer::Cancel) {
        EndProgram();
      }
    }
  }
}

void ReplaceTemporary(const std::string& text) {
  Insist("THE TEMPORARY DATA CANNOT BE WRITTEN.",
         [&] { ReplaceFile(PathOf(kTemporaryFile), text); });
}

/// The damaged file is copied beside before the sound part takes its place.
void MendTemporary(const std::string& text, const StoredSounding& stored) {
  const std::string& path = PathOf(kTemporaryFile);
  if (text != stored.sound_text) {
    Insist("THE TEMPORARY DATA CANNOT BE WRITTEN.", [&] {
      if (!stored.left_out.empty()) CopyFile(path, FreeNameBeside(path));
      ReplaceFile(path, stored.sound_text);
    });
  }
  StartFile(kTemporaryFile, stored.sound_text.size());
}

// The `.cpt` file.

void TellOfHead(const FoundCpt& found) {
  if (found.form != FormOfSettings()) {
    Tell("THE SOUNDING FILE HAS ROWS OF THE " + WordOf(found.form) +
         " FORM, THE SETTINGS ASK FOR "
         "THE " +
         WordOf(FormOfSettings()) + " ONE.  THE FILE KEEPS ITS FORM.");
  }
  const std::string tip(Trim(ColumnTitle(1)));
  if (channels.ChannelPresent(1) == kTrue && found.tip != tip) {
    Tell("THE SOUNDING WAS BEGUN WITH THE TIP \"" + found.tip + "\", THE SETTINGS SAY \"" + tip +
         "\".");
  }
}

/// The file does not say whether it holds elevations: the sign of its first row does.
void KeepSignOfRows(const FoundCpt& found) {
  if (!found.has_head || found.rows.empty() || sounding.RowCount == 0) return;
  const auto depth = WholeSingleText(found.rows[0].substr(0, DepthWidth(found.form)));
  const float stored = sounding.Rows(1, 0);
  if (!depth || std::abs(stored) <= kHundredth) return;
  const bool negated = std::abs(*depth + stored) <= kHundredth;
  const bool plain = std::abs(*depth - stored) <= kHundredth;
  const std::int16_t format = negated ? 1 : 0;
  if (negated == plain || format == settings.DepthFormat) return;
  ReplaceSetting(settings.DepthFormat, format);
  Tell(negated ? "THE SOUNDING WAS BEGUN IN ELEVATIONS, THE SETTINGS SAY DEPTHS.  IT GOES ON IN "
                 "ELEVATIONS."
               : "THE SOUNDING WAS BEGUN IN DEPTHS, THE SETTINGS SAY ELEVATIONS.  IT GOES ON IN "
                 "DEPTHS.");
}

// A channel that is missing now does not tell its delay any more; the rows of the file do.

/// Whether the first rows of the file hold the channel's values of `delay` rows further down.
bool HasDelay(const FoundCpt& found, std::size_t column, int channel, std::int32_t delay) {
  const std::size_t from = kBlanks + column * kColumn;
  const std::size_t rows = std::min(found.rows.size(), kRowsMatched);
  for (std::size_t i = 0; i < rows; ++i) {
    const std::int32_t row = static_cast<std::int32_t>(i) + 1 + delay;
    if (row > sounding.RowCount || found.rows[i].size() < from + kColumn) return false;
    if (found.rows[i].substr(from, kColumn) != RowValue(row, channel)) return false;
  }
  return true;
}

void FindDelaysOfMissing(const FoundCpt& found) {
  const std::vector<int> columns = RowChannels();
  const auto rows = static_cast<std::int32_t>(found.rows.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sounding.KeptColumn(columns[i]) != kTrue) continue;
    std::int32_t delay = 0;
    while (delay < sounding.RowCount - rows && !HasDelay(found, i, columns[i], delay)) ++delay;
    channels.ChannelDelayRows(columns[i]) = static_cast<std::int16_t>(delay);
  }
}

bool AnyIsMissing() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (sounding.KeptColumn(channel) == kTrue) return true;
  }
  return false;
}

/// The speeds of the file's rows are those of the rows `DelayRows` further down.
bool SpeedsAgree(const FoundCpt& found) {
  const std::size_t width = DepthWidth(found.form);
  const std::size_t rows = std::min(found.rows.size(), kRowsMatched);
  for (std::size_t i = 0; i < rows; ++i) {
    const std::int32_t newest = static_cast<std::int32_t>(i) + 1 + cone.DelayRows;
    if (newest > sounding.RowCount || found.rows[i].size() < kBlanks) return false;
    const auto speed = WholeSingleText(found.rows[i].substr(width, kBlanks - width));
    if (!speed || std::abs(*speed - sounding.RowSpeed(newest - 1)) > kHundredth) return false;
  }
  return true;
}

void FormDelays(const FoundCpt& found) {
  if (AnyIsMissing()) FindDelaysOfMissing(found);
  FormDelayRows();
  if (!AnyIsMissing()) return;
  const std::int16_t least = cone.DelayRows;
  while (cone.DelayRows < sounding.RowCount && !SpeedsAgree(found)) ++cone.DelayRows;
  if (!SpeedsAgree(found)) cone.DelayRows = least;
}

std::string Mended(const CptMending& mending, bool has_head, bool torn) {
  std::string text = "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.";
  if (!has_head) text += "  ITS HEAD WAS WRITTEN ANEW.";
  if (torn) text += "  AN UNFINISHED LINE WAS TAKEN OUT.";
  if (mending.added > 0) text += "  ROWS ADDED: " + PlainNumber(mending.added) + ".";
  if (mending.changed > 0) text += "  ROWS CHANGED: " + PlainNumber(mending.changed) + ".";
  if (mending.taken_out > 0) {
    text += "  LINES OF AN UNFINISHED END TAKEN OUT: " + PlainNumber(mending.taken_out) + ".";
  }
  return text;
}

/// What stands in the file; none if it is missing or can't be read.
std::optional<std::string> TextOfCpt() {
  std::optional<std::string> text;
  Trapped([&] {
    if (TheDisk().FileExists(PathOf(kCptFile))) text = ReadFile(PathOf(kCptFile));
  });
  return text;
}

/// The new place of the sounding's files; the recovery copy names it.
void MoveSounding(const std::string& main_file, StoredSounding& stored) {
  stored.main_file = main_file;
  stored.sound_text = main_file + stored.sound_text.substr(stored.sound_text.find("\r\n"));
  TakeSoundingPaths(main_file);
  ReplaceTemporary(stored.sound_text);
  StartFile(kTemporaryFile, stored.sound_text.size());
}

/// False when the operator wants no other place.
bool AskForOtherFolder(const std::string& why, StoredSounding& stored) {
  if (MsgBox("THE SOUNDING FILE CANNOT BE WRITTEN.  " + why +
                 "  DO YOU WANT TO CHOOSE ANOTHER "
                 "FOLDER?  IF 'NO', ITS ROWS ARE KEPT IN THE TEMPORARY DATA ALONE.",
             BoxButtons::YesNo) == BoxAnswer::No) {
    return false;
  }
  const auto chosen = AskFile("SOUNDING FILE", FolderOf(PathOf(kCptFile)), "*.cpt", true);
  if (chosen) MoveSounding(EndsWithNoCase(*chosen, ".cpt") ? *chosen : *chosen + ".cpt", stored);
  return true;
}

/// One attempt. A file whose lines are changed or that is no sounding's is kept beside.
void WriteMended(const std::optional<std::string>& text, const FoundCpt& found,
                 const CptMending& mending) {
  const std::string& path = PathOf(kCptFile);
  const bool loses = text && (!found.has_head || mending.changed > 0 || mending.taken_out > 0);
  if (loses) CopyFile(path, FreeNameBeside(path));
  ReplaceFile(path, mending.text);
}

void MendCptFile(StoredSounding& stored) {
  for (;;) {
    const auto text = TextOfCpt();
    const FoundCpt found = ReadCpt(text.value_or(""), stored.columns);
    sounding.RowForm = found.has_head ? found.form : FormOfSettings();
    KeepSignOfRows(found);
    FormDelays(found);
    const CptMending mending = MendCpt(found);
    try {
      if (text != mending.text) {
        WriteMended(text, found, mending);
        Tell(Mended(mending, found.has_head, found.is_torn));
      }
      if (found.has_head) TellOfHead(found);
      StartFile(kCptFile, mending.text.size());
      return;
    } catch (const RuntimeFault& fault) {
      if (AskForOtherFolder(fault.what(), stored)) continue;
      StartFile(kCptFile, mending.text.size());
      return;
    }
  }
}

// The time marks.

float SecondsNow() {
  return static_cast<float>(SecondsSinceMidnight(TheClock().Wall()));
}

void MendTimFile() {
  const std::string& path = PathOf(kTimFile);
  const bool told = !Trapped([&] {
    if (!TheDisk().FileExists(path)) {
      if (HasTimFile()) ReplaceFile(path, TimHeader(SecondsNow()));
    } else {
      const std::string text = ReadFile(path);
      const std::string whole = text.substr(0, text.rfind('\n') + 1);
      if (whole != text) ReplaceFile(path, whole);
    }
    if (TheDisk().FileExists(path)) StartFile(kTimFile, ReadFile(path).size());
  });
  if (told) Tell("THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN: " + path);
}

bool HasHeaderColumnOnly(int channel) {
  return channels.RecordMode(channel) == 3;
}

}  // namespace

FoundCpt ReadCpt(std::string_view text, const std::vector<int>& columns) {
  FoundCpt found;
  std::vector<std::string> lines = TakeLines(text);
  found.is_torn = !text.empty();
  if (lines.size() < kHeadLines) return found;
  found.form = FormOf(lines[0]);
  found.has_head =
      found.form != CptForm::OfSettings && WithoutEnd(lines[kNumberLine]) == NumberLineOf(columns);
  if (!found.has_head) return found;
  const std::string titles = WithoutEnd(lines[kTitleLine]);
  if (titles.size() > kBlanks) found.tip = Trim(titles.substr(kBlanks, kColumn));
  for (std::size_t i = 0; i < kHeadLines; ++i) found.head += lines[i];
  found.rows.assign(lines.begin() + kHeadLines, lines.end());
  return found;
}

CptMending MendCpt(const FoundCpt& found) {
  CptMending mending;
  mending.text = found.has_head ? found.head : CptHeader();
  std::size_t place = 0;
  for (std::int32_t newest = cone.DelayRows + 1; newest <= sounding.RowCount; ++newest, ++place) {
    const std::string expected = AlignedRow(newest);
    const bool stands = place < found.rows.size();
    if (stands && AgreesButForLastDigit(found.rows[place], expected, sounding.RowForm)) {
      mending.text += found.rows[place];
      continue;
    }
    mending.text += expected;
    ++(stands ? mending.changed : mending.added);
  }
  if (found.rows.size() > place) mending.taken_out = static_cast<int>(found.rows.size() - place);
  return mending;
}

void TakeUpSounding() {
  const std::string text = ReadFile(PathOf(kTemporaryFile));
  StoredSounding stored = ReadTemporaryData(text, HasHeaderColumnOnly, kMostRows);
  if (stored.done || !stored.unreadable.empty()) {
    throw RuntimeFault("TemporaryData.txt HAS CHANGED SINCE IT WAS READ.");
  }
  MarkComputedChannels();
  TakeColumns(stored);
  TakeGraphs(stored);
  MendTemporary(text, stored);
  MendCptFile(stored);
  MendTimFile();
}

}  // namespace penlog
