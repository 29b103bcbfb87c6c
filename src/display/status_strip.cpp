#include "display/status_strip.h"

#include <algorithm>

#include "conelink/cone_state.h"
#include "conelink/resync_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

bool RecordsIn(std::int16_t mode) {
  return mode == 2 || mode == 3 || mode == 4 || mode == 5 || mode == 8 || mode == 9;
}

std::string TwoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string NameOf(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

StripValues ValuesNow() {
  StripValues values;
  values.ConsoleMode = sounding.ConsoleMode;
  // A cone that is being brought back gives no row, and may repeat itself for ever.
  values.cone_lost =
      cone.ConeLinkUp != kTrue || cone.ConePortLost == kTrue || resync.UnderWay == kTrue;
  values.truck_lost = cone.TruckPortLost == kTrue;
  values.quit = sounding.QuitState == 1;
  values.ended = Main.frmTakeFinalBaseline.Visible || sounding.ExitUnderWay == kTrue;
  const bool lacks = sounding.ReadingsTaken < session.ReadingsAveraged;
  values.fills = status_strip.ResumeFills || (!session.ResumeConeId.empty() && lacks);
  values.RowCount = sounding.RowCount;
  values.RowsInMemory = LinesHeld(kTemporaryFile);  // else they can be resumed
  values.file = session.SoundingFiles[1];
  if (status_strip.LastRowAt >= 0) {
    values.last_row_age = (Now() - status_strip.LastRowAt) / kSecond;
  }
  return values;
}

/// Rows that a resume brings back were not taken now.
void NoteRows() {
  if (sounding.RowCount > status_strip.RowsSeen && IsRecording()) status_strip.LastRowAt = Now();
  status_strip.RowsSeen = sounding.RowCount;
}

void ColourState(StripState state) {
  const bool alarm = state == StripState::LinkLost || state == StripState::TruckLinkLost ||
                     state == StripState::LinksLost || state == StripState::StoppedByQuit;
  Main.lblState.BackColor = alarm ? kRed : state == StripState::Recording ? kGreen : kGrey;
}

/// What the cone told last is old: it stays readable, and looks so. No rows come: their age stands
/// on the alarm's ground, too.
void ShowAge(StripState state) {
  const bool cone_lost = state == StripState::LinkLost || state == StripState::LinksLost;
  for (int channel = 1; channel <= kChannels; ++channel) {
    Main.lblChanValue(channel).Enabled = !cone_lost;
  }
  Main.lblInclination.Enabled = !cone_lost;
  const bool lost = cone_lost || state == StripState::TruckLinkLost;
  Main.lblLastRow.BackColor = lost ? kRed : kGrey;
}

void Write(const StripTexts& texts) {
  Main.lblState.Caption = texts.state_word;
  ColourState(texts.state);
  ShowAge(texts.state);
  Main.lblRowsOnDisk.Caption = texts.rows_on_disk;
  Main.lblRowsHeld.Caption = texts.rows_held;
  Main.lblRowsHeldCaption.Visible = Main.lblRowsHeld.Visible = !texts.rows_held.empty();
  Main.lblSoundingFile.Caption = texts.file;
  Main.lblLastRow.Caption = texts.last_row;
  Main.lblStopKey.Visible = Main.cmdStart.Caption == "STOP" && Main.cmdStart.Enabled &&
                            !Main.frmTakeFinalBaseline.Visible;
}

}  // namespace

StripState StateOf(const StripValues& values) {
  if (values.ended) return StripState::Stopped;
  if (values.cone_lost && values.truck_lost) return StripState::LinksLost;
  if (values.cone_lost) return StripState::LinkLost;
  if (values.truck_lost) return StripState::TruckLinkLost;
  if (values.quit) return StripState::StoppedByQuit;
  const bool records = RecordsIn(values.ConsoleMode) && !values.fills;
  return records ? StripState::Recording : StripState::Waiting;
}

const char* WordOf(StripState state) {
  switch (state) {
    case StripState::Recording:
      return "RECORDING";
    case StripState::StoppedByQuit:
      return "STOPPED BY QUIT";
    case StripState::Stopped:
      return "STOPPED";
    case StripState::LinkLost:
      return "LINK LOST";
    case StripState::TruckLinkLost:
      return "TRUCK LINK LOST";
    case StripState::LinksLost:
      return "LINKS LOST";
    case StripState::Waiting:
      break;
  }
  return "WAITING";
}

std::string AgeText(std::int64_t seconds) {
  if (seconds < 0) return "-";
  if (seconds < 60) return std::to_string(seconds) + " s";
  const std::int64_t minutes = seconds / 60;
  if (minutes < 60) return std::to_string(minutes) + " min " + TwoDigits(seconds % 60) + " s";
  return std::to_string(minutes / 60) + " h " + TwoDigits(minutes % 60) + " min";
}

StripTexts MakeStripTexts(const StripValues& values) {
  StripTexts texts;
  texts.state = StateOf(values);
  texts.state_word = WordOf(texts.state);
  texts.rows_on_disk = std::to_string(std::max(0, values.RowCount - values.RowsInMemory));
  if (values.RowsInMemory > 0) texts.rows_held = std::to_string(values.RowsInMemory);
  texts.file = values.file.empty() ? "-" : NameOf(values.file);
  texts.last_row = AgeText(values.last_row_age);
  return texts;
}

void FollowStatusStrip() {
  NoteRows();
  const std::int64_t second = Now() / kSecond;
  const StripValues values = ValuesNow();
  if (second == status_strip.Second && StateOf(values) == status_strip.Shown) return;
  status_strip.Second = second;
  const StripTexts texts = MakeStripTexts(values);
  status_strip.Shown = texts.state;
  Write(texts);
}

}  // namespace penlog
