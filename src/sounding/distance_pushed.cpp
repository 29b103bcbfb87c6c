#include "sounding/distance_pushed.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/resume_waits.h"
#include "core/session.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

/// It stands beside the recovery copy.
std::string PathOfNote() {
  return JoinPath(FolderOf(session.SoundingFiles[0]), "Distance Pushed.txt");
}

/// The lines that tell whose distance it is.
std::string HeadOfNote() {
  return std::string(Trim(session.SoundingDateTime)) + "\r\n" + cone.ConeId + "\r\n";
}

/// None where nothing is known of the sounding.
std::optional<float> AddedBefore() {
  std::optional<float> added;
  Trapped([&] {
    const std::string text = ReadFile(PathOfNote());
    const std::string head = HeadOfNote();
    if (text.starts_with(head)) added = WholeSingleText(std::string_view(text).substr(head.size()));
  });
  return added;
}

/// The rods that are on their way down have pushed the cone to the last row before.
float DepthPushed() {
  if (!ResumeWaits()) return sounding.CurrentDepth;
  return std::max(sounding.CurrentDepth, sounding.Rows(sounding.RowCount, 0));
}

}  // namespace

float DistanceToAdd() {
  const auto added = AddedBefore();
  return added ? std::max(DepthPushed() - *added, 0.0f) : DepthPushed();
}

void AddDistancePushed() {
  distance_pushed.Depth = DepthPushed();
  distance_pushed.WaitingPassSends = ResumeWaits() ? kTrue : kFalse;
  cone.DistancePushed += DistanceToAdd();
  cone.DistancePushedPending = kTrue;
}

void NoteDistanceAdded() {
  const auto all = static_cast<double>(cone.DistancePushed);
  const auto rest = static_cast<float>(all - IntPart(all));  // the cone holds whole metres
  const float now = distance_pushed.Depth - rest;
  const float added = std::max(now, AddedBefore().value_or(now));
  try {
    ReplaceFile(PathOfNote(), HeadOfNote() + Format(added, "0.000") + "\r\n");
  } catch (const RuntimeFault& fault) {
    PostBox("THE CONE HAS ITS DISTANCE PUSHED, BUT THAT COULD NOT BE NOTED.  " +
            std::string(fault.what()) +
            ".  IF THE SOUNDING IS RESUMED AND STOPPED AGAIN, ITS DEPTH IS ADDED ONCE MORE.");
  }
}

}  // namespace penlog
