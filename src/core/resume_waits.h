// Whether a resume from the surface is under way.
#pragma once

#include "core/session.h"

namespace penlog {

/// The depth counts on and no row is recorded yet, until the operator tells that it is reached. It
/// holds from the press on RESUME AT SURFACE on, before the console stands, too.
inline bool ResumeWaits() {
  return session.ResumeDepthStatus == 1.0F;
}

}  // namespace penlog
