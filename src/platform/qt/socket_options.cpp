#include "platform/qt/socket_options.h"

#ifdef __linux__
#include <netinet/in.h>
#include <netinet/tcp.h>
#endif
#ifdef __unix__
#include <sys/socket.h>
#endif

namespace penlog {

namespace {

#ifdef __linux__
void SetTcpOption(QTcpSocket& socket, int option, int value) {
  const int fd = static_cast<int>(socket.socketDescriptor());
  if (fd >= 0) setsockopt(fd, IPPROTO_TCP, option, &value, sizeof value);
}
#endif

}  // namespace

void NoDelayAndKeepAlive(QTcpSocket& socket) {
  socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
#ifdef __linux__
  SetTcpOption(socket, TCP_KEEPIDLE, 2);
  SetTcpOption(socket, TCP_KEEPINTVL, 1);
  SetTcpOption(socket, TCP_KEEPCNT, 3);
  SetTcpOption(socket, TCP_USER_TIMEOUT, 5000);  // ms that sent bytes may stay unacknowledged
#endif
}

void EndSending(QTcpSocket& socket) {
#ifdef __unix__
  const int fd = static_cast<int>(socket.socketDescriptor());
  if (fd >= 0) shutdown(fd, SHUT_WR);
#else
  (void)socket;
#endif
}

}  // namespace penlog
