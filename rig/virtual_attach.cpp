#include "rig/virtual_attach.h"

#include <memory>
#include <utility>

namespace penlog {

namespace {

constexpr int kNoNumber = 1000;  // above all COM numbers

}  // namespace

void AttachToPorts(Rig& rig, VirtualPorts& ports, int cone_port, int truck_port) {
  struct Numbers {
    int cone;
    int truck;
  };
  rig.AttachCone(ports.Wire(cone_port));
  const bool shared = rig.setup.shared_port;
  if (!shared) rig.AttachTruck(ports.Wire(truck_port));
  auto numbers = std::make_shared<Numbers>(Numbers{cone_port, truck_port});
  rig.on_renumber = [&ports, numbers, shared](RigWire which, int number) {
    const bool cone = shared || which == RigWire::Cone;
    int& now = cone ? numbers->cone : numbers->truck;
    int& other = cone ? numbers->truck : numbers->cone;
    if (now == number) return;
    // A number belongs to one adapter: the other takes the one that falls free.
    const bool swap = !shared && other == number;
    if (swap) ports.Renumber(number, kNoNumber);
    const int before = std::exchange(now, number);
    ports.Renumber(before, number);
    if (swap) ports.Renumber(kNoNumber, other = before);
  };
}

}  // namespace penlog
