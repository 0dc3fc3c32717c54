// What a public call costs the thread of the host, beside a line for an asynchronous logger.

#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>

#include "Library.h"
#include "LocalBackend.h"
#include "Samples.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;

namespace {

/// The library with a configuration under which no report is sent here, so that each call leads to
/// one insert and nothing else.
class Bench {
 public:
  Bench() {
    backend_.waitForConfiguration();
    Library::drain();
    spdlog::init_thread_pool(32768, 1);
    logger_ = std::make_shared<spdlog::async_logger>(
        "reference", std::make_shared<spdlog::sinks::basic_file_sink_mt>(folder_.file("log")),
        spdlog::thread_pool());
  }

  void call() const { PLRAnalytics::customEvent("boss_beaten", parameters_); }

  void log() const {
    logger_->info("boss_beaten boss={} heads={} ratio={} alone={} weapon={}", "hydra", 9, 0.25,
                  true, "two-handed sword");
  }

 private:
  TemporaryFolder folder_;
  LocalBackend backend_{9999999};
  Library library_{folder_.file("data"), backend_.url()};
  PLRCustomEventParameters parameters_ = fiveParameters();
  std::shared_ptr<spdlog::logger> logger_;
};

template <class Call>
Samples timesOf(int count, Call call) {
  Samples times;
  times.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const Stopwatch time;
    call();
    times.add(time.microseconds());
  }
  return times;
}

/// Calls at the given pace; only the call itself is timed.
template <class Call>
Samples timesAtPace(std::chrono::milliseconds period, int count, Call call) {
  Samples times;
  auto next = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) {
    next += period;
    std::this_thread::sleep_until(next);
    const Stopwatch time;
    call();
    times.add(time.microseconds());
  }
  return times;
}

void addMeasurements(const Bench& bench) {
  measure(
      "call", 15,
      {{.work = "customEvent, 5 parameters, on the host's thread: median",
        .unit = "us",
        .value = "call",
        .reference = "log",
        .goal = Goal::valueAtMost(0.5)},
       {.work = "  its 99th percentile",
        .unit = "us",
        .value = "call99",
        .reference = "log99",
        .goal = Goal::valueAtMost(2)},
       {.work = "  with making the parameters", .unit = "us", .value = "whole", .reference = "log"},
       {.work = "  (what reading the clock adds to each of these)",
        .unit = "us",
        .value = "clock"}},
      [&bench](Values& values) {
        constexpr int count = 4000;
        values.inTurn(
            [&] {
              const Samples times = timesOf(count, [&] { bench.call(); });
              values["call"] = times.median();
              values["call99"] = times.quantile(0.99);
              values["whole"] = timesOf(count / 4, [] {
                                  PLRAnalytics::customEvent("boss_beaten", fiveParameters());
                                }).median();
              Library::drain();
            },
            [&] {
              const Samples times = timesOf(count, [&] { bench.log(); });
              values["log"] = times.median();
              values["log99"] = times.quantile(0.99);
              std::this_thread::sleep_for(std::chrono::milliseconds(50));
            });
        values["clock"] = timesOf(count, [] {}).median();
      });
  measure(
      "paced", 15,
      {{.work = "One call a millisecond, the queue asleep between: median",
        .unit = "us",
        .value = "call",
        .reference = "log",
        .goal = Goal::ratioAtMost(1)},
       {.work = "  its 99th percentile", .unit = "us", .value = "call99", .reference = "log99"}},
      [&bench](Values& values) {
        constexpr std::chrono::milliseconds period{1};
        values.inTurn(
            [&] {
              const Samples times = timesAtPace(period, 300, [&] { bench.call(); });
              values["call"] = times.median();
              values["call99"] = times.quantile(0.99);
            },
            [&] {
              const Samples times = timesAtPace(period, 300, [&] { bench.log(); });
              values["log"] = times.median();
              values["log99"] = times.quantile(0.99);
            });
      });
}

/// For `strace`: calls on a busy queue, between two marks in its output.
int makeTracedCalls(const Bench& bench) {
  for (int i = 0; i < 2000; ++i) bench.call();
  ::syscall(SYS_getpgid, 0);
  for (int i = 0; i < 1000; ++i) bench.call();
  ::syscall(SYS_getpgid, 0);
  ::_exit(0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--header") == 0) {
    std::fputs(header().c_str(), stdout);
    return 0;
  }
  const Bench bench;
  if (argc == 2 && std::strcmp(argv[1], "--traced") == 0) return makeTracedCalls(bench);
  addMeasurements(bench);
  return run(argc, argv);
}
