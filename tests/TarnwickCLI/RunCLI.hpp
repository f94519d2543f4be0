#pragma once
// Runs tarnwick-cli as a user does, with its output collected, for the end-to-end tests.

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace tarnwick::testing {

struct Result {
  int status = -1;
  std::string out;
  std::string err;
  std::string lastLine() const {
    std::string text = out;
    while (!text.empty() && text.back() == '\n')
      text.pop_back();
    auto at = text.rfind('\n');
    return at == std::string::npos ? text : text.substr(at + 1);
  }
};

// The argument vector of `program` with `args`, pointing into `words`, which must outlive it.
inline std::vector<char*> argumentVector(std::vector<std::string>& words, const char* program,
                                         const std::vector<std::string>& args) {
  words = {program};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& w : words)
    argv.push_back(w.data());
  argv.push_back(nullptr);
  return argv;
}

// How a run of the program is watched, and what happens once its output says something.
struct RunOptions {
  std::string language = "en";
  const char* program = TARNWICK_CLI;
  /// Once standard output contains `when`, `then` happens.
  std::string when;
  enum class Then {
    /// SIGINT, as Ctrl-C.
    interrupt,
    /// Standard output is read no more, as a reader at the end of a pipe that goes away; then
    /// `call` runs, if set.
    closeOutput,
    /// `call` runs with the program's process id; the program goes on.
    call,
  } then = Then::interrupt;
  std::function<void(pid_t)> call;
  /// Called with everything read so far whenever more output arrives: for tests that act at
  /// several points of a run.
  std::function<void(const Result&)> onOutput;
  /// Standard output on a terminal this many columns wide instead of a pipe.
  unsigned short terminalColumns = 0;
  /// More of the environment ("NAME=value" each).
  std::vector<std::string> environment;
};

// Runs the program as `options` say and collects its output. A terminal's output is taken raw:
// "\n" stays "\n".
inline Result runCLI(const std::vector<std::string>& args, const RunOptions& options) {
  int out[2], err[2];
  EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
  if (options.terminalColumns > 0) {
    out[0] = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_GE(out[0], 0);
    EXPECT_EQ(::grantpt(out[0]), 0);
    EXPECT_EQ(::unlockpt(out[0]), 0);
    out[1] = ::open(::ptsname(out[0]), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    ::tcgetattr(out[1], &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(out[1], TCSANOW, &raw);
    winsize size{};
    size.ws_row = 24;
    size.ws_col = options.terminalColumns;
    ::ioctl(out[1], TIOCSWINSZ, &size);
  } else {
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  posix_spawn_file_actions_adddup2(&actions, err[1], 2);
  std::vector<std::string> words;
  std::vector<char*> argv = argumentVector(words, options.program, args);
  std::vector<std::string> env = {"LANGUAGE=" + options.language, "LANG=C.UTF-8",
                                  "PATH=/usr/bin:/bin"};
  env.insert(env.end(), options.environment.begin(), options.environment.end());
  std::vector<char*> envp;
  for (auto& e : env)
    envp.push_back(e.data());
  envp.push_back(nullptr);
  pid_t pid = 0;
  EXPECT_EQ(posix_spawn(&pid, options.program, &actions, nullptr, argv.data(), envp.data()), 0);
  posix_spawn_file_actions_destroy(&actions);
  ::close(out[1]);
  ::close(err[1]);

  Result result;
  bool triggered = false;
  pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
  int open = 2;
  bool hung = false;
  while (open > 0) {
    if (::poll(fds, 2, 20000) <= 0) {
      hung = true;
      break;
    }
    for (int i = 0; i < 2; ++i) {
      if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      char buffer[4096];
      ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
      // A terminal whose last writer is gone reads EIO.
      if (n <= 0) {
        fds[i].fd = -1;
        --open;
        continue;
      }
      (i == 0 ? result.out : result.err).append(buffer, static_cast<std::size_t>(n));
      if (options.onOutput) options.onOutput(result);
    }
    if (!options.when.empty() && !triggered && result.out.find(options.when) != std::string::npos) {
      triggered = true;
      switch (options.then) {
      case RunOptions::Then::closeOutput:
        ::close(out[0]);
        out[0] = -1;
        fds[0].fd = -1;
        --open;
        if (options.call) options.call(pid);
        break;
      case RunOptions::Then::call: options.call(pid); break;
      case RunOptions::Then::interrupt:
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        ::kill(pid, SIGINT);
        break;
      }
    }
  }
  if (out[0] >= 0) ::close(out[0]);
  ::close(err[0]);
  int status = 0;
  // Output stopped for 20 s without an end: the program hangs. Fail the test, not the suite.
  if (hung) {
    ADD_FAILURE() << "tarnwick-cli did not end";
    ::kill(pid, SIGKILL);
  }
  ::waitpid(pid, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

// Runs tarnwick-cli (or `program`) in `language`; with `interruptWhen`, sends SIGINT once stdout
// contains it.
inline Result runCLI(const std::vector<std::string>& args, const std::string& interruptWhen = {},
                     const std::string& language = "en", const char* program = TARNWICK_CLI) {
  RunOptions options;
  options.when = interruptWhen;
  options.language = language;
  options.program = program;
  return runCLI(args, options);
}

// A program left running for a test (tarnwick-simboard serving a board), ended with SIGTERM
// when the test is done. Its first line of output is kept: where it serves.
class RunningProgram {
public:
  RunningProgram(const char* program, const std::vector<std::string>& args) {
    int out[2];
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    std::vector<std::string> words;
    std::vector<char*> argv = argumentVector(words, program, args);
    EXPECT_EQ(posix_spawn(&pid_, program, &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    pollfd wait{out[0], POLLIN, 0};
    char c = 0;
    while (::poll(&wait, 1, 20000) > 0 && ::read(out[0], &c, 1) == 1 && c != '\n')
      firstLine_ += c;
    ::close(out[0]);
  }
  ~RunningProgram() {
    ::kill(pid_, SIGTERM);
    int status = 0;
    ::waitpid(pid_, &status, 0);
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  const std::string& firstLine() const { return firstLine_; }

private:
  pid_t pid_ = -1;
  std::string firstLine_;
};

} // namespace tarnwick::testing
