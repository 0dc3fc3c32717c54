// How fast a backlog is delivered, beside libcurl posting the same bodies.

#include <curl/curl.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <future>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "BareStore.h"
#include "Library.h"
#include "LocalBackend.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;

namespace {

constexpr int eventsPerReport = 10;
constexpr int reportCount = 300;

using AfterEach = std::function<void(std::size_t at)>;

/// Posts the bodies one after another on one connection.
void postAll(const std::string& url, const std::vector<std::string>& bodies,
             const AfterEach& afterEach) {
  CURL* easy = curl_easy_init();
  curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
  headers = curl_slist_append(headers, "Expect:");
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  CURLcode code = CURLE_OK;
  for (std::size_t i = 0; i < bodies.size() && code == CURLE_OK; ++i) {
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE, static_cast<long>(bodies[i].size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, bodies[i].c_str());
    code = curl_easy_perform(easy);
    afterEach(i);
  }
  curl_slist_free_all(headers);
  curl_easy_cleanup(easy);
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

/// Bodies per second. A new thread posts them, as a queue's new thread does: on one machine the
/// time of an exchange depends much on the processor that the system gives the thread.
double rateOfPosting(const LocalBackend& backend, const std::vector<std::string>& bodies,
                     const AfterEach& afterEach) {
  const Stopwatch time;
  std::async(std::launch::async, postAll, backend.url() + "/v2/analytics/report", std::cref(bodies),
             std::cref(afterEach))
      .get();
  return static_cast<double>(bodies.size()) / time.microseconds() * 1e6;
}

/// A table of reports with rows 1, 2, 3, ... that one thread deletes one by one, behind another.
class DeletingStore final {
 public:
  DeletingStore(const std::string& file, const std::vector<std::string>& bodies) : store_(file) {
    store_.run("CREATE TABLE reports (id INTEGER PRIMARY KEY, packagesJson TEXT); BEGIN");
    for (const std::string& body : bodies) {
      store_.run("INSERT INTO reports (packagesJson) VALUES ('" + body + "')");
    }
    store_.run("COMMIT");
    thread_ = std::thread([this, count = bodies.size()] {
      for (std::size_t i = 1; i <= count; ++i) {
        free_.acquire();
        store_.run("DELETE FROM reports WHERE id = " + std::to_string(i));
      }
    });
  }
  ~DeletingStore() { thread_.join(); }
  DeletingStore(const DeletingStore&) = delete;
  DeletingStore& operator=(const DeletingStore&) = delete;

  void deleteNext() { free_.release(); }

 private:
  BareStore store_;
  std::counting_semaphore<> free_{0};
  std::thread thread_;
};

void reportEvents(int count) {
  const PLRCustomEventParameters parameters = fiveParameters();
  for (int i = 0; i < count; ++i) PLRAnalytics::customEvent("boss_beaten", parameters);
  Library::drain();
}

/// Makes a backlog and has the library deliver it. Returns the reports per second; the backend
/// keeps their bodies.
double rateOfLibrary(LocalBackend& backend, BareStore& store) {
  backend.setTaking(false);
  reportEvents(eventsPerReport * reportCount);
  // The attempt that the last events have started must fail before the next one begins.
  backend.waitForQuiet();
  static_cast<void>(backend.takeBodies());
  const auto waiting =
      static_cast<std::size_t>(std::stoi(store.value("SELECT COUNT(*) FROM reports")));
  backend.setTaking(true);
  const Stopwatch time;
  PLRAnalytics::sendBufferedEvents();
  backend.waitForReports(waiting);
  const double rate = static_cast<double>(waiting) / time.microseconds() * 1e6;
  backend.waitForQuiet();
  Library::drain();  // Behind the deletions.
  return rate;
}

}  // namespace

int main(int argc, char** argv) {
  const TemporaryFolder folder;
  LocalBackend backend(eventsPerReport);
  const Library library(folder.file("data"), backend.url());
  BareStore store(Library::databaseFile(folder.file("data")));
  backend.waitForConfiguration();
  // What the bare loops post. The library makes its own bodies in each repetition.
  rateOfLibrary(backend, store);
  const auto bodies = backend.takeBodies();
  const auto nothing = [](std::size_t) {};
  const auto measureLibrary = [&](Values& values) {
    values["library"] = rateOfLibrary(backend, store);
    static_cast<void>(backend.takeBodies());
  };
  const auto measureBare = [&](Values& values, const char* key, const AfterEach& afterEach) {
    values[key] = rateOfPosting(backend, bodies, afterEach);
    static_cast<void>(backend.takeBodies());
  };

  measure(
      "delivery", 9,
      {{.work = "Delivery of a backlog: reports of 10 events per second",
        .unit = "/s",
        .value = "library",
        .reference = "bare",
        .goal = Goal::ratioAtLeast(0.9)},
       {.work = "  beside a bare loop whose rows another thread deletes",
        .unit = "/s",
        .value = "library",
        .reference = "deleting"}},
      [&](Values& values) {
        const auto measureDeleting = [&] {
          const std::string file = folder.file("bare.db");
          std::filesystem::remove(file);
          DeletingStore deleting(file, bodies);
          measureBare(values, "deleting", [&](std::size_t) { deleting.deleteNext(); });
        };
        values.inTurn(
            [&] { measureLibrary(values); },
            [&] { values.inTurn([&] { measureBare(values, "bare", nothing); }, measureDeleting); });
      });
  measure("delivery_far", 5,
          {{.work = "  to a backend that takes 1 ms to answer",
            .unit = "/s",
            .value = "library",
            .reference = "bare",
            .goal = Goal::ratioAtLeast(0.9)}},
          [&](Values& values) {
            backend.setDelay(std::chrono::milliseconds(1));
            values.inTurn([&] { measureLibrary(values); },
                          [&] { measureBare(values, "bare", nothing); });
            backend.setDelay({});
          });
  return run(argc, argv);
}
