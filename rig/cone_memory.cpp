#include "rig/cone_memory.h"

#include "rig/coding.h"

namespace penlog {

namespace {

constexpr int kDistanceAddress = 22;
constexpr int kSubtractionFlag = 1;
constexpr int kAreaFlag = 2;

/// Exactly `length` characters, cut or filled with blanks.
std::string Fixed(std::string text, std::size_t length) {
  text.resize(length, ' ');
  return text;
}

}  // namespace

std::string RecordText(const UnitRecord& record) {
  const int flags =
      (record.subtract > 0 ? kSubtractionFlag : 0) + (record.area_mm2 > 0 ? kAreaFlag : 0);
  std::string text = EncodePlain(record.channel, 1);
  text += record.letter;
  text += EncodeDecimal(record.full_scale);
  text += EncodeDecimal(record.at_full_scale);
  text += EncodeDecimal(record.at_zero);
  text += EncodePlain(record.distance_mm, 2);
  text += EncodePlain(flags, 1);
  if (record.subtract > 0) {
    text += EncodePlain(record.subtract, 1) + EncodeDecimal(record.subtract_factor);
  }
  if (record.area_mm2 > 0) text += EncodePlain(record.area_mm2, 3);
  return text;
}

ConeMemory::ConeMemory(const UnitHeader& header, const std::vector<UnitRecord>& records) {
  text_ = Fixed(header.field1, 2) + Fixed(header.id, 7) + Fixed(header.created, 6) +
          Fixed(header.calibrated, 6);
  text_ += EncodePlain(header.distance_pushed, 3);
  text_ += EncodePlain(header.memory_size, 3);
  text_ += EncodePlain(header.clock_frequency, 3);
  for (const auto& record : records) text_ += RecordText(record);
  text_ += "@";
}

std::string ConeMemory::Read(int address, int length) const {
  std::string text;
  for (int at = address; at < address + length; ++at) {
    const bool inside = at >= 1 && at <= static_cast<int>(text_.size());
    text += inside ? text_[static_cast<std::size_t>(at - 1)] : '@';
  }
  return text;
}

bool ConeMemory::Write(int address, int length, std::string_view data) {
  const bool inside =
      address >= 1 && length >= 1 && address + length - 1 <= static_cast<int>(text_.size());
  if (!inside || static_cast<int>(data.size()) != length) return false;
  text_.replace(static_cast<std::size_t>(address - 1), data.size(), data);
  return true;
}

std::int32_t ConeMemory::DistancePushed() const {
  return DecodePlain(Read(kDistanceAddress, 3));
}

}  // namespace penlog
