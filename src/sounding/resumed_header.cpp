#include "sounding/resumed_header.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/channels.h"
#include "core/error_trap.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "platform/boxes.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr std::size_t kWaterLine = 14;
constexpr std::size_t kBaselineLine = 17;

/// The others have the zero of the cone's record, which is not read for a missing channel.
bool KeepsSavedZero(int channel) {
  return channels.ChannelKeepZero(channel) != 0 || sounding.KeptColumn(channel) == kTrue;
}

/// Baselines that the recovery copy lost stand in the head, too. Where they stand nowhere the
/// record of the cone has them, which is not read for a missing channel.
void TakeLostBaselines(const FoundCpt& found, const StoredSounding& stored) {
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    const int channel = stored.columns[i];
    const auto zero = BaselineInHead(found, channel);
    if (stored.zeros[i]) continue;
    if (zero || sounding.KeptColumn(channel) != kTrue) {
      sounding.Rows(0, channel) = zero.value_or(channels.Baselines(channel));
    }
    if (!zero || !KeepsSavedZero(channel)) continue;
    channels.Baselines(channel) = *zero;
    resumed_zeros.Restored(channel) = kTrue;
  }
}

bool KnowsBaselines(const FoundCpt& found, const StoredSounding& stored) {
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    const int channel = stored.columns[i];
    const bool is_known =
        stored.zeros[i] || BaselineInHead(found, channel) || sounding.KeptColumn(channel) != kTrue;
    if (!is_known) return false;
  }
  return true;
}

/// Its end included.
std::size_t EndOfLine(std::string_view text, std::size_t number) {
  std::size_t end = 0;
  while (number-- > 0) end = text.find('\n', end) + 1;
  return end;
}

std::string LineOf(std::string_view text, std::size_t number) {
  const std::size_t from = EndOfLine(text, number - 1);
  return std::string(text.substr(from, EndOfLine(text, number) - from));
}

void PutLine(StoredSounding& stored, std::size_t number, const std::string& line) {
  const std::size_t begin = EndOfLine(stored.sound_text, number - 1);
  stored.sound_text.replace(begin, EndOfLine(stored.sound_text, number) - begin, line);
}

/// Line `number` of the copy's header, as it is written.
void WriteHeaderLine(StoredSounding& stored, std::size_t number) {
  PutLine(stored, number, LineOf(TemporaryHeader(stored.main_file), number));
}

/// The head has them from the company on, a line above. None where it is damaged, too.
std::optional<std::string> TextInHead(std::string_view head, std::size_t line) {
  const std::string text = FromFileBytes(LineOf(head, line - 1));
  const std::string whole = text.substr(0, text.find_last_not_of("\r\n") + 1);
  if (HasControlCharacter(whole)) return std::nullopt;
  if (line == kStoredDateLine && !IsStoredDate(whole)) return std::nullopt;
  return whole;
}

std::string& TextOfSession(std::size_t line) {
  const std::array<std::string*, 12> texts = {
      &session.SoundingName, &session.ResumeCompanyName, &session.OperatorName,
      &session.ResumeConeId, &session.SoundingLocation,  &session.JobNumber,
      &session.HoleNumber,   &session.SoundingDateTime,  &session.HeaderNote,
      &session.FooterNote1,  &session.FooterNote2,       &session.GPSPosition};
  return *texts[line - 2];
}

/// The cone is known since the sounding was read. Its name stands in no head.
std::optional<std::string> LostText(const FoundCpt& found, std::size_t line) {
  if (line == kStoredConeLine) return session.ResumeConeId;
  if (!found.has_head || line < 3) return std::nullopt;
  return TextInHead(found.head, line);
}

bool TakeTexts(const FoundCpt& found, StoredSounding& stored) {
  return std::erase_if(stored.lost_texts, [&](std::size_t line) {
           const auto text = LostText(found, line);
           if (!text) return false;
           stored.HeaderText(line) = TextOfSession(line) = *text;
           PutLine(stored, line, *text + "\r\n");
           return true;
         }) > 0;
}

bool TakeWaterTable(const FoundCpt& found, StoredSounding& stored) {
  const auto water_table = stored.loses_water_table ? WaterTableInHead(found) : std::nullopt;
  if (!water_table) return false;
  session.WaterTable = stored.water_table = *water_table;
  stored.loses_water_table = false;
  WriteHeaderLine(stored, kWaterLine);
  return true;
}

bool TakeBaselines(const FoundCpt& found, bool is_written, StoredSounding& stored) {
  TakeLostBaselines(found, stored);
  const bool loses = std::count(stored.zeros.begin(), stored.zeros.end(), std::nullopt) > 0;
  const bool is_settled = found.has_head || is_written;
  if (!loses || !is_settled || !KnowsBaselines(found, stored)) return false;
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    stored.zeros[i] = sounding.Rows(0, stored.columns[i]);
  }
  WriteHeaderLine(stored, kBaselineLine);
  return true;
}

/// The cone of a head that is the sounding's but for that; none where there is no such head.
std::optional<std::string> ConeInHead(StoredSounding& stored) {
  std::optional<std::string> cone;
  if (stored.LosesText(kStoredDateLine)) return cone;
  Trapped([&] {
    const std::string text = ReadSmallFile(stored.main_file);
    const auto named = TextInHead(text, kStoredConeLine);
    if (!named || Trim(*named).empty()) return;
    const std::string of_copy = std::exchange(stored.cone_id, *named);
    if (ReadCpt(text, stored).has_head) cone = *named;
    stored.cone_id = of_copy;
  });
  return cone;
}

bool IsConeOfHead(const std::string& of_copy, const std::string& of_head) {
  return MsgBox("THE TEMPORARY DATA OF THE LAST SOUNDING NAMES CONE #" + of_copy +
                    ", ITS SOUNDING FILE CONE #" + of_head +
                    ".  ONE OF THE TWO IS DAMAGED.  WAS THE SOUNDING TAKEN WITH CONE #" + of_head +
                    "?",
                BoxButtons::YesNo) == BoxAnswer::Yes;
}

/// Behind what is told of line 5.
void TellConeOfHead(StoredSounding& stored) {
  for (std::string& line : stored.damage) {
    if (line.starts_with("LINE 5:")) line += "; THE SOUNDING FILE NAMES " + stored.cone_id;
  }
}

}  // namespace

void TakeConeOfHead(StoredSounding& stored) {
  const auto of_head = ConeInHead(stored);
  if (stored.LosesText(kStoredConeLine)) {
    if (of_head) {
      stored.cone_id = *of_head;
      return TellConeOfHead(stored);
    }
    stored.unreadable = "LINE 5 NAMES NO CONE.  PLUG IN THE MEDIUM OF " + stored.main_file +
                        ", WHICH NAMES IT, OR WRITE THE CONE'S NUMBER INTO LINE 5, AND PRESS "
                        "RESUME LAST SOUNDING AGAIN";
    return;
  }
  if (!of_head || Trim(*of_head) == Trim(stored.cone_id)) return;
  if (IsConeOfHead(stored.cone_id, *of_head)) stored.cone_id = *of_head;
}

void KeepConeOfSession(StoredSounding& stored) {
  if (stored.cone_id == session.ResumeConeId) return;
  stored.cone_id = session.ResumeConeId;
  if (!stored.LosesText(kStoredConeLine)) stored.lost_texts.push_back(kStoredConeLine);
}

bool TakeLostHeaderLines(const FoundCpt& found, bool is_written, StoredSounding& stored) {
  const bool takes_texts = TakeTexts(found, stored);
  const bool takes_water_table = TakeWaterTable(found, stored);
  return TakeBaselines(found, is_written, stored) || takes_texts || takes_water_table;
}

}  // namespace penlog
