#include "platform/screen_place.h"

#include <algorithm>
#include <charconv>

namespace penlog {

namespace {

constexpr int kLeastSize = 100;
constexpr int kMostSize = 20000;
constexpr int kLeastNarrow = 360;

/// Takes a number and the sign behind it off the front; false when they don't stand there.
bool TakeNumber(std::string_view& text, char sign, int least, int& number) {
  const char* end = text.data() + text.size();
  if (text.empty() || text.front() < '0' || text.front() > '9') return false;
  const auto [next, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || number < least || number > kMostSize) return false;
  text.remove_prefix(static_cast<std::size_t>(next - text.data()));
  if (sign == '\0') return text.empty();
  if (text.empty() || text.front() != sign) return false;
  text.remove_prefix(1);
  return true;
}

int NarrowWidth(int width) {
  return std::min(std::max(width * 3 / 10, kLeastNarrow), width * 45 / 100);
}

}  // namespace

std::optional<ScreenPlace> ScreenPlaceOf(std::string_view word) {
  if (word == "whole") return ScreenPlace{};
  if (word == "left") return ScreenPlace{ScreenPlace::Kind::Left, {}};
  if (word == "right") return ScreenPlace{ScreenPlace::Kind::Right, {}};
  ScreenPlace place{ScreenPlace::Kind::Exact, {}};
  const bool taken = TakeNumber(word, 'x', kLeastSize, place.room.width) &&
                     TakeNumber(word, '+', kLeastSize, place.room.height) &&
                     TakeNumber(word, '+', 0, place.room.x) &&
                     TakeNumber(word, '\0', 0, place.room.y);
  if (!taken) return std::nullopt;
  return place;
}

ScreenRoom RoomOn(const ScreenRoom& screen, const ScreenPlace& place) {
  const int narrow = NarrowWidth(screen.width);
  switch (place.kind) {
    case ScreenPlace::Kind::Whole:
      break;
    case ScreenPlace::Kind::Left:
      return {screen.x, screen.y, narrow, screen.height};
    case ScreenPlace::Kind::Right:
      return {screen.x + narrow, screen.y, screen.width - narrow, screen.height};
    case ScreenPlace::Kind::Exact:
      return place.room;
  }
  return screen;
}

}  // namespace penlog
