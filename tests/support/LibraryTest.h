#pragma once

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <algorithm>
#include <boost/json.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "DatabaseFile.h"
#include "DeterministicTest.h"
#include "LogCapture.h"

namespace pelorino {

/// The whole library on virtual time: its public face on one side, a backend that is a function on
/// the other, and a real database file in between.
class LibraryTest : public DeterministicTest {
 protected:
  static constexpr const char* device = "11111111-2222-3333-4444-555555555555";

  LibraryTest() {
    describe(device);
    PLRHost::setApplicationState(PLRApplicationState::active);
    system.http().setHandler([this](const HttpRequest& request) { return answer(request); });
  }

  void TearDown() override {
    stop();
    DeterministicTest::TearDown();
  }

  void describe(const std::string& vendorIdentifier,
                std::function<bool()> integrityProbe = {}) const {
    PLRHostDescription host;
    host.applicationName = "game";
    host.applicationVersion = "1.4";
    host.applicationBuildVersion = "77";
    host.bundleIdentifier = "com.example.game";
    host.supportDirectory = file.support();
    host.keyStoreFile = file.support() + ".keys";
    host.vendorIdentifier = vendorIdentifier;
    host.preferredLanguages = {"en-GB"};
    host.region = "GB";
    host.integrityProbe = std::move(integrityProbe);
    PLRHost::describe(host);
  }

  void start(const PLRAnalyticsConfiguration& decided = {}) {
    PLRAnalytics::initialize("key", decided);
    system.runUntilIdle();
  }
  void start(const std::string& userId) {
    PLRAnalyticsConfiguration decided;
    decided.userId = userId;
    start(decided);
  }
  void stop() {
    PLREngineWrapper::destroySDK();
    system.runUntilIdle();
  }
  void restart(const std::string& userId) {
    stop();
    start(userId);
  }
  void report(const std::string& name) {
    PLRAnalytics::customEvent(name);
    system.runUntilIdle();
  }
  void send() {
    PLRAnalytics::sendBufferedEvents();
    system.runUntilIdle();
  }

  /// From now on the backend sends a configuration with `more` behind what it must hold.
  void configure(const std::string& more = "", bool isCountingUsers = true) {
    configuration.answers.clear();
    configuration.answer(
        200, std::string(R"({"timeForRequest":120000,"countForRequest":10,"eventParamsCount":20,)"
                         R"("sessionTimeout":600000,"serverTime":1,"aliveTimeout":300000,)"
                         R"("userCounting":)") +
                 (isCountingUsers ? "true" : "false") + more + "}");
  }

  /// What the backend answers. To reports: the scripted statuses in turn, then `usualStatus`. No
  /// status is a connection that fails.
  HttpResponse answer(const HttpRequest& request) {
    for (auto* script : {&configuration, &identification, &receipts, &categories}) {
      if (request.url.find(script->path) == std::string::npos) continue;
      script->requests.push_back(request);
      if (script->onRequest) script->onRequest();
      if (script->answers.empty()) return {.status = 404, .body = {}, .error = {}};
      const HttpResponse next = script->answers.front();
      if (script->answers.size() > 1) script->answers.erase(script->answers.begin());
      return next;
    }
    auto status = usualStatus;
    if (!statuses.empty()) {
      status = statuses.front();
      statuses.erase(statuses.begin());
    }
    if (status == 200) delivered.push_back(request);
    if (!status) return {.status = {}, .body = {}, .error = "connection refused"};
    return {.status = status, .body = {}, .error = {}};
  }

  /// Codes of the events of one delivered request, custom events by their names, a list a package.
  static std::vector<std::string> eventsOf(const HttpRequest& request) {
    std::vector<std::string> packages;
    const auto body = boost::json::parse(*request.body);
    for (const auto& report : body.at("reports").as_array()) {
      for (const auto& package : report.at("packages").as_array()) {
        std::string& events = packages.emplace_back();
        for (const auto& event : package.at("events").as_array()) {
          const auto& object = event.as_object();
          const auto* name = object.if_contains("name");
          if (!events.empty()) events += ' ';
          events += std::string((name ? *name : object.at("code")).as_string());
        }
      }
    }
    return packages;
  }

  /// The same of all requests that are delivered by the time nothing is left to do.
  std::vector<std::string> deliveredEvents() const {
    system.runUntilIdle();
    std::vector<std::string> all;
    for (const auto& request : delivered)
      std::ranges::copy(eventsOf(request), std::back_inserter(all));
    return all;
  }
  std::ptrdiff_t timesDelivered(const std::string& package) const {
    return std::ranges::count(deliveredEvents(), package);
  }

  static bool holds(const HttpRequest& request, const std::string& json) {
    return request.body->find(json) != std::string::npos;
  }
  static std::optional<std::string> header(const HttpRequest& request, const std::string& name) {
    for (const auto& [key, value] : request.headers) {
      if (key == name) return value;
    }
    return std::nullopt;
  }

  /// What the file holds once nothing is left to do; `file.run` does not wait for that.
  std::string rows(const std::string& sql) const {
    system.runUntilIdle();
    return file.run(sql);
  }

  [[nodiscard]] bool logged(const std::string& line) const { return timesLogged(line) > 0; }
  [[nodiscard]] std::ptrdiff_t timesLogged(const std::string& line) const {
    system.runUntilIdle();
    const auto lines = log.lines();
    return std::ranges::count(lines, line);
  }

  /// The lines that an action leads to.
  std::vector<std::string> linesOf(const std::function<void()>& action) const {
    system.runUntilIdle();
    const auto before = static_cast<std::ptrdiff_t>(log.lines().size());
    action();
    system.runUntilIdle();
    auto lines = log.lines();
    lines.erase(lines.begin(), lines.begin() + before);
    return lines;
  }
  /// What a getter answers.
  template <class Answer, class Getter>
  Answer answerOf(Getter getter) const {
    std::optional<Answer> answer;
    getter([&](const Answer& given) { answer = given; });
    system.runUntilIdle();
    return answer.value();
  }

  /// The exchanges of an endpoint other than that of reports: its answers in turn, the last for
  /// ever.
  struct Script {
    std::string path;
    std::vector<HttpResponse> answers = {};
    std::vector<HttpRequest> requests = {};
    std::function<void()> onRequest = {};  ///< Called while the exchange is under way.

    void answer(int status, std::string body) {
      answers.push_back({.status = status, .body = std::move(body), .error = {}});
    }
  };

  DatabaseFile file;
  LogCapture log;
  Script configuration{.path = "/analytics/config"};
  Script identification{.path = "/analytics/identification"};
  Script receipts{.path = "/verify/payment"};
  Script categories{.path = "/messaging/config"};
  std::vector<std::optional<int>> statuses;
  std::optional<int> usualStatus = 200;
  std::vector<HttpRequest> delivered;
};

}  // namespace pelorino
