// A host for others to look at: `bench_idle_host FOLDER BACKEND` starts the library on a folder,
// prints how many microseconds `initialize` has kept it, and sleeps until its input ends.
// Built a second time without the library (BARE_HOST), it is what the first is compared with: with
// the further argument `thread` it starts a thread and prints how long that has kept it.
// With `used` the process has started another thread before, and has seen it end.

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <thread>

#include "Stopwatch.h"
#ifndef BARE_HOST
#include "Library.h"
#endif

using namespace pelorino::bench;

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const auto isAsked = [&](std::string_view word) {
    return std::find(argv + 3, argv + argc, word) != argv + argc;
  };
  if (isAsked("used")) std::thread([] {}).join();
#ifndef BARE_HOST
  Library::describe(argv[1], argv[2]);
  const Stopwatch time;
  PLRAnalytics::initialize("benchmark");
  const double microseconds = time.microseconds();
  Library::drain();
  std::printf("%f\n", microseconds);
#else
  if (isAsked("thread")) {
    const Stopwatch time;
    std::thread thread([] {});
    const double microseconds = time.microseconds();
    thread.join();
    std::printf("%f\n", microseconds);
  } else {
    std::printf("%s\n", argv[1]);
  }
#endif
  std::fflush(stdout);
  return std::getchar() == EOF ? 0 : 1;
}
