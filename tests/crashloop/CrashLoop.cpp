#include "CrashLoop.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>

namespace pelorino::blackbox {

namespace json = boost::json;

namespace {

constexpr int eventsOfLife = 8;

/// Starting takes about the first half of this on an idle machine.
constexpr int longestStartMicroseconds = 30'000;
/// In this time what has been stored is delivered.
constexpr int longestDeliveryMicroseconds = 10'000;

const json::object quiet{{"logLevel", "info"}};

/// What stands between the two texts; empty when they are not there.
std::string between(const std::string& line, std::string_view before, std::string_view after) {
  const std::size_t start = line.find(before);
  if (start == std::string::npos) return {};
  const std::size_t from = start + before.size();
  const std::size_t end = line.find(after, from);
  return end == std::string::npos ? std::string() : line.substr(from, end - from);
}

}  // namespace

void CrashLoop::live() {
  ++lives_;
  if (upTo(2) == 0) spoil();
  HostProcess host(file_, backend_.url());
  load(host);
  waitABit(host);
  host.kill();
  takeDown(host);
}

/// Until a moment of the start, or one after some of the events: without these a slow machine would
/// see nothing but starts.
void CrashLoop::waitABit(HostProcess& host) {
  int longest = longestStartMicroseconds;
  if (upTo(3) > 0) {
    const auto events = static_cast<std::size_t>(upTo(eventsOfLife - 1) + 1);
    static_cast<void>(host.logs("t name: event", events));
    longest = longestDeliveryMicroseconds;
    if (upTo(9) == 0) longest *= 10;  // What has been left behind is caught up with.
  }
  std::this_thread::sleep_for(std::chrono::microseconds(upTo(longest)));
}

bool CrashLoop::recover() {
  HostProcess host(file_, backend_.url());
  host.initialize(quiet);
  const bool isDone = host.deliver();
  const bool isEnded = host.end() == 0;
  takeDown(host);
  return isEnded && isDone;
}

/// Orders something to go wrong with the next exchanges.
void CrashLoop::spoil() {
  const json::object faults[] = {
      {{"status", 503}},
      {{"drop", "before"}, {"times", 2}},
      {{"drop", "after"}, {"times", 2}},
      {{"truncate", true}},
      {{"delayMs", 10}},
      {{"garbage", true}},
  };
  const char* endpoint = upTo(9) == 0 ? "/analytics/config" : "/analytics/report";
  backend_.fault(endpoint, faults[upTo(std::size(faults) - 1)]);
}

void CrashLoop::load(HostProcess& host) {
  host.initialize(quiet);
  for (int i = 0; i < eventsOfLife; ++i) {
    host.customEvent("event " + std::to_string(lives_) + "-" + std::to_string(i));
    const int chance = upTo(11);
    if (chance < 4) host.sendBufferedEvents();
    if (chance == 4) host.run(R"({"op":"setUserId","userId":"ann"})");
    if (chance == 5) host.run(R"({"op":"setUserId","userId":""})");
    if (chance == 6) host.run(R"({"op":"host.didEnterBackground"})");
    if (chance == 7) host.run(R"({"op":"host.didBecomeActive"})");
  }
}

/// Takes down what a dead host has told in its log. "Create" is written behind the insertion.
void CrashLoop::takeDown(HostProcess& host) {
  static_cast<void>(host.logs("no line holds this: the end of the output is waited for"));
  std::set<std::string> succeeded;
  std::vector<Arrival>& arrivals = arrivals_.emplace_back();
  for (const std::string& line : host.linesWith("INFO ")) {
    const std::string name = between(line, "t name: ", "\\n");
    if (!name.empty()) stored_.insert(name);
    const std::string taken = between(line, "The report [", "] has been sent successfully");
    if (!taken.empty() && succeeded.insert(taken).second) arrivals.push_back({taken});
    const std::string sent = between(line, "Trying to send the Report [", "]");
    if (succeeded.contains(sent)) sentAfterSuccess_.push_back(sent);
    const auto earlier = lastArrivals_.find(sent);
    if (earlier != lastArrivals_.end()) earlier->second->isRepeated = true;
  }
  for (Arrival& arrival : arrivals) lastArrivals_[arrival.uuid] = &arrival;
}

CrashLoop::Account CrashLoop::account() {
  Account account;
  account.stored = stored_.size();
  account.sentAfterSuccess = sentAfterSuccess_;
  // Reports are deleted in the order in which they arrive: a kill keeps the last ones of its life.
  for (const auto& arrivals : arrivals_) {
    const auto kept = std::ranges::find_if(arrivals, &Arrival::isRepeated);
    if (!std::all_of(kept, arrivals.end(), std::mem_fn(&Arrival::isRepeated))) {
      account.keptTooLong.push_back(kept->uuid);
    }
  }
  account.integrity = file_.run("PRAGMA integrity_check");
  std::set<std::string> taken;
  for (const json::value& exchange : backend_.received("/analytics/report")) {
    if (exchange.at("status") != 200) continue;
    const auto fault = json::value_to<std::string>(exchange.at("fault"));
    if (fault.find("truncate") != std::string::npos) ++account.lostAnswers;
    bool isRepeated = false;
    for (const auto& package : exchange.at("body").at("reports").at(0).at("packages").as_array()) {
      for (const auto& event : package.at("events").as_array()) {
        if (event.at("code") != "ce") continue;
        isRepeated |= !taken.insert(json::value_to<std::string>(event.at("name"))).second;
      }
    }
    if (isRepeated) ++account.repeatedDeliveries;
  }
  for (const std::string& name : stored_) {
    if (!taken.contains(name)) account.lost.push_back(name);
  }
  return account;
}

}  // namespace pelorino::blackbox
