#include "platform/virtual_ports.h"

#include "platform/clock.h"
#include "platform/runtime_fault.h"

namespace penlog {

/// Both ends of one wire. The console's writes reach the far end through the queue, so that an
/// instrument never runs on the console's stack.
class VirtualWire : public WireEnd, public std::enable_shared_from_this<VirtualWire> {
 public:
  ~VirtualWire() override { DropCalls(this); }

  void Send(std::string_view bytes) override {
    if (present_ && sink_ != nullptr) sink_->Received(std::string(bytes));
  }

  void SetLines(ModemLines lines) override {
    SetOne(&ModemLines::cts, lines.cts);
    SetOne(&ModemLines::dsr, lines.dsr);
    SetOne(&ModemLines::cd, lines.cd);
  }

  ModemLines Lines() const override { return lines_; }

  void SetPresent(bool present) override {
    if (present_ && !present && sink_ != nullptr) {
      sink_->Vanished();
      Detach();
    }
    present_ = present;
  }

  bool Present() const override { return present_; }
  void LoseNextEdge() override { lose_next_ = true; }

  bool InUse() const { return sink_ != nullptr; }

  /// The number of the attachment: an opening that was cut off must not touch a later one.
  int Attach(PortSink& sink, const PortSettings& settings) {
    sink_ = &sink;
    ++attachment_;
    dtr_ = rts_ = false;
    Later([this, settings] {
      if (OnOpened) OnOpened(settings);
    });
    TellOutputs();
    return attachment_;
  }

  bool IsAttached(int attachment) const { return InUse() && attachment == attachment_; }

  void Detach() {
    if (sink_ == nullptr) return;
    sink_ = nullptr;
    dtr_ = rts_ = false;
    TellOutputs();
    Later([this] {
      if (OnClosed) OnClosed();
    });
  }

  void FromConsole(std::string_view bytes) {
    Later([this, text = std::string(bytes)] {
      if (OnBytes) OnBytes(text);
    });
  }

  void BreakFromConsole(bool on) {
    Later([this, on] {
      if (OnBreak) OnBreak(on);
    });
  }

  void SetOutputs(bool dtr, bool rts) {
    if (dtr == dtr_ && rts == rts_) return;
    dtr_ = dtr;
    rts_ = rts;
    TellOutputs();
  }

  bool dtr() const { return dtr_; }
  bool rts() const { return rts_; }
  bool refused = false;

 private:
  void SetOne(bool ModemLines::*line, bool held) {
    if (lines_.*line == held) return;
    lines_.*line = held;
    if (std::exchange(lose_next_, false)) {
      if (sink_ != nullptr) sink_->EdgesLost(1);
      return;
    }
    if (present_ && sink_ != nullptr) sink_->LinesChanged(lines_);
  }

  void TellOutputs() {
    Later([this, dtr = dtr_, rts = rts_] {
      if (OnOutputs) OnOutputs(dtr, rts);
    });
  }

  void Later(std::function<void()> call) { PostCall(Now(), this, std::move(call)); }

  PortSink* sink_ = nullptr;
  int attachment_ = 0;
  ModemLines lines_;
  bool present_ = true;
  bool lose_next_ = false;
  bool dtr_ = false;
  bool rts_ = false;
};

namespace {

class VirtualDriver : public PortDriver {
 public:
  VirtualDriver(std::shared_ptr<VirtualWire> wire, PortSink& sink, const PortSettings& settings)
      : wire_(std::move(wire)),
        lines_(wire_->Lines()),
        attachment_(wire_->Attach(sink, settings)) {}
  ~VirtualDriver() override {
    if (Alive()) wire_->Detach();
  }

  void Write(std::string_view bytes) override {
    if (Alive()) wire_->FromConsole(bytes);
  }
  void SetBreak(bool on) override {
    if (Alive()) wire_->BreakFromConsole(on);
  }
  void SetDtr(bool on) override {
    if (Alive()) wire_->SetOutputs(on, wire_->rts());
  }
  void SetRts(bool on) override {
    if (Alive()) wire_->SetOutputs(wire_->dtr(), on);
  }
  void DiscardInput() override {}
  void DiscardOutput() override {}
  ModemLines Lines() const override { return lines_; }

 private:
  bool Alive() const { return wire_->IsAttached(attachment_); }

  std::shared_ptr<VirtualWire> wire_;
  ModemLines lines_;
  int attachment_;
};

}  // namespace

VirtualPorts::VirtualPorts() = default;
VirtualPorts::~VirtualPorts() = default;

WireEnd& VirtualPorts::Wire(int number) {
  auto& wire = wires_[number];
  if (!wire) wire = std::make_shared<VirtualWire>();
  return *wire;
}

void VirtualPorts::Renumber(int from, int to) {
  Wire(from);
  auto wire = wires_[from];
  const bool present = wire->Present();
  wire->SetPresent(false);
  wires_.erase(from);
  wires_[to] = wire;
  wire->SetPresent(present);
}

void VirtualPorts::SetRefused(int number, bool refused) {
  Wire(number);
  wires_[number]->refused = refused;
}

bool VirtualPorts::Exists(int number) {
  const auto found = wires_.find(number);
  return found != wires_.end() && found->second->Present();
}

std::unique_ptr<PortDriver> VirtualPorts::Open(int number, const PortSettings& settings,
                                               PortSink& sink) {
  if (!Exists(number)) throw RuntimeFault("COM" + std::to_string(number) + " does not exist");
  auto wire = wires_[number];
  if (wire->InUse() || wire->refused) {
    throw RuntimeFault("COM" + std::to_string(number) + " is in use");
  }
  return std::make_unique<VirtualDriver>(std::move(wire), sink, settings);
}

std::string VirtualPorts::DeviceName(int number) {
  return "wire " + std::to_string(number);
}

}  // namespace penlog
