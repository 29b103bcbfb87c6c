// The rig's window: shows the state of the rig and hands orders over. It knows no rig: what it
// shows comes as `RigState`, what is pressed goes out as the words of the control language.
#pragma once

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/view.h"
#include "rig/fault_rows.h"
#include "rig/rig_panel.h"
#include "rig/window/line_lamp.h"
#include "rig/window/profile_view.h"

namespace penlog {

/// Who takes what a person does at the window. Called from within the toolkit's event loop: they
/// only queue.
struct RigWindowHands {
  std::function<void(const std::string& order)> order;
  std::function<void()> close;
};

class RigWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// `state` tells which buttons, lines and faults this rig has.
  RigWindow(const RigState& state, RigWindowHands hands);

  /// Brings the window to that state; touches only what changed.
  void Follow(const RigState& state);
  void Lay(const Ground& ground) { profile_->Lay(ground); }
  /// What came of an order.
  void Tell(const std::string& text, bool refused);
  /// Shows the window in this program's room on the screen.
  void Open();

  QPushButton* ButtonFor(PanelButton button) const;
  QPushButton* FaultButton(std::size_t index) const { return faults_.at(index).button; }
  const std::vector<FaultRow>& Faults() const { return fault_rows_; }
  /// What a fact says: the whole of it, also where the label had to shorten it.
  std::string Fact(const std::string& name) const;
  /// The dialog for a file of the ground; null until it was asked for.
  QFileDialog* Dialog() const { return dialog_.get(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct OrderButton {
    PanelButton kind;
    QPushButton* button;
  };
  struct FaultSwitch {
    FaultRow row;
    QPushButton* button;
  };
  struct FactLabels {
    QLabel* name;
    QLabel* value;
  };

  QLabel* AddLabel(const char* name, const char* role, QWidget* parent);
  QWidget* MakeHead();
  QWidget* MakePicture(const RigState& state);
  QWidget* MakeFacts(const std::vector<PanelFact>& facts, std::size_t first, std::size_t last);
  QWidget* MakeOrders(const RigState& state);
  QPushButton* MakeOrder(PanelButton kind, QWidget* parent);
  std::vector<QPushButton*> MakeGroundButtons(QWidget* parent);
  QWidget* MakeFaults(const RigState& state);
  QPushButton* MakeLookButton(QWidget* parent);
  void AskForFile();
  double Way() const;
  void Rescale();
  void Style();

  void FollowHead(const RigState& state);
  void FollowFaults(const RigState& state);

  RigWindowHands hands_;
  RigState shown_;
  double scale_ = 0.0;
  LookSet look_ = LookSet::Day;
  QLabel* headline_ = nullptr;
  QLabel* depth_ = nullptr;
  QLabel* hint_ = nullptr;
  QLabel* told_ = nullptr;
  QComboBox* way_ = nullptr;
  QPushButton* night_ = nullptr;
  ProfileView* profile_ = nullptr;
  std::vector<LineLamp*> lamps_;
  std::vector<FactLabels> facts_;
  std::vector<OrderButton> orders_;
  std::vector<FaultRow> fault_rows_;
  std::vector<FaultSwitch> faults_;
  std::unique_ptr<QFileDialog> dialog_;
};

}  // namespace penlog
