// A host for others to look at: `bench_idle_host FOLDER BACKEND` starts the library on a folder,
// prints how many microseconds `initialize` has kept it, and sleeps until its input ends.
// Built a second time without the library (BARE_HOST), it is what the first is compared with: with
// a third argument it starts a thread and prints how long that has kept it.

#include <cstdio>
#include <string>
#include <thread>

#include "Stopwatch.h"
#ifndef BARE_HOST
#include "Library.h"
#endif

using namespace pelorino::bench;

int main(int argc, char** argv) {
  if (argc < 3) return 2;
#ifndef BARE_HOST
  Library::describe(argv[1], argv[2]);
  const Stopwatch time;
  PLRAnalytics::initialize("benchmark");
  const double microseconds = time.microseconds();
  Library::drain();
  std::printf("%f\n", microseconds);
#else
  if (argc > 3) {
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
