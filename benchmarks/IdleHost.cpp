// A host for others to look at: `bench_idle_host FOLDER BACKEND` starts the library on a folder,
// prints how many microseconds `initialize` has kept it, and sleeps until its input ends.
// Built a second time without the library (BARE_HOST), it is what the first is compared with.

#include <cstdio>
#include <string>

#ifndef BARE_HOST
#include "Library.h"
#include "Stopwatch.h"
#endif

int main(int argc, char** argv) {
  if (argc != 3) return 2;
#ifndef BARE_HOST
  using namespace pelorino::bench;
  Library::describe(argv[1], argv[2]);
  const Stopwatch time;
  PLRAnalytics::initialize("benchmark");
  const double microseconds = time.microseconds();
  Library::drain();
  std::printf("%f\n", microseconds);
#else
  std::printf("%s\n", argv[1]);
#endif
  std::fflush(stdout);
  return std::getchar() == EOF ? 0 : 1;
}
