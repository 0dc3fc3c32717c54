// How fast what has gathered leaves the device, beside libcurl posting the same bodies.

#include <curl/curl.h>

#include <stdexcept>
#include <string>
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

/// Posts the bodies one after another on one connection.
void postAll(const std::string& url, const std::vector<std::string>& bodies) {
  CURL* easy = curl_easy_init();
  curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
  headers = curl_slist_append(headers, "Expect:");
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  CURLcode code = CURLE_OK;
  for (const std::string& body : bodies) {
    if (code != CURLE_OK) break;
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body.c_str());
    code = curl_easy_perform(easy);
  }
  curl_slist_free_all(headers);
  curl_easy_cleanup(easy);
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

void reportEvents(int count) {
  const PLRCustomEventParameters parameters = fiveParameters();
  for (int i = 0; i < count; ++i) PLRAnalytics::customEvent("boss_beaten", parameters);
  Library::drain();
}

}  // namespace

int main(int argc, char** argv) {
  const TemporaryFolder folder;
  LocalBackend backend(eventsPerReport);
  const Library library(folder.file("data"), backend.url());
  BareStore store(Library::databaseFile(folder.file("data")));
  backend.waitForConfiguration();

  measure("delivery", 9,
          {{.work = "Delivery of a backlog: reports of 10 events per second",
            .unit = "/s",
            .value = "library",
            .reference = "bare",
            .goal = Goal::ratioAtLeast(0.9)}},
          [&](Values& values) {
            backend.setTaking(false);
            reportEvents(eventsPerReport * reportCount);
            // The attempt that the last events have set off must have failed before the next
            // begins.
            backend.waitForQuiet();
            static_cast<void>(backend.takeBodies());
            const auto waiting =
                static_cast<std::size_t>(std::stoi(store.value("SELECT COUNT(*) FROM reports")));
            backend.setTaking(true);
            const Stopwatch time;
            PLRAnalytics::sendBufferedEvents();
            backend.waitForReports(waiting);
            values["library"] = static_cast<double>(waiting) / time.microseconds() * 1e6;
            backend.waitForQuiet();
            Library::drain();  // Behind the deletions.

            const auto bodies = backend.takeBodies();
            const Stopwatch bareTime;
            postAll(backend.url() + "/v2/analytics/report", bodies);
            values["bare"] = static_cast<double>(bodies.size()) / bareTime.microseconds() * 1e6;
            static_cast<void>(backend.takeBodies());
          });
  return run(argc, argv);
}
