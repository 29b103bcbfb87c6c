#include "platform/qt/look.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "forms/notice_colours.h"

namespace penlog {

namespace {

/// For the sun: dark on bright, no greys between.
LookColours Day() {
  LookColours look;
  look.ground = QColor(0xe9, 0xed, 0xf0);
  look.panel = QColor(0xf7, 0xf9, 0xfa);
  look.raised = QColor(0xcf, 0xd8, 0xdf);
  look.line = QColor(0x7b, 0x89, 0x95);
  look.text = QColor(0x0b, 0x11, 0x16);
  look.caption = QColor(0x33, 0x40, 0x4a);
  look.faint = QColor(0x56, 0x62, 0x6c);
  look.field = QColor(0xff, 0xff, 0xff);
  look.readout_ground = QColor(0xff, 0xff, 0xff);
  look.readout_text = QColor(0x00, 0x00, 0x00);
  look.accent = QColor(0x0b, 0x57, 0xa4);
  look.on_accent = QColor(0xff, 0xff, 0xff);
  look.alarm = QColor(0xb0, 0x00, 0x1b);
  look.on_alarm = QColor(0xff, 0xff, 0xff);
  look.red_text = QColor(0xa8, 0x0f, 0x22);
  look.red_mark = QColor(0xc0, 0x30, 0x00);
  look.good = QColor(0x0a, 0x68, 0x33);
  look.on_good = QColor(0xff, 0xff, 0xff);
  look.lit = QColor(0x82, 0x4d, 0x00);
  look.on_lit = QColor(0xff, 0xff, 0xff);
  look.blue_mark = QColor(0x0a, 0x4f, 0xb8);
  look.cyan_mark = QColor(0x00, 0x64, 0x75);
  return look;
}

/// For the dark: nothing glares, white is not used.
LookColours Night() {
  LookColours look;
  look.ground = QColor(0x0e, 0x12, 0x15);
  look.panel = QColor(0x15, 0x1b, 0x20);
  look.raised = QColor(0x24, 0x2d, 0x35);
  look.line = QColor(0x4a, 0x59, 0x64);
  look.text = QColor(0xd5, 0xdb, 0xdf);
  look.caption = QColor(0xa6, 0xb3, 0xbd);
  look.faint = QColor(0x86, 0x93, 0x9d);
  look.field = QColor(0x09, 0x0c, 0x0f);
  look.readout_ground = QColor(0x04, 0x05, 0x06);
  look.readout_text = QColor(0xe6, 0xe6, 0xdc);
  look.accent = QColor(0x4c, 0xa6, 0xea);
  look.on_accent = QColor(0x04, 0x09, 0x0d);
  look.alarm = QColor(0xb3, 0x1f, 0x2b);
  look.on_alarm = QColor(0xff, 0xf4, 0xf2);
  look.red_text = QColor(0xff, 0x7d, 0x73);
  look.red_mark = QColor(0xff, 0x8c, 0x5e);
  look.good = QColor(0x35, 0xc4, 0x77);
  look.on_good = QColor(0x03, 0x12, 0x0a);
  look.lit = QColor(0xf0, 0xb4, 0x3c);
  look.on_lit = QColor(0x14, 0x0c, 0x00);
  look.blue_mark = QColor(0x6d, 0xb3, 0xff);
  look.cyan_mark = QColor(0x4f, 0xd6, 0xe0);
  return look;
}

/// Of one of red, green and blue as light.
double Linear(double channel) {
  return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

/// A colour that no role knows keeps its hue.
QColor OfItsOwn(Colour colour) {
  return StandingOut(QColor(colour.red, colour.green, colour.blue), Look().readout_ground);
}

template <std::size_t kCount>
QColor Mapped(Colour colour, const std::pair<Colour, QColor> (&known)[kCount]) {
  for (const auto& [named, shown] : known) {
    if (named == colour) return shown;
  }
  return OfItsOwn(colour);
}

}  // namespace

const LookColours& LookOf(LookSet set) {
  static const LookColours day = Day();
  static const LookColours night = Night();
  return set == LookSet::Day ? day : night;
}

const LookColours& Look() {
  return LookOf(ChosenLook());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor StandingOut(QColor colour, const QColor& ground) {
  const bool darker = Luminance(ground) > 0.18;  // there is more room below than above
  while (Contrast(colour, ground) < kLeastContrast) {
    float hue = 0, saturation = 0, lightness = 0;
    colour.getHslF(&hue, &saturation, &lightness);
    const float next = lightness + (darker ? -0.02f : 0.02f);
    if (next < 0 || next > 1) break;
    colour = QColor::fromHslF(std::max(hue, 0.0f), saturation, next);
  }
  return colour;
}

QColor Shown(Colour colour) {
  const LookColours& look = Look();
  const std::pair<Colour, QColor> known[] = {
      {kBlack, look.readout_text}, {kWhite, look.readout_text}, {kRed, look.red_mark},
      {kGreen, look.good},         {kBlue, look.blue_mark},     {kCyan, look.cyan_mark},
      {kGrey, look.caption},       {kAmber, look.lit}};
  return Mapped(colour, known);
}

QColor TextColour(Colour colour) {
  const LookColours& look = Look();
  const std::pair<Colour, QColor> known[] = {
      {kBlack, look.text}, {kWhite, look.readout_text}, {kRed, look.red_text}};
  for (const auto& [named, shown] : known) {
    if (named == colour) return shown;
  }
  return Shown(colour);
}

QColor GroundColour(Colour colour) {
  const LookColours& look = Look();
  const std::pair<Colour, QColor> known[] = {
      {kBlack, look.readout_ground}, {kWhite, look.field}, {kRed, look.alarm}, {kGreen, look.good},
      {kBlue, look.accent},          {kGrey, look.panel},  {kAmber, look.lit}};
  for (const auto& [named, shown] : known) {
    if (named == colour) return shown;
  }
  return {colour.red, colour.green, colour.blue};
}

QColor TextOn(Colour ground, Colour colour) {
  if (ground == kRed) return Look().on_alarm;
  if (ground == kGreen) return Look().on_good;
  if (ground == kBlue) return Look().on_accent;
  if (ground == kAmber) return Look().on_lit;
  if (ground == kBlack || ground == kWhite || ground == kGrey) return TextColour(colour);
  return StandingOut(TextColour(colour), GroundColour(ground));
}

int Scaled(double pixels, double scale) {
  return std::max(pixels > 0 ? 1 : 0, static_cast<int>(std::lround(pixels * scale)));
}

const std::vector<int>& LookGaps() {
  static const std::vector<int> gaps = {0, 1, 2, 3, 4, 6, 8, 10, 12, 14, 16};
  return gaps;
}

}  // namespace penlog
