// A local serial port on termios: a UART, a USB adapter, a pseudo terminal.
//
// Fault model. The adapter may be unplugged at any time: reads end or fail, the device's node goes,
// or a link of that name leads elsewhere. The port then says so once, closes the device (an adapter
// that is plugged in again would otherwise get another name) and does nothing any more. The far
// end may stop taking output: up to `kOutputLimit` bytes wait, further ones are dropped.
#pragma once

#include <memory>
#include <string>

#include "platform/event_queue.h"
#include "platform/io_watcher.h"
#include "platform/modem_watch.h"
#include "platform/port_driver.h"
#include "platform/posix/file_handle.h"

namespace penlog {

class TermiosPort : public PortDriver {
 public:
  /// Opens `path` for this program alone, with DTR and RTS lowered; what had been received before
  /// is dropped. Raises a `RuntimeFault` naming the path. `TheIo()` must stand.
  TermiosPort(const std::string& path, const PortSettings& settings, PortSink& sink);
  ~TermiosPort() override;

  void Write(std::string_view bytes) override;
  void SetBreak(bool on) override;
  void SetDtr(bool on) override;
  void SetRts(bool on) override;
  void DiscardInput() override;
  void DiscardOutput() override;
  ModemLines Lines() const override { return lines_; }

  static constexpr std::size_t kReadSize = std::size_t{16} * 1024;
  static constexpr std::size_t kOutputLimit = std::size_t{64} * 1024;
  /// No reading while more events than this wait.
  static constexpr std::size_t kBacklogLimit = ModemWatch::kBacklogLimit;
  static constexpr int kNodeCheckMs = 50;

 private:
  void StartWatching();
  void Readable();
  void Collect();
  void SendWaiting();
  bool NodeStands() const;
  void Vanish();
  void CloseDevice();

  std::string path_;
  PortSink& sink_;
  IoWatcher& io_;
  FileHandle device_;  // none once the port has vanished
  ModemLines lines_;
  std::unique_ptr<ModemWatch> modem_watch_;
  std::string output_;
  bool break_ = false;
  bool reading_paused_ = false;
  Micros node_checked_ = 0;
  int read_watch_ = 0;
  int write_watch_ = 0;
  int collect_poll_ = 0;
};

}  // namespace penlog
