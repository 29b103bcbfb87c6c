// What the event loop's sockets don't offer themselves.
#pragma once

#include <QTcpSocket>

namespace penlog {

/// Sends small messages at once, and finds a dead peer (a pulled network cable) after about 5 s.
void NoDelayAndKeepAlive(QTcpSocket& socket);
/// Tells the peer that nothing more comes; receiving goes on.
void EndSending(QTcpSocket& socket);

}  // namespace penlog
