// The truck interface: modem-line changes of one serial port become depth, rebound and due rows.
//
//   line  caption          proximity counter   encoder
//   CD    Depth / Chan A   pulse               channel A
//   CTS   Press / Chan B   pressure switch     channel B
//   DSR   Clamp            clamp               clamp
//   DTR   Trigger          false but for the seismic trigger
//   RTS   (quit)           true while a quit is latched
//
// The handlers run in any yield: they count and act, and never yield. Fault model: a dropped pulse
// can't be detected; the line states at each event are those of its own edge.
#pragma once

#include <cstdint>

#include "platform/serial_port.h"

namespace penlog {

/// True when the cone's adapter also carries the truck's lines.
bool TruckSharesConePort();
/// The port that carries them: `EncoderComm`, or `ConeComm` when shared.
SerialPort& TruckPort();

void Main_EncoderComm_OnComm(int comm_event);
/// Does nothing unless the port is shared and the cone's own is open. There a pulse of the
/// proximity counter within two ticks of the last due row is the cone's own traffic, and dropped.
void Main_ConeComm_OnComm(int comm_event);

/// Takes the lines as they are into the state and the lamps, counts nothing, and lowers DTR. What
/// the operator decides in manual mode stays as it was.
void ReadTruckLines();

/// After an opening of the truck's port: RTS true again while a quit is latched.
void RestoreQuitOutput();

/// Opens the truck's own port with `TruckInterfaceSerialPort`, `settings_text` (empty: as they
/// are) and the latched quit, and reads its lines. On a shared port it only reads them. A
/// `RuntimeFault` when it doesn't open.
void OpenTruckPort(const char* settings_text);

/// The truck's port is back after a loss: steps may be missing, and the state says at which depth.
/// Does nothing where no depth counts yet: before the start there is none to be wrong.
void NoteStepsMayBeMissing();
/// At a start: what was missing before is no matter of this sounding.
void ForgetMissingSteps();

/// `PressureLine` (0 pressure on) with its lamp; `ClampLine` (0 clamped) with its lamp.
void SetPressureLine(std::int16_t line);
void SetClampLine(std::int16_t line);

/// Depth, large depth and rebound from the state.
void ShowDepthLabels();

}  // namespace penlog
