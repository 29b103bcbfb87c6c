#include "screens/typed_depth.h"

#include <cmath>

#include "core/feet.h"
#include "core/session.h"
#include "core/settings.h"
#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

bool IsNumberOrEmpty(const std::string& text) {
  std::string typed = LocaleNumberText(Trim(text), session.CommaDecimal == 1);
  for (char& c : typed) {
    if (c == ',' && session.CommaDecimal == 1) c = '.';
  }
  return typed.empty() || WholeSingleText(typed).has_value();
}

float DepthOfText(const std::string& text) {
  double depth = LocaleNumber(text, session.CommaDecimal == 1);
  if (settings.DepthUnits == 1) depth /= kFeetPerMetreTyped;
  if (settings.DepthFormat == 1) depth = 0 - depth;
  return static_cast<float>(depth);
}

std::string TextOfDepth(float depth) {
  double shown = settings.DepthUnits == 1 ? depth * kFeetPerMetreTyped : depth;
  if (settings.DepthFormat == 1) shown = 0 - shown;
  return PlainNumber(static_cast<float>(std::round(shown * 1000) / 1000));
}

}  // namespace penlog
