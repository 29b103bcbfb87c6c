#include "conelink/unit_memory.h"

#include "conelink/channel_record.h"
#include "conelink/cone_state.h"
#include "conelink/plain_exchange.h"
#include "conelink/value_coding.h"
#include "core/channels.h"
#include "core/progress.h"
#include "core/session.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr int kFirstRecord = 31;  // address

std::string ReadMemory(const Unit& unit, int address, int length) {
  std::string reply = StartUp_CommStringCheck(unit.prefix + "C" + LeadingBlankNumber(address) +
                                              LeadingBlankNumber(length));
  StartUp_CommPause();
  return reply;
}

/// What the flags of a record announce; returns the address behind it.
int ReadSubRecords(const Unit& unit, const ChannelRecord& record, int address) {
  if (record.HasSubtraction()) {
    const auto [channel, factor] = DecodeSubtraction(ReadMemory(unit, address, kSubtractionLength));
    channels.SubtractChannel(record.number) = channel;
    channels.SubtractFactor(record.number) = factor;
    address += kSubtractionLength;
  }
  if (record.HasArea()) {
    channels.ChannelArea(record.number) =
        ToInteger32(BinaryToSingle(ReadMemory(unit, address, kAreaLength)));
    channels.ChannelHasArea(record.number) = 1;
    address += kAreaLength;
  }
  return address;
}

bool IsDuplicate(const Unit& unit, const ChannelRecord& record) {
  const bool known = record.number >= 1 && record.number <= kChannels;
  return unit.number != 0 && known && channels.ChannelPresent(record.number) == kTrue;
}

/// Reads the records up to the end of the list. Returns the channel at which a module's list was
/// given up since it is present already, 0 for a whole list.
int ReadRecords(const Unit& unit) {
  int address = kFirstRecord;
  for (int count = 1;; ++count) {
    const ChannelRecord record = DecodeChannelRecord(ReadMemory(unit, address, kRecordLength));
    if (record.EndsList()) return 0;
    if (IsDuplicate(unit, record)) return record.number;
    if (count > kChannels) throw RuntimeFault("The list of channels does not end.");
    ++cone.ChannelCount;
    ShowProgress("CHANNEL RECORD", count, 0);
    StoreChannelRecord(record, unit.number);
    address = ReadSubRecords(unit, record, address + kRecordLength);
    if (session.CalibrationMode == kTrue) FillMissingArea(record.number);
  }
}

}  // namespace

MemoryHeader ReadHeader(const Unit& unit) {
  MemoryHeader header;
  header.field1 = MemoryText(ReadMemory(unit, 1, 2));
  header.number = MemoryText(ReadMemory(unit, 3, 7));
  header.creation_date = MemoryText(ReadMemory(unit, 10, 6));
  header.calibration_date = MemoryText(ReadMemory(unit, 16, 6));
  header.distance_pushed = BinaryToSingle(ReadMemory(unit, 22, 3));
  header.memory_size = BinaryToSingle(ReadMemory(unit, 25, 3));
  header.clock_frequency = BinaryToSingle(ReadMemory(unit, 28, 3));
  return header;
}

std::string MemoryText(const std::string& reply) {
  std::string text = reply;
  for (char& character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 32 || code == 127) character = ' ';
  }
  return FromFileBytes(text);
}

float VersionOf(const std::string& banner) {
  const auto mark = banner.find(" V");
  return mark == std::string::npos ? 0 : ParseSingle(banner.substr(mark + 2, 4));
}

bool AnswersTwice(const Unit& unit) {
  StartUp_CommStringCheck(unit.prefix + "X");
  StartUp_CommPause(2);
  const bool answered = !StartUp_CommStringCheck(unit.prefix + "X").empty();
  StartUp_CommPause(2);
  return answered;
}

int ReadChannelList(const Unit& unit) {
  const int duplicate = ReadRecords(unit);
  if (duplicate == 0) FormSubtractFactors(unit.number);
  return duplicate;
}

}  // namespace penlog
