// A serial port as the screens hold it: `ConeComm`, `EncoderComm` and so on. What it holds and its
// lines change only inside a yield.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/event_queue.h"
#include "platform/port_driver.h"

namespace penlog {

/// Values of `CommEvent`. Errors are 1000 and above.
enum CommEventCode : int {
  kCommReceive = 2,
  kCommCts = 3,
  kCommDsr = 4,
  kCommCd = 5,
  kCommPortGone = 1000,
};

enum class InputModes { Text, Binary };

class SerialPort : public EventTarget, private PortSink {
 public:
  explicit SerialPort(std::string name);
  ~SerialPort() override;

  // The number and the settings take effect at the next opening; setting them on an open port
  // raises a `RuntimeFault`, as does a text that is no setting.
  int CommPort() const { return number_; }
  void SetCommPort(int number);
  const std::string& Settings() const { return settings_text_; }
  void SetSettings(std::string_view settings);

  /// True between `Open` and `Close`, also while the port has vanished meanwhile.
  bool PortOpen() const { return driver_ != nullptr; }
  /// Opens with DTR and RTS false and reads the lines. A network port is waited for, 2 s at most,
  /// in a yield loop. Raises a `RuntimeFault` when the port is absent, in use, or open already.
  void Open();
  /// Lowers DTR and RTS, closes, drops what was received. Does nothing on a closed port.
  void Close();
  /// Closes every port of the program: the end of `main`, where the screens still stand.
  static void CloseAll();
  /// Closes every port and puts number, settings and modes back to their first values; for tests.
  static void ResetAll();
  /// The opened port has vanished (or was never opened).
  bool Gone() const { return gone_ || driver_ == nullptr; }

  /// Bytes received and not yet taken.
  int InBufferCount() const { return static_cast<int>(input_.size()); }
  void ClearInBuffer();
  void ClearOutBuffer();
  /// Takes `InputLen` bytes, or all for 0.
  std::string Input();
  int InputLen() const { return input_len_; }
  void SetInputLen(int length) { input_len_ = length; }
  InputModes InputMode() const { return input_mode_; }
  void SetInputMode(InputModes mode) { input_mode_ = mode; }
  /// Sends. On a closed or vanished port nothing happens.
  void Output(std::string_view bytes);

  bool Break() const { return break_; }
  /// Raises a `RuntimeFault` on a closed or vanished port.
  void SetBreak(bool on);
  bool DTREnable() const { return dtr_; }
  void SetDTREnable(bool on);
  bool RTSEnable() const { return rts_; }
  void SetRTSEnable(bool on);
  bool CTSHolding() const { return lines_.cts; }
  bool DSRHolding() const { return lines_.dsr; }
  bool CDHolding() const { return lines_.cd; }

  /// Runs in a yield for each line that changed, for input and for the loss of the port, with a
  /// `CommEventCode`. It must not yield.
  std::function<void(int comm_event)> OnComm;

  /// Edges that the adapter counted and no event told of, through all openings.
  std::int64_t EdgesLostCount() const { return edges_lost_; }
  /// The adapter gives no edge events: the lines are polled and edges may be missed.
  bool EdgesArePolled() const { return edges_polled_; }
  /// Edges handed out since the opening.
  std::int64_t EdgeCount() const { return edge_count_; }

  void Handle(const Event& event) override;

 private:
  void Received(std::string bytes) override;
  void LinesChanged(ModemLines lines) override;
  void LinesKnown(ModemLines lines) override;
  void EdgesLost(std::int64_t count) override;
  void EdgesPolled() override;
  void Vanished() override;

  void WaitUntilReady();
  void PostEvent(EventKind kind, std::int64_t number, std::uint32_t lines, std::string text);
  void TakeNews(const Event& event);
  void TakeEdge(ModemLines lines);
  void Notify(int comm_event);

  int number_ = 1;
  std::string settings_text_ = "9600,N,8,1";
  PortSettings settings_{9600, 'N', 8, 1};
  std::unique_ptr<PortDriver> driver_;
  std::string input_;
  int input_len_ = 0;
  InputModes input_mode_ = InputModes::Text;
  bool break_ = false;
  bool dtr_ = false;
  bool rts_ = false;
  bool gone_ = false;
  bool lines_told_ = false;  // by an event since the opening: newer than the driver's first lines
  bool edges_polled_ = false;
  std::int64_t edges_lost_ = 0;
  std::int64_t edge_count_ = 0;
  ModemLines lines_;
};

}  // namespace penlog
