#include "platform/posix/line_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "platform/clock.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr const char* kEnd = "\n\n";  // of an answer

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

std::string PlaceText(int port) {
  return "127.0.0.1:" + std::to_string(port);
}

FileHandle Listener(int port) {
  FileHandle listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!listener) FailWithErrno(PlaceText(port));
  const int yes = 1;
  ::setsockopt(listener.Get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  const sockaddr_in address = Loopback(port);
  const auto* plain = reinterpret_cast<const sockaddr*>(&address);
  if (::bind(listener.Get(), plain, sizeof address) != 0 || ::listen(listener.Get(), 8) != 0) {
    FailWithErrno(PlaceText(port));
  }
  return listener;
}

int PortOf(int socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
  return ntohs(address.sin_port);
}

void SendAll(int socket, const std::string& text) {
  std::size_t sent = 0;
  while (sent < text.size()) {
    const ssize_t count = Retried(
        [&] { return ::send(socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL); });
    if (count <= 0) return;  // a client that is gone or doesn't read gets no more
    sent += static_cast<std::size_t>(count);
  }
}

/// What has arrived; empty with `ended` when the other end has closed.
std::string Receive(int socket, bool& ended) {
  std::array<char, 4096> part{};
  const ssize_t count = Retried([&] { return ::recv(socket, part.data(), part.size(), 0); });
  ended = count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK);
  return {part.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

}  // namespace

LineServer::LineServer(IoWatcher& io, int port, Answer answer)
    : io_(io), answer_(std::move(answer)), listener_(Listener(port)) {
  port_ = PortOf(listener_.Get());
  watch_ = io_.Watch(listener_.Get(), [this] { TakeClient(); });
}

LineServer::~LineServer() {
  DropCalls(this);
  io_.Unwatch(watch_);
  for (const auto& [id, client] : clients_) io_.Unwatch(client.watch);
}

void LineServer::TakeClient() {
  FileHandle socket(::accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket) return;
  const int id = ++last_id_;
  const int watch = io_.Watch(socket.Get(), [this, id] { Read(id); });
  clients_[id] = Client{std::move(socket), watch, {}};
}

void LineServer::Drop(int id) {
  const auto found = clients_.find(id);
  if (found == clients_.end()) return;
  io_.Unwatch(found->second.watch);
  clients_.erase(found);
}

void LineServer::Read(int id) {
  Client& client = clients_.at(id);
  bool ended = false;
  client.received += Receive(client.socket.Get(), ended);
  TakeLines(id);
  if (ended || client.received.size() > kLongestLine) {
    io_.Pause(client.watch, true);
    PostCall(Now(), this, [this, id] { Drop(id); });
  }
}

void LineServer::TakeLines(int id) {
  std::string& text = clients_.at(id).received;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
    std::string line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    text.erase(0, end + 1);
    PostCall(Now(), this, [this, id, line] { AnswerLine(id, line); });
  }
}

void LineServer::AnswerLine(int id, const std::string& line) {
  const std::string answer = answer_(line);
  const auto found = clients_.find(id);
  if (found != clients_.end()) SendAll(found->second.socket.Get(), answer + kEnd);
}

std::string AskLineServer(int port, const std::string& line, int limit_ms) {
  FileHandle socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) FailWithErrno(PlaceText(port));
  const sockaddr_in address = Loopback(port);
  const auto* plain = reinterpret_cast<const sockaddr*>(&address);
  if (Retried([&] { return ::connect(socket.Get(), plain, sizeof address); }) != 0) {
    FailWithErrno(PlaceText(port));
  }
  SendAll(socket.Get(), line + "\n");
  std::string answer;
  bool ended = false;
  while (!ended) {
    pollfd waiting{socket.Get(), POLLIN, 0};
    if (Retried([&] { return ::poll(&waiting, 1, limit_ms); }) <= 0) break;
    answer += Receive(socket.Get(), ended);
    const std::size_t end = answer.find(kEnd);
    if (end != std::string::npos) return answer.substr(0, end);
  }
  throw RuntimeFault(PlaceText(port) + ": no answer to \"" + line + "\"");
}

}  // namespace penlog
