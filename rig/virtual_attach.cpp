#include "rig/virtual_attach.h"

#include <memory>
#include <utility>

namespace penlog {

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
    if (now != number) ports.Renumber(std::exchange(now, number), number);
  };
}

}  // namespace penlog
