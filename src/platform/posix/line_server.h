// Orders to a program as lines of text over loopback: one line in, an answer of any number of
// lines out, an empty line behind it. For the control of the simulated rig from another process.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/io_watcher.h"
#include "platform/posix/file_handle.h"

namespace penlog {

class LineServer {
 public:
  /// Gets a line without its end; its result, without an empty line in it, is sent back. Runs in
  /// a yield.
  using Answer = std::function<std::string(const std::string& line)>;

  /// Listens on 127.0.0.1; port 0: the system chooses one. Raises a `RuntimeFault` when the port
  /// is taken.
  LineServer(IoWatcher& io, int port, Answer answer);
  ~LineServer();
  LineServer(const LineServer&) = delete;
  LineServer& operator=(const LineServer&) = delete;

  int Port() const { return port_; }

 private:
  struct Client {
    FileHandle socket;
    int watch = 0;
    std::string received;
  };
  void TakeClient();
  void Read(int id);
  void TakeLines(int id);
  void AnswerLine(int id, const std::string& line);
  void Drop(int id);

  IoWatcher& io_;
  Answer answer_;
  FileHandle listener_;
  int watch_ = 0;
  int port_ = 0;
  std::map<int, Client> clients_;
  int last_id_ = 0;
};

/// Sends one line to such a server and waits, outside of any yield, at most `limit_ms` for the
/// answer. Raises a `RuntimeFault` when nobody listens or no whole answer comes.
std::string AskLineServer(int port, const std::string& line, int limit_ms = 2000);

}  // namespace penlog
