#include "sounding/repeated_reading.h"

#include <cmath>

#include "core/settings.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kLongEnough = 3 * kSecond;
constexpr const char* kNotice = "COMM ERR: cone repeats";

void TakeBack() {
  if (Main.lblCommError.Caption == kNotice) Main.lblCommError.Caption.clear();
}

}  // namespace

void NoteReply(const std::string& reply) {
  if (reply != repeated_reading.Reply || reply.empty()) {
    if (repeated_reading.IsTold) TakeBack();
    repeated_reading = {reply, Now(), sounding.CurrentDepth, false};
    return;
  }
  if (repeated_reading.IsTold || Now() - repeated_reading.Since < kLongEnough) return;
  // A rod at rest may give one reading for long.
  if (std::abs(sounding.CurrentDepth - repeated_reading.Depth) < settings.DepthStep) return;
  repeated_reading.IsTold = true;
  Main.lblCommError.Caption = kNotice;
}

}  // namespace penlog
