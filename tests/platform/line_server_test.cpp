#include "platform/posix/line_server.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "platform/runtime_fault.h"
#include "support/real_world.h"

namespace penlog {
namespace {

/// Asks from a thread of its own, as another process does, while this one yields.
std::string Ask(int port, const std::string& line, int limit_ms = 2000) {
  std::string answer;
  bool done = false;
  std::promise<std::string> promise;
  auto future = promise.get_future();
  std::thread other([&] {
    try {
      promise.set_value(AskLineServer(port, line, limit_ms));
    } catch (const RuntimeFault& fault) {
      promise.set_value(std::string("fault: ") + fault.what());
    }
  });
  RealWorld::RunFor(5 * kSecond, [&] {
    done = future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    return done;
  });
  other.join();
  return future.get();
}

TEST(LineServer, AnswersALine) {
  RealWorld world;
  LineServer server(world.clock.Io(), 0, [](const std::string& line) { return "<" + line + ">"; });
  EXPECT_GT(server.Port(), 0);
  EXPECT_EQ(Ask(server.Port(), "push 1"), "<push 1>");
  EXPECT_EQ(Ask(server.Port(), ""), "<>");
}

TEST(LineServer, AnswerMayHaveManyLines) {
  RealWorld world;
  LineServer server(world.clock.Io(), 0, [](const std::string&) { return "a\nb\nc"; });
  EXPECT_EQ(Ask(server.Port(), "help"), "a\nb\nc");
}

TEST(LineServer, TakenPortIsAFault) {
  RealWorld world;
  LineServer server(world.clock.Io(), 0, [](const std::string&) { return ""; });
  EXPECT_THROW(LineServer(world.clock.Io(), server.Port(), nullptr), RuntimeFault);
}

TEST(AskLineServer, FailsWhenNobodyListensOrAnswers) {
  RealWorld world;
  int port = 0;
  {
    LineServer server(world.clock.Io(), 0, nullptr);
    port = server.Port();
    EXPECT_THROW(AskLineServer(port, "push 1", 50), RuntimeFault) << "nobody yields here";
  }
  EXPECT_THROW(AskLineServer(port, "push 1", 50), RuntimeFault);
}

}  // namespace
}  // namespace penlog
