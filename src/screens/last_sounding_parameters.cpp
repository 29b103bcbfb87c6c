#include "screens/last_sounding_parameters.h"

#include <algorithm>
#include <cmath>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "display/display_state.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/texts.h"
#include "platform/value_reader.h"
#include "platform/value_writer.h"

namespace penlog {

namespace {

constexpr const char* kFileName = "Last Sounding Parameters.txt";

bool HasRecordChoice(int channel) {
  return channel != 19 && channel != 20;
}

void TakeRecordChoices(bool (*ticked)(int channel)) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!HasRecordChoice(channel)) continue;
    auto& mode = channels.RecordMode(channel);
    if (mode != 2) mode = ticked(channel) ? 1 : 0;
  }
  FormDelayRows();
}

constexpr std::int16_t kNoChoice = -1;

/// The next choice, 0 to `largest`; `kNoChoice` for anything else: a comma in a text above shifts
/// texts down to here.
std::int16_t ReadChoice(ValueReader& reader, int largest) {
  const double number = WholeNumberText(reader.ReadString()).value_or(kNoChoice);
  const bool known = number >= 0 && number <= largest && number == std::floor(number);
  return known ? static_cast<std::int16_t>(number) : kNoChoice;
}

void ReadChoices(ValueReader& reader) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!HasRecordChoice(channel)) continue;
    const auto choice = ReadChoice(reader, 1);
    auto& mode = channels.RecordMode(channel);
    if (mode != 2 && choice != kNoChoice) mode = choice;
  }
  for (std::size_t g = 1; g <= 4; ++g) {
    const auto channel = ReadChoice(reader, kChannels);
    display.GraphChannel[g] = channel != kNoChoice ? channel : std::int16_t{0};
  }
}

}  // namespace

void FormDelayRows() {
  cone.DelayRows = 0;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!HasRecordChoice(channel) || channels.RecordMode(channel) <= 0) continue;
    cone.DelayRows = std::max(cone.DelayRows, channels.ChannelDelayRows(channel));
  }
}

std::string LastSoundingParametersPath() {
  return JoinPath(session.DataDirectory, kFileName);
}

void SaveLastSoundingParameters(bool (*ticked)(int channel)) {
  TakeRecordChoices(ticked);
  ValueWriter writer;
  for (const std::string* line :
       {&session.LastDirectory, &session.LastDrive, &session.SoundingName, &cone.ConeId,
        &session.OperatorName, &session.SoundingLocation, &session.JobNumber, &session.HoleNumber,
        &session.HeaderNote, &session.FooterNote1, &session.FooterNote2}) {
    writer.PrintLine(*line);
  }
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!HasRecordChoice(channel)) continue;
    const int mode = channels.RecordMode(channel);
    writer.PrintNumberLine(mode);
  }
  for (std::size_t g = 1; g <= 4; ++g) writer.PrintNumberLine(int{display.GraphChannel[g]});
  ReplaceFile(LastSoundingParametersPath(), writer.Text());
}

void LoadLastSoundingParameters() {
  ValueReader reader(kFileName, ReadFile(LastSoundingParametersPath()));
  session.LastDirectory = reader.ReadString();
  session.LastDrive = reader.ReadString();
  session.SoundingName = reader.ReadString();
  const std::string cone_id = reader.ReadString();
  for (std::string* field :
       {&session.OperatorName, &session.SoundingLocation, &session.JobNumber, &session.HoleNumber,
        &session.HeaderNote, &session.FooterNote1, &session.FooterNote2}) {
    *field = reader.ReadString();
  }
  if (cone_id == Trim(cone.ConeId)) ReadChoices(reader);  // read without blanks at its ends
}

void RemoveResisitivityFromGraphChannels() {
  auto& slots = display.GraphChannel;
  const auto end = std::remove(slots.begin() + 1, slots.end(), std::int16_t{14});
  std::fill(end, slots.end(), std::int16_t{0});
}

}  // namespace penlog
