#include "sounding/reading_cycle.h"

#include <cmath>

#include "conelink/cone_state.h"
#include "conelink/main_exchange.h"
#include "conelink/value_coding.h"
#include "core/channels.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "sounding/reading_values.h"
#include "sounding/repeated_reading.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kMostTries = 10;
constexpr int kLongestWindow = 10;

bool IsDamaged(const std::string& reply) {
  return reply.find_first_of("\r\n") != reply.npos;
}

bool HasNoSelection(const std::string& reply) {
  return !reply.empty() && reply.front() == '?';
}

/// The cone's own reply; false when it was damaged ten times, or when the cone stays without a
/// selection: that is no reading, and must not be taken for one of zeros. The link then counts as
/// lost, or row after row would repeat the last readings without a word.
bool AskCone(std::string& reply) {
  for (int tries = 1;; ++tries) {
    reply = Main_CommStringCheck("D");
    if (HasNoSelection(reply)) {
      Main_CommPause();
      Main_CommStringCheck(cone.ChannelSelectCommand);
      reply = Main_CommStringCheck("D");
      if (HasNoSelection(reply)) {
        LoseReading();
        return false;
      }
    }
    if (!IsDamaged(reply)) return true;
    if (tries == kMostTries) return false;
    Main_CommPause();
  }
}

std::string AskModule(std::size_t module) {
  const std::string command = "D" + PlainNumber(static_cast<int>(module));
  std::string answer = Main_CommStringCheck(command);
  if (answer != "?") return answer;
  Main_CommStringCheck(cone.ModuleSelectCommand[module]);
  return Main_CommStringCheck(command);
}

std::string& FieldOf(int channel) {
  const int place = channels.ReplyField(channel);
  if (place < 0 || place > kChannels) {
    throw RuntimeFault("Subscript out of range: reply field " + PlainNumber(place));
  }
  return sounding.ReplyTokens[static_cast<std::size_t>(place)];
}

bool Fetch() {
  std::string reply;
  if (!AskCone(reply)) return false;
  NoteReply(reply);
  for (std::size_t module = 1; module < cone.ModulePresent.size(); ++module) {
    if (cone.ModulePresent[module] != kTrue) continue;
    reply += ModuleReplyText(AskModule(module), FieldOf(7));
  }
  SplitConeReply(reply, sounding.ReplyTokens);
  return true;
}

void ClearQuitFlags() {
  for (int channel = 1; channel <= kChannels; ++channel) sounding.QuitFlag(channel) = kFalse;
}

/// While the restart test runs: tip and sleeve alone, without an average.
void TakeRestartTestReadings() {
  sounding.Readings(1) = ParseSingle(sounding.ReplyTokens[1]);
  sounding.Readings(2) = ParseSingle(sounding.ReplyTokens[2]);
  if (channels.SubtractChannel(2) > 0) {
    sounding.Readings(2) -=
        (sounding.Readings(1) - channels.Baselines(1)) * channels.SubtractFactor(2);
  }
}

float SampleOf(int channel) {
  if (channel != 14) return ParseSingle(FieldOf(channel));
  // A power without a value keeps the last sample, as a failed statement would.
  return TemperatureSample(FieldOf(channel)).value_or(LastSample(channel));
}

void ShowValue(int channel, float value) {
  const std::string& pattern = channels.UnitFormat(channels.ChannelUnits(channel), channel);
  Main.lblChanValue(channel).Caption = Format(value, pattern);
}

void ShowChannel(int channel) {
  const int subtracted = channels.SubtractChannel(channel);
  float& reading = sounding.Readings(channel);
  if (subtracted == 0) {
    const float ball = channel == 1 ? BallFactor() : 1.0f;
    ShowValue(channel, EngineeringValue(channel, reading) * ball);
  } else if (subtracted > 0) {
    reading -= SubtractedLoad(channel);
    ShowValue(channel, EngineeringValue(channel, reading));
  }
}

/// Place of the bubble in the level, as a fraction: it rises against the tilt.
double BubblePlace(int channel, double bubble) {
  const double tilt = static_cast<double>(channels.Baselines(channel)) -
                      static_cast<double>(sounding.Readings(channel));
  const double sensitivity = channels.ChannelSensitivity(channel);
  return (tilt / sensitivity + 1.0 - bubble) * 0.5;
}

void MoveBubble(int channel) {
  Place& bubble = Main.shpBubble.Where;
  const double place = BubblePlace(channel, channel == 6 ? bubble.width : bubble.height);
  if (!std::isfinite(place)) return;
  (channel == 6 ? bubble.left : bubble.top) = place;
  // The level of the calibration check moves here too once its screen stands.
}

bool IsRead(int channel) {
  return channels.ChannelComputed(channel) == 0 && channels.ChannelPresent(channel) == kTrue &&
         channel != 8 && channel != 9;
}

void TakeChannel(int channel) {
  sounding.Readings(channel) = AverageWith(channel, SampleOf(channel));
  ShowChannel(channel);
  if (channel == 6 || channel == 7) MoveBubble(channel);
}

void TakeDerived() {
  auto& readings = sounding.Readings;
  readings(19) = InclinationOf(readings(6), readings(7));
  Main.lblInclination.Caption = FormatText(Format(readings(19), "#0.00"), "@@@@@") + " deg";
  if (const auto ratio = FrictionRatioOf(readings(1), readings(2))) readings(20) = *ratio;
  const SoilTypeAndN found =
      SoilIsWanted() ? SoilOf(readings(1), readings(2), readings(3)) : SoilTypeAndN{};
  readings(21) = found.zone;
  readings(22) = found.n;
}

}  // namespace

std::string ModuleReplyText(const std::string& answer, const std::string& previous) {
  if (answer.empty()) return " " + previous + " ";
  return answer.substr(1) + " ";
}

void TakeReadings() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (IsRead(channel) && cone.ConeLinkUp == kTrue) TakeChannel(channel);
  }
  if (cone.ConeLinkUp == kTrue) {
    sounding.ReadingsFresh = kTrue;
    if (sounding.ReadingsTaken < kLongestWindow) ++sounding.ReadingsTaken;
  }
  // The continuous ASCII line goes out here once its output stands.
  TakeDerived();
}

void GetConeData() {
  ClearQuitFlags();
  if (!Fetch()) return;
  if (sounding.RestartTestActive == kTrue) {
    TakeRestartTestReadings();
  } else {
    TakeReadings();
  }
}

}  // namespace penlog
