// A simulated instrument behind a local serial port: the master side of a pseudo terminal, which a
// link of a fixed name makes findable.
#pragma once

#include <string>
#include <string_view>

#include "platform/event_queue.h"
#include "platform/io_watcher.h"
#include "platform/posix/file_handle.h"
#include "platform/wire_end.h"

namespace penlog {

/// A pseudo terminal has no modem lines and carries no break: `SetLines` reaches nobody, and
/// `OnOutputs` and `OnBreak` never run. Plugging out hangs the terminal up and removes the link;
/// plugging in makes a new terminal. What is sent while no program has the port open is lost, as
/// on a wire.
class PtyWire : public WireEnd {
 public:
  /// Makes the terminal and the link; an old link of that name is replaced. Raises a
  /// `RuntimeFault` when the system gives no terminal or the link can't be made.
  PtyWire(IoWatcher& io, std::string link);
  ~PtyWire() override;
  PtyWire(const PtyWire&) = delete;
  PtyWire& operator=(const PtyWire&) = delete;

  const std::string& Link() const { return link_; }
  /// The master's descriptor; -1 while the wire is out.
  int Descriptor() const { return master_.Get(); }
  /// The link's name from the next plugging in on, at once if the wire is out: the adapter comes
  /// back under another number.
  void SetLink(std::string link);

  void Send(std::string_view bytes) override;
  void SetLines(ModemLines lines) override { lines_ = lines; }
  ModemLines Lines() const override { return lines_; }
  void SetPresent(bool present) override;
  bool Present() const override { return static_cast<bool>(master_); }
  void LoseNextEdge() override {}

  /// More than this is not kept for a program that doesn't read; further bytes are lost.
  static constexpr std::size_t kUnsentLimit = std::size_t{64} * 1024;

 private:
  void PlugIn();
  void PlugOut();
  void MakeLink(const std::string& terminal);
  void Readable();
  void Writable();
  void Collect();
  bool HungUp() const;
  void TellOpened();
  void TellClosed();

  IoWatcher& io_;
  std::string link_;
  std::string made_link_;  // the one that stands
  FileHandle master_;
  int read_watch_ = 0;
  int write_watch_ = 0;
  int poll_ = 0;
  std::string unsent_;
  ModemLines lines_;
  bool in_use_ = false;  // a program has the terminal open
  bool told_ = false;    // and `OnOpened` said so
  Micros in_use_since_ = 0;
};

}  // namespace penlog
