#include "CrashLoop.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <utility>

#include "LegacyArchive.h"

namespace pelorino::blackbox {

namespace json = boost::json;

namespace {

constexpr int eventsOfLife = 8;

/// Starting takes about the first half of this on an idle machine.
constexpr int longestStartMicroseconds = 30'000;
/// In this time what has been stored is delivered.
constexpr int longestDeliveryMicroseconds = 10'000;

constexpr const char* askForCategories = R"({"op":"eventsRouter.getMessagingCategories"})";

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
  changeCategories();
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
  host.run(askForCategories);
  const bool isAnswered = host.logs(R"("op":"eventsRouter.getMessagingCategories","result")");
  const bool isDone = isAnswered && host.deliver();
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

/// What the backend answers from now on: some of four categories come, some go.
void CrashLoop::changeCategories() {
  json::array come, go;
  for (const char* id : {"a", "b", "c", "d"}) {
    if (upTo(1) == 0) come.push_back({{"id", id}, {"buttons", json::array()}});
    if (upTo(2) == 0) go.emplace_back(id);
  }
  backend_.answer("/messaging/config", {{"pushCategories",
                                         {{"version", ++categoriesVersion_},
                                          {"categories", std::move(come)},
                                          {"removed", std::move(go)}}}});
}

void CrashLoop::comeOver() {
  const DatabaseFile file;
  const std::filesystem::path folder = file.support() + "/pelorino_black-box";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "UsersStorage", std::ios::binary) << archiveOfAnn();
  const auto isCutShort = [&file] {
    try {
      return file.run("SELECT isMigrated FROM projects WHERE EXISTS (SELECT * FROM users)") == "0";
    } catch (const std::runtime_error&) {
      return false;  // There are no tables yet.
    }
  };
  for (int kills = upTo(3); kills > 0; --kills) {
    HostProcess host(file, backend_.url());
    host.initialize(quiet);
    std::this_thread::sleep_for(std::chrono::microseconds(upTo(longestStartMicroseconds)));
    host.kill();
    if (isCutShort()) ++cutShort_;
  }
  HostProcess host(file, backend_.url());
  host.initialize(quiet);
  const bool isEnded = host.drain() && host.end() == 0;
  const std::string stored = file.run(
      "SELECT isMigrated, count(*), users.userId, level, users.id = activeUserId,"
      " (SELECT count(*) > 0 FROM peopleCards WHERE userId = users.id),"
      " (SELECT group_concat(DISTINCT step) FROM tutorialMarkEntry WHERE userId = users.id),"
      " (SELECT group_concat(DISTINCT orderId) FROM realPaymentMarks) FROM projects, users");
  ++cameOver_;
  if (!isEnded || stored != "1|1|ann|7|1|1|-1,3|t1,t2") wronglyCameOver_.push_back(stored);
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
    if (chance == 8) host.run(askForCategories);
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
  account.repeatedCategories =
      file_.run("SELECT identifier FROM messagingCategory GROUP BY identifier HAVING count(*) > 1");
  account.hasLastCategories =
      file_.run("SELECT categoriesVersion FROM projects") == std::to_string(categoriesVersion_);
  account.cameOver = cameOver_;
  account.cutShort = cutShort_;
  account.wronglyCameOver = wronglyCameOver_;
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
