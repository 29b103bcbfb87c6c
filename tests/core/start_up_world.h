// The start screen with its ports and an operator who answers boxes and chooses ports.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "core/reset_state.h"
#include "core/start_up.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "forms/start_up_form.h"
#include "screens/specify_ports.h"
#include "tests/core/settings_world.h"

namespace penlog {

struct StartUpWorld : SettingsWorld {
  StartUpWorld() {
    ResetState();
    session.DataDirectory = "/data";
    session.SoundingFiles[0] = "/data/TemporaryData.txt";
    StartUp.Timer1.OnTick = StartUp_Timer1_Timer;
    frmSpecifyTruckInterface.cmdSavePort.Click = frmSpecifyTruckInterface_cmdSavePort_Click;
    frmSpecifyTruckInterface.cmdCancel.Click = frmSpecifyTruckInterface_cmdCancel_Click;
    frmSpecifyASCIIOut.cmdSavePort.Click = frmSpecifyASCIIOut_cmdSavePort_Click;
    frmSpecifyASCIIOut.cmdCancel.Click = frmSpecifyASCIIOut_cmdCancel_Click;
    frmSpecifyVideoOverlay.cmdSavePort.Click = frmSpecifyVideoOverlay_cmdSavePort_Click;
    frmSpecifyVideoOverlay.cmdCancel.Click = frmSpecifyVideoOverlay_cmdCancel_Click;
    Show(StartUp);
    Watch();
  }
  ~StartUpWorld() {
    DropCalls(this);
    StartUp.Timer1.OnTick = {};
    ResetState();
  }

  /// At the next showing of that screen the operator saves `port`; 0 cancels.
  void Choose(SpecifyTruckInterfaceForm& form, int port) {
    Plan(form, form.cmbTruckInterfaceSerialPort, form.cmdSavePort, form.cmdCancel, port);
  }
  void Choose(SpecifyASCIIOutForm& form, int port) {
    Plan(form, form.cmbASCIIOutSerialPort, form.cmdSavePort, form.cmdCancel, port);
  }
  void Choose(SpecifyVideoOverlayForm& form, int port) {
    Plan(form, form.cmbVideoOverlaySerialPort, form.cmdSavePort, form.cmdCancel, port);
  }
  /// Runs `act` once when the screen is shown.
  void WhenShown(Form& form, std::function<void()> act) { plans_.push_back({&form, act}); }

  static void Post(Form& form, Control& control, ActionKind kind = ActionKind::Click,
                   int number = 0) {
    OperatorAction action;
    action.kind = kind;
    action.form = &form;
    action.control = &control;
    action.number = number;
    PostActionNow(action);
  }

  /// Each text that stood in the status label for at least a millisecond, in order.
  std::vector<std::string> statuses;
  /// Every length that the dots had.
  std::set<std::size_t> dots;
  /// The dots ran while one of the screens above was open.
  bool dots_ran_at_a_choice = false;

 private:
  struct PlannedAct {
    Form* form;
    std::function<void()> act;
  };

  void Plan(Form& form, ComboBox& list, Button& save, Button& cancel, int port) {
    WhenShown(form, [&form, &list, &save, &cancel, port] {
      for (std::size_t i = 0; i < list.List.size(); ++i) {
        if (list.List[i] == std::to_string(port)) {
          Post(form, list, ActionKind::Select, static_cast<int>(i));
        }
      }
      Post(form, port == 0 ? cancel : save);
    });
  }

  void Watch() {
    PostCall(
        Now() + kMillisecond, this,
        [this] {
          Look();
          Watch();
        },
        EventKind::RepeatingCall);
  }

  void Look() {
    const std::string& status = StartUp.lblLoad.Caption;
    if (statuses.empty() || statuses.back() != status) statuses.push_back(status);
    dots.insert(StartUp.lblStatusIndicator.Caption.size());
    for (std::size_t i = 0; i < plans_.size(); ++i) {
      if (!plans_[i].form->Visible) continue;
      if (StartUp.Timer1.Running()) dots_ran_at_a_choice = true;
      const auto act = plans_[i].act;
      plans_.erase(plans_.begin() + static_cast<std::ptrdiff_t>(i));
      return act();
    }
  }

  std::vector<PlannedAct> plans_;
};

}  // namespace penlog
