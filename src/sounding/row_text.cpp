#include "sounding/row_text.h"

#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/temporary_data.h"
#include "display/display_state.h"
#include "platform/numbers.h"
#include "platform/value_writer.h"
#include "sounding/reached.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kColumn = 20;             ///< characters of a channel's column
constexpr float kCameraOffset = 0.75f;  ///< m from the tip to the camera
const std::string kLineEnd = "\r\n";
const std::string kHead(13, ' ');  ///< depth and speed take 13 characters

bool IsListed(int channel) {
  return channels.RecordMode(channel) > 0 &&
         (channels.ChannelPresent(channel) == kTrue || sounding.KeptColumn(channel) == kTrue);
}

bool IsInclinationOrRatio(int channel) {
  return channel == 19 || channel == 20;
}

template <class Text>
std::string HeaderColumns(Text text) {
  std::string line = kHead;
  for (const int channel : HeaderChannels()) line += RightField(text(channel), kColumn);
  return line;
}

std::string Value(float raw) {
  return RightField(Format(raw, "####0.00000"), kColumn);
}

std::string NotReached() {
  return RightField(PlainNumber(kNotReached), kColumn);
}

bool IsNewForm() {
  if (sounding.RowForm != CptForm::OfSettings) return sounding.RowForm == CptForm::New;
  return settings.DepthSignificantDigits > 2;
}

float CptDepth(std::int32_t row) {
  const float depth = sounding.Rows(row, 0);
  return settings.DepthFormat == 1 ? -depth : depth;
}

/// 13 characters in each form; a longer depth is not cut.
std::string DepthAndSpeed(float depth, float speed) {
  if (IsNewForm()) {
    return RightField(Format(depth, "##0.000"), 7) + RightField(Format(speed, "##0.00"), 6);
  }
  return RightField(Format(depth, "##0.00"), 6) + RightField(Format(speed, "##0.00"), 7);
}

/// A text typed by the operator stays one line.
std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return text;
}

std::string NumberLine() {
  return HeaderColumns([](int channel) { return PlainNumber(channel); });
}

/// After a resume the zeros that the sounding was begun with, not those of the cone's record.
float FirstBaseline(int channel) {
  return session.ResumeConeId.empty() ? channels.Baselines(channel) : sounding.Rows(0, channel);
}

std::string BaselineLine() {
  return HeaderColumns([](int channel) { return Format(FirstBaseline(channel), "####0.00000"); });
}

std::string FullScaleText(int channel) {
  return PlainNumber(channels.ChannelFullScale(channel)) + " " + channels.UnitLabel(1, channel);
}

std::string SelectedUnit(int channel) {
  return channels.UnitLabel(channels.ChannelUnits(channel), channel);
}

std::string SelectedFactor(int channel) {
  return PlainNumber(channels.UnitFactor(channels.ChannelUnits(channel), channel));
}

void PrintTexts(ValueWriter& file, std::initializer_list<const std::string*> texts) {
  for (const std::string* text : texts) file.PrintLine(OneLine(*text));
}

/// What both headers tell of the sounding, up to its water table.
void PrintSounding(ValueWriter& file) {
  const bool resumed = !session.ResumeConeId.empty();
  const std::string cone_number = RecordedConeNumber();
  PrintTexts(file,
             {resumed ? &session.ResumeCompanyName : &settings.CompanyName, &session.OperatorName,
              &cone_number, &session.SoundingLocation, &session.JobNumber, &session.HoleNumber,
              &session.SoundingDateTime, &session.HeaderNote, &session.FooterNote1,
              &session.FooterNote2, &session.GPSPosition});
  file.PrintNumberLine(session.WaterTable);
}

std::string Quoted(const std::string& text) {
  return '"' + text + '"';
}

}  // namespace

std::vector<int> HeaderChannels() {
  std::vector<int> list;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!IsInclinationOrRatio(channel) && IsListed(channel)) list.push_back(channel);
  }
  return list;
}

std::vector<int> RowChannels() {
  std::vector<int> list;
  for (const int channel : FlushChannels(false)) {
    if (channel != 21 && channel != 22) list.push_back(channel);
  }
  return list;
}

std::vector<int> FlushChannels(bool with_derived) {
  std::vector<int> list;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (IsInclinationOrRatio(channel) && !with_derived) continue;
    if (IsListed(channel) && channels.RecordMode(channel) != 3) list.push_back(channel);
  }
  return list;
}

std::string ColumnTitle(int channel) {
  const std::string& label = channels.ChannelLabel(0, channel);
  if (channel != 1 || settings.TipConfiguration != 1) return label;
  return label + " BALL D mm " + RightField(PlainNumber(int{settings.TipDiameter}), 3);
}

std::string RowValue(std::int32_t row, int channel) {
  const float raw = sounding.Rows(row, channel);
  return IsReached(raw) ? Value(raw) : NotReached();
}

std::string CptHeader() {
  ValueWriter file;
  file.PrintLine(IsNewForm() ? "KQ Sounding File ver. 2015.07.02.1" : "Dravenholtz Sounding File");
  PrintSounding(file);
  file.PrintLine("");
  file.PrintLine("");
  file.PrintLine(NumberLine());
  file.PrintLine(HeaderColumns(ColumnTitle));
  file.PrintLine(
      HeaderColumns([](int channel) { return PlainNumber(channels.ChannelSensitivity(channel)); }));
  file.PrintLine(BaselineLine());
  file.PrintLine(HeaderColumns(FullScaleText));
  file.PrintLine(HeaderColumns(SelectedUnit));
  file.PrintLine(HeaderColumns(SelectedFactor));
  file.PrintLine(IsNewForm() ? "    (m)(cm/s)" : "   (m) (cm/s)");
  return file.Text();
}

std::string TemporaryHeader(const std::string& cpt_path) {
  ValueWriter file;
  PrintTexts(file, {&cpt_path, &session.SoundingName});
  PrintSounding(file);
  file.ListLine({display.GraphChannel[2], display.GraphChannel[3], display.GraphChannel[4]});
  file.PrintLine(Quoted(NumberLine()));
  file.PrintLine(Quoted(BaselineLine()));
  return file.Text();
}

std::string TimHeader(float seconds) {
  ValueWriter file;
  file.PrintLine("Lumen Probe Time File.  Each line a represents a 5mm depth increment.");
  file.PrintNumberLine(seconds);
  return file.Text();
}

std::string AlignedRow(std::int32_t newest) {
  const std::int32_t row = newest - cone.DelayRows;
  std::string line = DepthAndSpeed(CptDepth(row), sounding.RowSpeed(newest - 1));
  for (const int channel : RowChannels()) {
    line += RowValue(row + channels.ChannelDelayRows(channel), channel);
  }
  return line + kLineEnd;
}

std::string FlushRow(std::int32_t row, std::int32_t newest) {
  std::string line = DepthAndSpeed(CptDepth(row), sounding.RowSpeed(row - 1));
  if (row == 19 || row == 20) return line + kLineEnd;
  for (const int channel : FlushChannels(true)) {
    line +=
        row <= newest - channels.ChannelDelayRows(channel) ? RowValue(row, channel) : NotReached();
  }
  return line + kLineEnd;
}

std::string FinalBaselineLine() {
  std::string line = kHead;
  for (const int channel : FlushChannels(false)) {
    line +=
        sounding.KeptColumn(channel) == kTrue ? NotReached() : Value(sounding.Readings(channel));
  }
  return line + kLineEnd;
}

std::string TemporaryRow(std::int32_t row) {
  std::string line = RightField(Format(sounding.Rows(row, 0), "##0.00"), 6) +
                     RightField(Format(sounding.RowSpeed(row - 1), "##0.00"), 7);
  for (const int channel : RowChannels()) line += RowValue(row, channel);
  return Quoted(line) + kLineEnd;
}

std::string GapRow() {
  std::string line(kGapMark);
  for (int channel = 1; channel <= kChannels; ++channel) {
    const bool is_recorded =
        channels.RecordMode(channel) > 0 && channels.ChannelPresent(channel) == kTrue;
    if (is_recorded) line += std::string(kColumn, '*');
  }
  return line + kLineEnd;
}

std::string PictureMarkLine(float depth, float seconds) {
  return Format(depth - kCameraOffset, "000.000") + " " + PlainNumber(seconds) + kLineEnd;
}

}  // namespace penlog
