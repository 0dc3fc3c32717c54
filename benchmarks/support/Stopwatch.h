#pragma once

#include <sys/resource.h>

#include <chrono>

namespace pelorino::bench {

/// Microseconds that have passed since it was made.
class Stopwatch final {
 public:
  [[nodiscard]] double microseconds() const {
    return std::chrono::duration<double, std::micro>(Clock::now() - start_).count();
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
};

/// Microseconds of processor time that all threads of the process have used since it was made.
class ProcessorTime final {
 public:
  [[nodiscard]] double microseconds() const { return inProcess() + inKernel(); }
  [[nodiscard]] double inKernel() const { return microseconds(used().ru_stime) - kernelStart_; }

 private:
  [[nodiscard]] double inProcess() const { return microseconds(used().ru_utime) - processStart_; }
  static rusage used() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage;
  }
  static double microseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
  }
  double processStart_ = microseconds(used().ru_utime);
  double kernelStart_ = microseconds(used().ru_stime);
};

}  // namespace pelorino::bench
