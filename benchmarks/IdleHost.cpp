// A host to be measured: `bench_idle_host FOLDER BACKEND` starts the library on a folder, prints
// how many microseconds `initialize` has taken, and sleeps until its input ends. It is built a
// second time without the library (BARE_HOST), for comparison: with the further argument `thread`
// it starts a thread and prints how long that has taken. With `used` the process starts another
// thread before that and waits for its end.

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
