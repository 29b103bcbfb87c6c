// Ports in memory whose drivers note what is asked of them, and of which some refuse as a network
// server does: it takes the connection and stays mute, or closes it after a while.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/port_driver.h"
#include "platform/runtime_fault.h"
#include "platform/serial_port.h"

namespace penlog {

class WatchedPorts : public PortSystem {
 public:
  static constexpr Micros kMute = 3600 * kSecond;

  explicit WatchedPorts(PortSystem& below) : below_(below) { UsePorts(this); }
  ~WatchedPorts() override {
    SerialPort::CloseAll();
    UsePorts(&below_);
  }

  bool Exists(int number) override { return below_.Exists(number); }
  std::unique_ptr<PortDriver> Open(int number, const PortSettings& port_settings,
                                   PortSink& sink) override {
    openings[number].push_back(Now());
    if (refuses_after.count(number) > 0) return std::make_unique<Refusing>(refuses_after[number]);
    return std::make_unique<Noting>(below_.Open(number, port_settings, sink), calls[number]);
  }
  std::string DeviceName(int number) override { return below_.DeviceName(number); }

  std::map<int, Micros> refuses_after;  ///< by COM number: how long the refusal takes
  std::map<int, std::vector<Micros>> openings;
  std::map<int, std::vector<std::string>> calls;  ///< "discard output", "write X\r"

 private:
  class Refusing : public PortDriver {
   public:
    explicit Refusing(Micros after) : end_(Now() + after) {}
    void Write(std::string_view) override {}
    void SetBreak(bool) override {}
    void SetDtr(bool) override {}
    void SetRts(bool) override {}
    void DiscardInput() override {}
    void DiscardOutput() override {}
    ModemLines Lines() const override { return {}; }
    bool Ready() const override {
      if (Now() >= end_) throw RuntimeFault("the server closed the connection");
      return false;
    }

   private:
    Micros end_;
  };

  class Noting : public PortDriver {
   public:
    Noting(std::unique_ptr<PortDriver> below, std::vector<std::string>& calls)
        : below_(std::move(below)), calls_(calls) {}
    void Write(std::string_view bytes) override {
      calls_.push_back("write " + std::string(bytes));
      below_->Write(bytes);
    }
    void SetBreak(bool on) override { below_->SetBreak(on); }
    void SetDtr(bool on) override { below_->SetDtr(on); }
    void SetRts(bool on) override { below_->SetRts(on); }
    void DiscardInput() override { below_->DiscardInput(); }
    void DiscardOutput() override {
      calls_.push_back("discard output");
      below_->DiscardOutput();
    }
    ModemLines Lines() const override { return below_->Lines(); }

   private:
    std::unique_ptr<PortDriver> below_;
    std::vector<std::string>& calls_;
  };

  PortSystem& below_;
};

}  // namespace penlog
