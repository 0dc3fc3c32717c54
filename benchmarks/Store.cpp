// What it costs to store events durably and to read them again, beside bare SQLite. The files are
// in the folder of the environment variable PELORINO_BENCH_DISK, which should be on a real disk;
// comparisons of processor work have their files in memory.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include "BareStore.h"
#include "Library.h"
#include "LocalBackend.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;
namespace files = std::filesystem;

namespace {

/// A folder on the disk that is measured, removed at the end.
class DiskFolder {
 public:
  DiskFolder() {
    files::remove_all(path_);
    files::create_directories(path_);
  }
  ~DiskFolder() {
    std::error_code ignored;
    files::remove_all(path_, ignored);
  }
  DiskFolder(const DiskFolder&) = delete;
  DiskFolder& operator=(const DiskFolder&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  static std::string base() {
    const char* folder = std::getenv("PELORINO_BENCH_DISK");
    return folder == nullptr ? "." : folder;
  }
  const std::string path_ = base() + "/pelorino-bench-data";
};

/// Runs the library on `folder` until the configuration of a backend that wants reports of so many
/// events is stored. It counts from then on, also where no backend can be reached.
void storeConfiguration(const std::string& folder, int eventsPerReport) {
  {
    LocalBackend backend(eventsPerReport);
    const Library library(folder, backend.url());
    backend.waitForConfiguration();
  }
  const std::string stored =
      BareStore(Library::databaseFile(folder)).value("SELECT configuration FROM projects");
  const std::string wanted = "\"countForRequest\":" + std::to_string(eventsPerReport) + ",";
  if (stored.find(wanted) == std::string::npos) {
    throw std::runtime_error("the configuration was not stored");
  }
}

void reportEvents(int count) {
  const PLRCustomEventParameters parameters = fiveParameters();
  for (int i = 0; i < count; ++i) PLRAnalytics::customEvent("boss_beaten", parameters);
  Library::drain();
}

std::string numbersTo(int count) {
  return "WITH RECURSIVE numbers(n) AS (SELECT 1 WHERE " + std::to_string(count) +
         " > 0 UNION ALL SELECT n + 1 FROM numbers WHERE n < " + std::to_string(count) + ") ";
}

/// Leaves this many events in the table, and nothing else.
void fillEvents(const std::string& folder, int count) {
  BareStore store(Library::databaseFile(folder));
  store.run(
      "DELETE FROM events; DELETE FROM reports;" + numbersTo(count) +
      "INSERT INTO events (code, userId, eventJson) SELECT 'ce', (SELECT activeUserId FROM "
      "projects), '{\"code\":\"ce\",\"timestamp\":17000' || n || ',\"sessionId\":1700000000000,"
      "\"level\":3,\"name\":\"boss_beaten\",\"parameters\":{\"alone\":true,\"boss\":\"hydra\","
      "\"heads\":9,\"ratio\":0.25,\"weapon\":\"two-handed sword\"}}' FROM numbers");
}

/// The same for reports.
void fillReports(const std::string& folder, int count) {
  BareStore store(Library::databaseFile(folder));
  store.run(
      "CREATE TEMP TABLE kept AS SELECT userId, packagesJson FROM reports ORDER BY id DESC LIMIT "
      "1; DELETE FROM events; DELETE FROM reports;" +
      numbersTo(count) +
      "INSERT INTO reports (userId, packagesJson, uuid) SELECT userId, packagesJson, "
      "printf('%08d-0000-4000-8000-000000000000', n) FROM kept, numbers");
}

void addDurability(const DiskFolder& disk) {
  measure("durable", 9,
          {{.work = "Events made durable per second, on the disk",
            .unit = "/s",
            .value = "library",
            .reference = "bare",
            .goal = Goal::ratioAtLeast(0.95)}},
          [&disk](Values& values) {
            constexpr int count = 200;
            const std::string folder = disk.file("durable");
            const std::string bareFile = disk.file("bare.db");
            storeConfiguration(folder, 9'999'999);
            const Library library(folder, unreachableBackend);
            reportEvents(1);
            BareStore seen(Library::databaseFile(folder));
            files::remove(bareFile);
            const std::string json = seen.value("SELECT eventJson FROM events WHERE code = 'ce'");
            BareStore bare(bareFile);
            bare.run(seen.value("SELECT sql FROM sqlite_schema WHERE name = 'events'"));
            values.inTurn(
                [&] {
                  const Stopwatch time;
                  reportEvents(count);
                  values["library"] = count / time.microseconds() * 1e6;
                },
                [&] {
                  const Stopwatch time;
                  for (int i = 0; i < count; ++i) bare.insertEvent(json);
                  values["bare"] = count / time.microseconds() * 1e6;
                });
          });
}

/// Wall time and processor time for one event when `prepare` has filled the store, in
/// microseconds.
struct Cost {
  double wall = 0;
  double processor = 0;
};

/// Events come as in a game: ten, then time for the attempt to send them, which fails.
template <class Prepare>
Cost costPerEvent(const std::string& folder, Prepare prepare) {
  constexpr int rounds = 60;
  constexpr int eventsPerRound = 10;
  files::remove_all(folder);
  storeConfiguration(folder, eventsPerRound);
  {
    const Library library(folder, unreachableBackend);
    reportEvents(2 * eventsPerRound);
  }
  prepare();
  const Library library(folder, unreachableBackend);
  reportEvents(eventsPerRound);
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  Cost cost;
  const ProcessorTime processor;
  for (int i = 0; i < rounds; ++i) {
    const Stopwatch time;
    reportEvents(eventsPerRound);
    cost.wall += time.microseconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  cost.wall /= rounds * eventsPerRound;
  cost.processor = processor.microseconds() / (rounds * eventsPerRound);
  return cost;
}

void addBacklog(const TemporaryFolder& memory) {
  struct Case {
    const char* name;
    const char* work;
    const char* processor;
    void (*fill)(const std::string& folder);
  };
  static constexpr Case cases[] = {
      {"backlog_reports", "Cost per event, 100,000 waiting in 10,000 reports, no backend",
       "  its processor time, all threads",
       [](const std::string& folder) { fillReports(folder, 10'000); }},
      {"backlog_one_report", "Cost per event, 100,000 waiting in the report of a start",
       "  its processor time, all threads",
       [](const std::string& folder) { fillEvents(folder, 100'000); }},
  };
  for (const Case& one : cases) {
    measure(one.name, 5,
            {{.work = one.work,
              .unit = "us",
              .value = "full",
              .reference = "empty",
              .goal = Goal::ratioAtMost(1.1)},
             {.work = one.processor,
              .unit = "us",
              .value = "fullProcessor",
              .reference = "emptyProcessor"}},
            [&one, &memory](Values& values) {
              const std::string folder = memory.file("backlog");
              values.inTurn(
                  [&] {
                    const Cost cost = costPerEvent(folder, [&] { one.fill(folder); });
                    values["full"] = cost.wall;
                    values["fullProcessor"] = cost.processor;
                  },
                  [&] {
                    const Cost cost = costPerEvent(folder, [&] { fillReports(folder, 0); });
                    values["empty"] = cost.wall;
                    values["emptyProcessor"] = cost.processor;
                  });
            });
  }
}

double timeOfStart(const std::string& folder) {
  const Stopwatch time;
  const Library library(folder, unreachableBackend);
  return time.microseconds() / 1000;
}

double timeOfReading(const std::string& folder, const std::string& query) {
  const Stopwatch time;
  BareStore store(Library::databaseFile(folder));
  if (store.readAll(query) == 0) throw std::runtime_error("there was nothing to read");
  return time.microseconds() / 1000;
}

double timeOfPacking(const std::string& folder) {
  const Stopwatch time;
  BareStore store(Library::databaseFile(folder));
  store.packEvents();
  return time.microseconds() / 1000;
}

void addStart(const TemporaryFolder& memory) {
  const auto prepare = [](const std::string& folder) {
    files::remove_all(folder);
    storeConfiguration(folder, 10);
    const Library library(folder, unreachableBackend);
    reportEvents(20);
  };
  measure("start_reports", 7,
          {{.work = "Start with 100,000 stored events, in 10,000 reports",
            .unit = "ms",
            .value = "start",
            .reference = "select",
            .goal = Goal::ratioAtMost(1.5)}},
          [&memory, prepare](Values& values) {
            const std::string folder = memory.file("start");
            prepare(folder);
            fillReports(folder, 10'000);
            values.inTurn(
                [&] { values["start"] = timeOfStart(folder); },
                [&] { values["select"] = timeOfReading(folder, "SELECT * FROM reports"); });
          });
  measure("start_events", 7,
          {{.work = "Start with 100,000 stored events, unpacked: until it is done",
            .unit = "ms",
            .value = "start",
            .reference = "select",
            .goal = Goal::ratioAtMost(1.5)},
           {.work = "  beside bare SQLite that packs: one report in, the events out",
            .unit = "ms",
            .value = "start",
            .reference = "packing"},
           {.work = "  (the same with none)", .unit = "ms", .value = "empty"}},
          [&memory, prepare](Values& values) {
            const std::string folder = memory.file("start");
            const std::string copy = memory.file("copy");
            prepare(folder);
            fillEvents(folder, 0);
            values["empty"] = timeOfStart(folder);
            prepare(folder);
            fillEvents(folder, 100'000);
            // A start leaves no event behind.
            files::remove_all(copy);
            files::copy(folder, copy, files::copy_options::recursive);
            values.inTurn([&] { values["start"] = timeOfStart(folder); },
                          [&] {
                            values["select"] = timeOfReading(copy, "SELECT * FROM events");
                            values["packing"] = timeOfPacking(copy);
                          });
            for (const std::string& packed : {folder, copy}) {
              BareStore store(Library::databaseFile(packed));
              if (store.value("SELECT COUNT(*) FROM events WHERE code = 'ce'") != "0") {
                throw std::runtime_error("not all events were packed");
              }
            }
          });
}

}  // namespace

int main(int argc, char** argv) {
  const DiskFolder disk;
  const TemporaryFolder memory;
  addDurability(disk);
  addBacklog(memory);
  addStart(memory);
  return run(argc, argv);
}
