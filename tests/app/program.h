// A program of this project, started by a test.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

namespace penlog {

class Program {
 public:
  Program(const std::string& name, const std::vector<std::string>& words) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (::pipe(input.data()) != 0 || ::pipe(output.data()) != 0) ADD_FAILURE() << "no pipe";
    std::vector<std::string> all = {std::string(PENLOG_BINARY_DIR) + "/bin/" + name};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (auto& word : all) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    process_ = ::fork();
    if (process_ == 0) {
      ::dup2(input[0], STDIN_FILENO);
      ::dup2(output[1], STDOUT_FILENO);
      ::dup2(output[1], STDERR_FILENO);
      for (const int fd : {input[0], input[1], output[0], output[1]}) ::close(fd);
      ::execv(arguments[0], arguments.data());
      ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
    ::fcntl(output_, F_SETFL, O_NONBLOCK);
  }
  ~Program() {
    if (process_ > 0) {
      ::kill(process_, SIGKILL);
      ::waitpid(process_, nullptr, 0);
    }
    ::close(input_);
    ::close(output_);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void Type(const std::string& line) const {
    const std::string text = line + "\n";
    EXPECT_EQ(::write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  /// All that it has printed so far.
  const std::string& Printed() {
    std::array<char, 4096> part{};
    for (;;) {
      const ssize_t count = ::read(output_, part.data(), part.size());
      if (count <= 0) return printed_;
      printed_.append(part.data(), static_cast<std::size_t>(count));
    }
  }
  void Signal(int number) const { ::kill(process_, number); }
  /// True once it has ended; `ExitCode` is then known.
  bool Ended() {
    if (process_ <= 0) return true;
    int status = 0;
    if (::waitpid(process_, &status, WNOHANG) != process_) return false;
    process_ = 0;
    exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end_signal_ = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return true;
  }
  int ExitCode() const { return exit_code_; }
  /// The signal that ended it; 0 if none did.
  int EndSignal() const { return end_signal_; }

 private:
  pid_t process_ = 0;
  int input_ = -1;
  int output_ = -1;
  int exit_code_ = -1;
  int end_signal_ = 0;
  std::string printed_;
};

}  // namespace penlog
