#include "Device.h"

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <exception>
#include <filesystem>
#include <fstream>
#include <utility>

#include "LegacyArchive.h"
#include "Logger.h"
#include "StatementWatch.h"
#include "Tables.h"

namespace pelorino {

using std::chrono::milliseconds;
using Kind = Record::Kind;

Device::Device(const LifePlan& plan, const Journal& journal)
    : plan_(plan),
      journal_(journal),
      system_(DeterministicSystem::instance()),
      dice_(plan.seedOf(0)),
      backend_(plan.seedOf(1'000'000'007), plan.number,
               [this](Kind kind, Row fields) { note(kind, std::move(fields)); }),
      sessionTimeout_(plan.sessionTimeout) {
  system_.reset(plan.seedOf(0));
  system_.setTime(plan.clock);
  system_.executor().useTolerance(true);
  for (const auto& [account, value] : plan.keyStore) {
    system_.keyStoreValues(keyStorePath_).byAccount.emplace(account, value);
  }
  system_.http().setLatency(
      [this](const HttpRequest& request) { return backend_.latency(request); });
  system_.http().setHandler(
      [this](const HttpRequest& request) { return backend_.answer(request); });
  FaultyDisk::install();
  StatementWatch::install([this](Kind kind, const Row& fields) { noteStored(kind, fields); });
  Logger::setLogLevel(PLRLogLevel::debug);
  PLREngineWrapper::setEngineLoggerMessageClosure(
      [this](PLRLogLevel, const std::string& line) { note(Kind::log, {line}); });
  describeHost();
  if (plan_.number == 1 && dice_.chance(30)) leaveLegacyData();
}

void Device::describeHost() const {
  PLRHostDescription host;
  host.applicationName = "game";
  host.applicationVersion = "1.4";
  host.applicationBuildVersion = "77";
  host.bundleIdentifier = "com.example.game";
  host.supportDirectory = plan_.folder;
  host.keyStoreFile = keyStorePath_;
  host.vendorIdentifier = "11111111-2222-3333-4444-555555555555";
  host.preferredLanguages = {"en-GB"};
  host.region = "GB";
  PLRHost::describe(host);
}

void Device::leaveLegacyData() {
  const auto write = [this](const std::string& path, const std::string& content) {
    const std::filesystem::path file = plan_.folder + "/" + path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  };
  const std::int64_t which = dice_.below(3);
  if (which != 0) write("pelorino_key/UsersStorage", archiveOfAnn(which == 1));
  if (which != 1) {
    write("pelorino/key/migrationData.json",
          R"({"userId":"ann","trackingAvailable":false,"level":7,"userCard":{"wins":2},)"
          R"("transactionIds":["t1","t2"],"tutorCompletedSteps":[-1,3]})");
  }
  note(Kind::hostCall, {"0", "leaves legacy data"});
}

void Device::note(Kind kind, Row fields) const {
  journal_.write({.kind = kind, .time = clock(), .fields = std::move(fields)});
}

void Device::noteStored(Kind kind, const Row& fields) {
  static const std::size_t configuration = 3 + placeOf(ProjectEntry::table, "configuration");
  if (kind == Kind::rowChange && fields[1] == "projects" && fields.size() > configuration &&
      fields[configuration]) {
    sessionTimeout_ = boost::json::parse(*fields[configuration]).at("sessionTimeout").as_int64();
  }
  note(kind, fields);
}

void Device::setDisk(FaultyDisk::Fault fault, std::int64_t percent) {
  FaultyDisk::set(fault, percent, static_cast<std::uint64_t>(dice_.below(1'000'000)));
}

void Device::start(bool inBackground) {
  // An application that becomes active says so, or an earlier start goes on waiting for it.
  if (isPaused_ && !inBackground) return becomeActive();
  PLRHost::setApplicationState(inBackground ? PLRApplicationState::background
                                            : PLRApplicationState::active);
  isPaused_ = inBackground;
}

void Device::becomeActive() {
  note(Kind::hostCall, {"0", "didBecomeActive"});
  PLRHost::didBecomeActive();
  isPaused_ = false;
}

void Device::goToBackground() {
  note(Kind::hostCall, {"0", "didEnterBackground"});
  PLRHost::willResignActive();
  PLRHost::didEnterBackground();
}

void Device::sleep(milliseconds span) {
  system_.advance(span);
  if (isPaused_) return;
  Row fields = {std::to_string(system_.pendingTimers())};
  for (const std::string& wait : system_.waits()) fields.emplace_back(wait);
  note(Kind::rest, std::move(fields));
}

void Device::call(const std::string& name, const std::function<void()>& make,
                  const Row& arguments) {
  Row fields = {std::to_string(++calls_), name};
  fields.insert(fields.end(), arguments.begin(), arguments.end());
  note(Kind::hostCall, std::move(fields));
  const auto mark = [this, number = std::to_string(calls_)](Kind kind) {
    PLRAnalytics::getCurrentLevel([this, number, kind](std::int64_t) { note(kind, {number}); });
  };
  mark(Kind::callBegins);
  make();
  mark(Kind::callEnds);
}

void Device::ask(const std::string& name,
                 const std::function<void(const std::string&, const Answer&)>& make) {
  const std::string number = std::to_string(calls_ + 1);
  call(name, [&] {
    make(number, [this, number](Row given) {
      given.insert(given.begin(), number);
      note(Kind::answer, std::move(given));
    });
  });
}

void Device::doom() {
  switch (dice_.below(4)) {
    case 0:
      return StatementWatch::dieAfter(dice_.below(20), [this] { end("killed at a statement"); });
    case 1:
      return FaultyDisk::dieAfter(dice_.below(40), [this] { end("killed at a disk operation"); });
    case 2:
      isLimited_ = true;
      return system_.setMaximumSteps(static_cast<std::uint64_t>(dice_.below(60)) + 1);
    default:
      end("killed at rest");
  }
}

void Device::end(const std::string& how) const {
  Row fields = {how};
  for (const auto& [account, value] : system_.keyStoreValues(keyStorePath_).byAccount) {
    fields.insert(fields.end(), {account, value});
  }
  note(Kind::end, std::move(fields));
  ::_exit(0);
}

void Device::endAfter(const std::function<void()>& work) {
  try {
    work();
    end("ended");
  } catch (const std::exception& failure) {
    const std::string what = failure.what();
    if (isLimited_ && what == "the work does not come to an end") end("killed between two blocks");
    note(Kind::finding, {what});
    end("failed");
  }
}

}  // namespace pelorino
