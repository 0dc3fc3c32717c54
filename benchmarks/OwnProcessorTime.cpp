// The processor time of the library for one event, on all its threads, without the store: this
// program replaces functions of SQLite, so that the statement that stores an event does nothing.

#include <dlfcn.h>
#include <sqlite3.h>

#include <cstring>
#include <string>

#include "Library.h"
#include "LocalBackend.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;

namespace {

/// Stands for the statement. Its address is all that matters.
char storingAnEvent = 0;
sqlite3_int64 eventsStored = 0;

bool isNothing(const sqlite3_stmt* statement) {
  return reinterpret_cast<const char*>(statement) == &storingAnEvent;
}

template <class Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

#define REAL(name) static const auto real = next<decltype(&name)>(#name)

}  // namespace

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int sqlite3_prepare_v2(sqlite3* database, const char* sql, int size, sqlite3_stmt** made,
                                const char** rest) {
  REAL(sqlite3_prepare_v2);
  if (std::strncmp(sql, "INSERT INTO events ", 19) != 0) {
    return real(database, sql, size, made, rest);
  }
  *made = reinterpret_cast<sqlite3_stmt*>(&storingAnEvent);
  return SQLITE_OK;
}

EXPORTED int sqlite3_step(sqlite3_stmt* statement) {
  REAL(sqlite3_step);
  if (!isNothing(statement)) return real(statement);
  ++eventsStored;
  return SQLITE_DONE;
}

EXPORTED sqlite3_int64 sqlite3_last_insert_rowid(sqlite3* database) {
  REAL(sqlite3_last_insert_rowid);
  return eventsStored > 0 ? eventsStored : real(database);
}

EXPORTED int sqlite3_bind_parameter_count(sqlite3_stmt* statement) {
  REAL(sqlite3_bind_parameter_count);
  return isNothing(statement) ? 3 : real(statement);
}

EXPORTED int sqlite3_bind_text(sqlite3_stmt* statement, int at, const char* text, int size,
                               void (*release)(void*)) {
  REAL(sqlite3_bind_text);
  return isNothing(statement) ? SQLITE_OK : real(statement, at, text, size, release);
}

EXPORTED int sqlite3_bind_int64(sqlite3_stmt* statement, int at, sqlite3_int64 value) {
  REAL(sqlite3_bind_int64);
  return isNothing(statement) ? SQLITE_OK : real(statement, at, value);
}

EXPORTED int sqlite3_reset(sqlite3_stmt* statement) {
  REAL(sqlite3_reset);
  return isNothing(statement) ? SQLITE_OK : real(statement);
}

EXPORTED int sqlite3_clear_bindings(sqlite3_stmt* statement) {
  REAL(sqlite3_clear_bindings);
  return isNothing(statement) ? SQLITE_OK : real(statement);
}

EXPORTED int sqlite3_finalize(sqlite3_stmt* statement) {
  REAL(sqlite3_finalize);
  return isNothing(statement) ? SQLITE_OK : real(statement);
}
}

int main(int argc, char** argv) {
  const TemporaryFolder folder;
  LocalBackend backend(9'999'999);
  const Library library(folder.file("data"), backend.url());
  backend.waitForConfiguration();
  Library::drain();

  measure("own", 15,
          {{.work = "The library's own processor time per event, store excluded",
            .unit = "us",
            .value = "own",
            .goal = Goal::valueAtMost(5)},
           {.work = "  of it in the kernel: fresh memory, waking the queue",
            .unit = "us",
            .value = "kernel"}},
          [](Values& values) {
            // In bursts, as a game calls. A queue of 20,000 calls would measure the memory for
            // them.
            constexpr int bursts = 20;
            constexpr int burst = 1'000;
            constexpr int count = bursts * burst;
            const PLRCustomEventParameters parameters = fiveParameters();
            const sqlite3_int64 before = eventsStored;
            const ProcessorTime time;
            for (int i = 0; i < bursts; ++i) {
              for (int j = 0; j < burst; ++j) PLRAnalytics::customEvent("boss_beaten", parameters);
              Library::drain();
            }
            values["own"] = time.microseconds() / count;
            values["kernel"] = time.inKernel() / count;
            if (eventsStored - before < count) throw std::runtime_error("the store was not there");
          });
  return run(argc, argv);
}
