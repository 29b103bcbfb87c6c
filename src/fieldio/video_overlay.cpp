#include "fieldio/video_overlay.h"

#include "conelink/cone_state.h"
#include "core/feet.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kCameraOffset = 0.75f;  // m above the tip
constexpr int kDepthEnd = 36;           // first column behind the depth
constexpr int kDepthRow = 15;
constexpr int kPagePauses = 10;
constexpr std::size_t kDateCharacters = 10;  // "yyyy-mm-dd"

/// The open port that carries the overlay; none if there is none. A truck interface on the cone's
/// own port has no line for the board: the cone would take its texts for commands.
SerialPort* OverlayPort() {
  SerialPort* port = nullptr;
  if (settings.LumenProbePresent == 1) port = &Main.VideoOverlayComm;
  if (settings.LumenProbePresent == 2) port = &Main.EncoderComm;
  return port != nullptr && port->PortOpen() ? port : nullptr;
}

}  // namespace

std::string OverlayCursor(int column, int row) {
  return "{C" + Format(column, "00") + Format(row, "00");
}

std::string OverlayDepth(float depth, int depth_units) {
  const float camera = depth - kCameraOffset;
  return Format(depth_units == 0 ? camera : camera * kFeetPerMetre, "000.00");
}

std::vector<PacedText> OverlayDepthTexts(float depth, int depth_units) {
  const std::string text = OverlayDepth(depth, depth_units);
  const int column = kDepthEnd - static_cast<int>(text.size());
  return {{OverlayCursor(column, kDepthRow)}, {text}};
}

std::vector<PacedText> OverlayScreen(const OverlayTexts& texts) {
  std::vector<PacedText> screen = {
      {"{R"},
      {"{F0"},
      {"{MF", kPagePauses},
      {"{ML", kPagePauses},
      {"{F4"},
      {"{A17"},
      {OverlayCursor(1, 1)},
      {"Sounding: " + texts.sounding_name},
      {OverlayCursor(1, kDepthRow)},
      {texts.date},
      {OverlayCursor(kDepthEnd + 1, kDepthRow)},
      {texts.depth_units == 0 ? "m" : "ft"},
  };
  if (!texts.depth) return screen;
  for (PacedText& text : OverlayDepthTexts(*texts.depth, texts.depth_units)) {
    screen.push_back(std::move(text));
  }
  return screen;
}

OverlayTexts TextsOfTheSounding() {
  OverlayTexts texts;
  texts.sounding_name = session.SoundingName;
  texts.date = DateTimeText(TheClock().Wall()).substr(0, kDateCharacters);
  texts.depth_units = settings.DepthUnits;
  if (!cone.ConeId.empty()) texts.depth = sounding.CurrentDepth;
  return texts;
}

PacedOutput& OverlayOutput() {
  static PacedOutput& output = *new PacedOutput("overlay");
  return output;
}

void ResendOverlayScreen(bool with_depth) {
  SerialPort* const port = OverlayPort();
  if (port == nullptr) return OverlayOutput().Drop();
  OverlayTexts texts = TextsOfTheSounding();
  if (!with_depth) texts.depth.reset();
  OverlayOutput().Send(*port, OverlayScreen(texts));
}

}  // namespace penlog
