#include "rig/sim_unit.h"

#include <algorithm>
#include <optional>

#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr int kLongestRead = 255;

std::string Line(std::string_view text) {
  return std::string(text) + std::string(kLineEnd);
}

/// Takes the number at the start of `text`, and the one blank behind it.
std::optional<int> TakeNumber(std::string_view& text) {
  const std::size_t start = text.find_first_not_of(' ');
  if (start == std::string_view::npos) return std::nullopt;
  const std::size_t end = text.find(' ', start);
  const auto number = WholeNumberText(text.substr(start, end - start));
  if (!number || *number < 0.0 || *number > 1e6) return std::nullopt;
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return static_cast<int>(*number);
}

std::size_t ReportPlace(char letter) {
  const std::size_t place = kReportOrder.find(letter);
  return place == std::string_view::npos ? kReportOrder.size() : place;
}

}  // namespace

SimUnit::SimUnit(const UnitSetup& setup, const Surroundings& surroundings, std::uint32_t seed)
    : setup_(setup),
      surroundings_(surroundings),
      memory_(setup.header, setup.channels),
      readout_(setup.decimals, seed, setup.steady) {
  for (auto& record : setup_.channels) record = AsStored(record);
}

std::string SimUnit::Banner() const {
  return setup_.header.id + " PENETROMETER V" + Format(setup_.firmware, "0.00") + " COPYRIGHT 2019";
}

const UnitRecord* SimUnit::Record(int channel) const {
  for (const auto& record : setup_.channels) {
    if (record.channel == channel) return &record;
  }
  return nullptr;
}

void SimUnit::Select(std::string_view letters) {
  std::vector<const UnitRecord*> records;
  for (const auto& record : setup_.channels) {
    if (letters.find(record.letter) != letters.npos) records.push_back(&record);
  }
  std::stable_sort(records.begin(), records.end(), [](const auto* a, const auto* b) {
    const std::size_t place_a = ReportPlace(a->letter);
    const std::size_t place_b = ReportPlace(b->letter);
    return place_a != place_b ? place_a < place_b : a->channel < b->channel;
  });
  reported_.clear();
  for (const auto* record : records) reported_.push_back(record->channel);
}

std::string SimUnit::Reading() {
  std::string text;
  for (const int channel : reported_) {
    const UnitRecord& record = *Record(channel);
    const double shift = setup_.zero_shift[static_cast<std::size_t>(channel) % 31];
    const double output = SensorOutput(record, setup_.channels, surroundings_, shift);
    const bool first = text.empty();
    text += (first ? "" : " ") + readout_.Print(channel, output, first);
  }
  return text.empty() ? "?" : text;
}

void SimUnit::ShiftZero(int channel, double volts) {
  setup_.zero_shift[static_cast<std::size_t>(channel) % 31] = volts;
}

std::string SimUnit::ReadMemory(std::string_view arguments) const {
  const auto address = TakeNumber(arguments);
  const auto length = TakeNumber(arguments);
  if (!address || !length || *length < 1 || *length > kLongestRead) return Line("?");
  return Line(memory_.Read(*address, *length));
}

std::string SimUnit::WriteMemory(std::string_view arguments) {
  const auto address = TakeNumber(arguments);
  const auto length = TakeNumber(arguments);
  if (!address || !length || !memory_.Write(*address, *length, arguments)) return Line("?");
  return Line("OK");
}

std::string SimUnit::Answer(std::string_view command) {
  const char verb = command.empty() ? ' ' : command.front();
  const std::string_view rest = command.empty() ? command : command.substr(1);
  switch (verb) {
    case 'Y':
      return Line(Banner());
    case 'X':
      return Line("READY");
    case 'C':
      return ReadMemory(rest);
    case 'W':
      return WriteMemory(rest);
    case 'Z':
      Select(Trim(rest));
      return Line("OK");
    case 'D':
      return Line(Reading());
    default:
      return Line("?");
  }
}

}  // namespace penlog
