#include "sounding/recording_pass.h"

#include <algorithm>
#include <string>

#include "conelink/cone_state.h"
#include "conelink/main_exchange.h"
#include "conelink/other_cone.h"
#include "conelink/port_supervision.h"
#include "conelink/resync.h"
#include "conelink/value_coding.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/enlarged_graph.h"
#include "display/graph_data.h"
#include "forms/enlarged_graph_form.h"
#include "platform/boxes.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "sounding/distance_pushed.h"
#include "sounding/quits.h"
#include "sounding/reading_cycle.h"
#include "sounding/record_grid.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"

namespace penlog {

namespace {

constexpr float kFirstMetre = 1.0f;  ///< no quits in it
constexpr float kFiveMetres = 5.0f;
constexpr double kMostDistancePushed = 262143;  ///< 18 bits

float Pushed() {
  return sounding.CurrentDepth - session.StartDepth;
}

void SendRestartTestCommand() {
  if (sounding.RestartCommandPending != kTrue) return;
  Main_CommStringCheck(cone.ReducedSelectCommand);
  Main_CommPause();
  GetConeData();
  sounding.RestartCommandPending = 0;
}

void WatchDepth() {
  if (Pushed() > kFiveMetres && sounding.FiveMetreWord == 0) sounding.FiveMetreWord = 1;
  if (Pushed() > kFirstMetre && settings.QuitsActive == 1) CheckQuits();
}

/// The cone must give a new reading before it is tested again, or a link that was brought back
/// would go down at once on the readings of before, for ever.
void TakeLinkDown() {
  cone.ConeLinkUp = kFalse;
  sounding.ReadingsFresh = kFalse;
}

}  // namespace

void TakeDueRow() {
  if (sounding.RecordPending != kTrue || sounding.RestartTestActive != 0) return;
  if (sounding.ReadingsFresh != kTrue) return;  // of before a loss: it waits for the next reading
  // A resume whose averages could not be filled: a row would hold a part of the truth.
  const bool resumed = !session.ResumeConeId.empty();
  if (resumed && sounding.ReadingsTaken < session.ReadingsAveraged) return;
  sounding.RecordPending = 0;  // first: a row that fails must not be taken twice
  if (sounding.RowCount >= kMostRows) {
    sounding.TableFull = kTrue;
    TellOnce(
        "THE SOUNDING HOLDS 10000 ROWS, AND THERE IS NO ROOM FOR MORE.  ROWS SO FAR ARE KEPT.  "
        "STOP THE SOUNDING AND START A NEW ONE.");
    RedrawDueGraphs();  // a range that was set by hand
    return;
  }
  ++sounding.RowCount;
  RecordRow();
  GraphData();
  if (EnlargedGraph.Visible) EnlargedGraph_Graph();
}

bool ReadingsAreStale() {
  if (sounding.RowCount <= 1 || sounding.ReadingsFresh != kTrue) return false;
  const std::int32_t row = sounding.RowCount - 1;
  return sounding.Readings(1) == sounding.Rows(row, 2) &&
         sounding.Readings(2) == sounding.Rows(row, 2) &&
         sounding.Readings(3) == sounding.Rows(row, 3);
}

void WriteDistancePushed() {
  if (cone.DistancePushedPending != kTrue) return;
  cone.DistancePushedPending = 0;
  if (IsOtherCone()) {
    PostBox("THE DISTANCE PUSHED IS NOT WRITTEN: ANOTHER CONE IS CONNECTED THAN #" +
            RecordedConeNumber());
    return;
  }
  const double distance = IntPart(static_cast<double>(cone.DistancePushed));
  if (!(distance >= 0 && distance <= kMostDistancePushed)) {
    PostBox("THE DISTANCE PUSHED, " + PlainNumber(distance) +
            ", IS NOT WRITTEN TO THE CONE: IT HOLDS 0 TO 262143.");
    return;
  }
  auto value = static_cast<float>(distance);
  const std::string reply = Main_CommStringCheck("W 22 3 " + SingleToBinary(value, 3));
  if (!reply.empty()) NoteDistanceAdded();
}

void RecordingPass() {
  Step(SendRestartTestCommand);
  Step(WatchDepth);
  // The restart test's bookkeeping follows here once it stands.
  Step(TakeDueRow);
  // The labels of the dissipation's screen and its next reading follow here once they stand.
  if (ReadingsAreStale()) TakeLinkDown();
  Step(GetConeData);
  Step(WriteDistancePushed);
}

void LostLinkPass() {
  ResyncConeData();
  if (cone.ConeLinkUp != kTrue) return;
  sounding.ReadingsFresh = kFalse;
  // Stopped meanwhile: a final baseline waits until none of before the loss is averaged in.
  if (sounding.ConsoleMode != 2) sounding.ReadingsTaken = 0;
  // The seismic screen gets its buttons back here once it stands.
  sounding.NextRecordCount =
      NextRecordOnGrid(sounding.DepthCounts, std::max<std::int32_t>(settings.DepthStepCounts, 1),
                       sounding.NextRecordCount);
  ShowConeConnected();
}

}  // namespace penlog
