#include "rig/rig_log.h"

#include <array>
#include <string_view>
#include <utility>

#include "platform/numbers.h"

namespace penlog {

namespace {

constexpr std::array<std::string_view, 9> kKindNames = {
    "command", "reply", "silence", "break", "port", "output", "edge", "motion", "control"};

std::string Printable(std::string_view bytes) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == '\r') {
      text += "\\r";
    } else if (byte == '\n') {
      text += "\\n";
    } else if (code < 32 || code > 126) {
      text += std::string("\\x") + kHex[code >> 4] + kHex[code & 15];
    } else {
      text += byte;
    }
  }
  return text;
}

}  // namespace

void RigLog::Add(RigRecord record) {
  if (on_added) on_added(record);
  if (keep_) records_.push_back(std::move(record));
}

std::vector<RigRecord> RigLog::Of(RigLogKind kind) const {
  std::vector<RigRecord> found;
  for (const auto& record : records_) {
    if (record.kind == kind) found.push_back(record);
  }
  return found;
}

std::string RigLogLine(const RigRecord& record) {
  const double seconds = static_cast<double>(record.time) / 1e6;
  std::string line = RightField(Format(seconds, "0.000000"), 14) + " ";
  line += kKindNames[static_cast<std::size_t>(record.kind)];
  line += " " + PlainNumber(static_cast<long long>(record.number));
  line += " " + Format(record.depth, "0.0000");
  if (!record.text.empty()) line += " " + Printable(record.text);
  return line;
}

std::string RigLog::Text() const {
  std::string text;
  for (const auto& record : records_) text += RigLogLine(record) + "\n";
  return text;
}

std::uint64_t RigLog::Hash() const {
  std::uint64_t hash = 14695981039346656037ULL;  // FNV-1a
  const auto mix = [&hash](std::string_view bytes) {
    for (const char byte : bytes) {
      hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
    }
  };
  for (const auto& record : records_) mix(RigLogLine(record) + "\n");
  return hash;
}

}  // namespace penlog
