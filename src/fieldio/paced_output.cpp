#include "fieldio/paced_output.h"

#include <utility>

namespace penlog {

namespace {

constexpr int kTickMs = 55;
constexpr int kTicksOfAPause = 2;

}  // namespace

PacedOutput::PacedOutput(std::string name) : timer_(std::move(name), kTickMs) {
  timer_.OnTick = [this] { Tick(); };
}

void PacedOutput::Send(SerialPort& port, std::vector<PacedText> texts) {
  Drop();
  port_ = &port;
  texts_ = std::move(texts);
  timer_.Start();
  SendUpToAPause();
}

void PacedOutput::Drop() {
  timer_.Stop();
  texts_.clear();
  next_ = 0;
  ticks_ = 0;
}

void PacedOutput::SendUpToAPause() {
  while (ticks_ == 0 && next_ < texts_.size()) {
    const PacedText& text = texts_[next_++];
    port_->Output(text.bytes);
    ticks_ = text.pauses * kTicksOfAPause;
  }
  if (ticks_ == 0) Drop();
}

void PacedOutput::Tick() {
  if (ticks_ > 0) --ticks_;
  if (ticks_ == 0) SendUpToAPause();
}

}  // namespace penlog
