// Serial ports without hardware: each COM number is a wire in memory. Used in virtual time, and in
// real time by tests.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/port_driver.h"
#include "platform/wire_end.h"

namespace penlog {

class VirtualWire;

class VirtualPorts : public PortSystem {
 public:
  VirtualPorts();
  ~VirtualPorts() override;

  /// The far end of COM `number`; made at the first call, present from then on.
  WireEnd& Wire(int number);
  /// The wire comes back under another number: a USB adapter that was plugged again.
  void Renumber(int from, int to);
  /// Each opening of the port is refused from now on (a port that another program holds).
  void SetRefused(int number, bool refused);

  bool Exists(int number) override;
  std::unique_ptr<PortDriver> Open(int number, const PortSettings& settings,
                                   PortSink& sink) override;
  std::string DeviceName(int number) override;

 private:
  std::map<int, std::shared_ptr<VirtualWire>> wires_;
};

}  // namespace penlog
