// The real platform as a whole, for main programs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/posix/end_signals.h"
#include "platform/posix/machine_ports.h"
#include "platform/posix/posix_disk.h"
#include "platform/qt/qt_host.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_ports.h"

namespace penlog {

struct RealMachineSetup {
  std::vector<std::string> words;  ///< of the command line, without the program's name
  /// The path of "Serial Ports.txt"; empty while it isn't known.
  std::function<std::string()> port_list = [] { return std::string(); };
  /// Takes messages about that file for the operator; it must not yield.
  std::function<void(const std::string& text)> report = [](const std::string&) {};
  std::string pdf_file;  ///< what is printed goes there if it is named
};

/// Puts disk, clock, descriptors, ports, host and printer in use, and turns SIGTERM, SIGINT and
/// SIGHUP into the end of the program. It outlives every use of them: `main` declares it after the
/// QApplication and before all else. Its end closes the ports that are still open, so that their
/// outputs drop. The windows follow whenever there is a view.
class RealMachine {
 public:
  explicit RealMachine(RealMachineSetup setup);
  ~RealMachine();
  RealMachine(const RealMachine&) = delete;
  RealMachine& operator=(const RealMachine&) = delete;

  RealClock& clock() { return clock_; }

 private:
  PosixDisk disk_;
  RealClock clock_;
  EndSignals end_signals_;
  Rfc2217Ports network_;
  MachinePorts ports_;
  QtHost host_;
  QtPrinter printer_;
};

}  // namespace penlog
