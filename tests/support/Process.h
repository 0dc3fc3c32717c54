#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace pelorino {

/// A child process with pipes at its standard input and output; what it writes to the standard
/// error goes to that of the test. Killed at the end if it still runs.
///
/// Threads: belongs to one thread. A thread of its own reads the output, so that the child never
/// blocks on a full pipe.
class Process final {
 public:
  /// Long enough for a loaded machine with sanitizers; a test that passes never waits for it.
  static constexpr std::chrono::seconds deadline{60};

  explicit Process(std::vector<std::string> arguments) {
    ::signal(SIGPIPE, SIG_IGN);
    int input[2];
    int output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) fail("no pipe");
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const int error =
        ::posix_spawn(&pid_, pointers[0], &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
    if (error != 0) fail("cannot start " + arguments[0]);
    reader_ = std::thread([this] { readLines(); });
  }

  ~Process() {
    closeInput();
    if (!exitCode_) {
      ::kill(pid_, SIGKILL);
      reap(0);
    }
    reader_.join();
    ::close(output_);
  }

  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }

  /// Writes the text and a line end. What a process that has ended does not read is lost.
  void writeLine(std::string text) {
    text += '\n';
    for (std::size_t written = 0; written < text.size();) {
      const ssize_t count = ::write(input_, text.data() + written, text.size() - written);
      if (count < 0) return;
      written += static_cast<std::size_t>(count);
    }
  }

  void closeInput() {
    if (input_ >= 0) ::close(input_);
    input_ = -1;
  }

  void signal(int number) const { ::kill(pid_, number); }

  /// Runs `work` while no thread of the process does.
  template <class Work>
  auto whileStopped(Work work) {
    siginfo_t ignored;
    ::kill(pid_, SIGSTOP);
    // WNOWAIT leaves an exit, if that comes instead, for reap().
    ::waitid(P_PID, static_cast<id_t>(pid_), &ignored, WSTOPPED | WEXITED | WNOWAIT);
    const auto result = work();
    ::kill(pid_, SIGCONT);
    return result;
  }

  /// The code, or 128 and the signal's number; absent when the process has not ended in time.
  std::optional<int> waitForExit() {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!exitCode_ && std::chrono::steady_clock::now() < end) {
      if (!reap(WNOHANG)) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return exitCode_;
  }

  /// The first `count` lines that `matches` holds for, as soon as they are there; fewer when the
  /// deadline or the end of the output comes first.
  std::vector<std::string> waitForLines(const std::function<bool(const std::string&)>& matches,
                                        std::size_t count = 1) {
    std::vector<std::string> found;
    const auto end = std::chrono::steady_clock::now() + deadline;
    std::unique_lock lock(mutex_);
    for (std::size_t next = 0; found.size() < count;) {
      if (next < lines_.size()) {
        if (matches(lines_[next])) found.push_back(lines_[next]);
        ++next;
      } else if (ended_ || changed_.wait_until(lock, end) == std::cv_status::timeout) {
        break;
      }
    }
    return found;
  }

  /// What the process has written up to now.
  std::vector<std::string> lines() {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  [[noreturn]] static void fail(const std::string& what) { throw std::runtime_error(what); }

  bool reap(int options) {
    int status = 0;
    if (::waitpid(pid_, &status, options) != pid_) return false;
    exitCode_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return true;
  }

  void readLines() {
    std::string rest;
    char bytes[65536];
    ssize_t count = 0;
    while ((count = ::read(output_, bytes, sizeof bytes)) > 0) {
      rest.append(bytes, static_cast<std::size_t>(count));
      const std::lock_guard lock(mutex_);
      std::size_t start = 0;
      for (std::size_t end; (end = rest.find('\n', start)) != std::string::npos; start = end + 1) {
        lines_.push_back(rest.substr(start, end - start));
      }
      rest.erase(0, start);
      changed_.notify_all();
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
  }

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::optional<int> exitCode_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> lines_;
  bool ended_ = false;
  std::thread reader_;
};

}  // namespace pelorino
