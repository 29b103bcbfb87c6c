#include "platform/qt/screen_room.h"

namespace penlog {

namespace {

ScreenPlace& Place() {
  static ScreenPlace place;
  return place;
}

}  // namespace

void UsePlace(const ScreenPlace& place) {
  Place() = place;
}

QRect PlaceRoom(const QScreen& screen) {
  const QRect all = screen.availableGeometry();
  const ScreenRoom room = RoomOn({all.x(), all.y(), all.width(), all.height()}, Place());
  return {room.x, room.y, room.width, room.height};
}

}  // namespace penlog
