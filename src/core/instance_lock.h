// One console at a time on a data directory.
#pragma once

namespace penlog {

/// Takes the directory for this console. While another one has it, waits up to 10 s with the start
/// screen's dots running: a console that was started anew comes up before the old one is gone.
/// After that the operator is told, and this console ends. Raises a `RuntimeFault` if the lock's
/// file can't be made.
///
/// The system drops the lock with the process, however that ends.
void TakeInstanceLock();

/// Gives it back while the process goes on.
void ReleaseInstanceLock();

}  // namespace penlog
