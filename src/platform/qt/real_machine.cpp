#include "platform/qt/real_machine.h"

#include <utility>

#include "platform/serial_port.h"
#include "platform/view.h"

namespace penlog {

RealMachine::RealMachine(RealMachineSetup setup)
    : end_signals_(clock_.io()),
      network_(clock_),
      ports_(std::move(setup.port_list), &network_, std::move(setup.report)),
      host_(std::move(setup.words)),
      printer_(std::move(setup.pdf_file)) {
  UseDisk(&disk_);
  UseClock(&clock_);
  UseIo(&clock_.io());
  UsePorts(&ports_);
  UseHost(&host_);
  UsePrinter(&printer_);
  clock_.on_frame = [] {
    if (TheView() != nullptr) TheView()->Frame();
  };
}

// Forms are global: their ports, if still open, must close while the drivers stand.
RealMachine::~RealMachine() {
  SerialPort::CloseAll();
  clock_.on_frame = {};
  UsePrinter(nullptr);
  UsePorts(nullptr);
  UseHost(nullptr);
  UseIo(nullptr);
  UseDisk(nullptr);
  UseClock(nullptr);
}

}  // namespace penlog
