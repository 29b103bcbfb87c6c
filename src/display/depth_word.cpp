#include "display/depth_word.h"

#include "forms/main_form.h"

namespace penlog {

void NoteDepthStep(DepthStepKind step) {
  if (step == DepthStepKind::None) return;
  depth_word = {step, Now()};
  FollowDepthWord();
}

void FollowDepthWord() {
  if (Now() - depth_word.StepAt >= kStillAfter) depth_word.Last = DepthStepKind::None;
  const char* word = depth_word.Last == DepthStepKind::Down ? "DOWN"
                     : depth_word.Last == DepthStepKind::Up ? "UP"
                                                            : "STILL";
  if (Main.shpDepth.Caption != word) Main.shpDepth.Caption = word;
}

}  // namespace penlog
