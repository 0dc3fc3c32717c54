#pragma once

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <future>
#include <memory>
#include <string>
#include <utility>

namespace pelorino::bench {

/// The library on a folder of its own, through its public classes. One at a time.
class Library final {
 public:
  /// Returns when the library has started, or has refused to.
  Library(const std::string& folder, const std::string& backend) {
    describe(folder, backend);
    PLRAnalytics::initialize("benchmark");
    drain();
  }
  /// Returns when the library is torn down; its files stay.
  ~Library() {
    PLREngineWrapper::destroySDK();
    drain();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  static void describe(const std::string& folder, const std::string& backend) {
    PLRHostDescription host;
    host.applicationName = "benchmark";
    host.applicationVersion = "1.0";
    host.bundleIdentifier = "com.example.benchmark";
    host.supportDirectory = folder;
    host.keyStoreFile = folder + ".keys";
    host.vendorIdentifier = "11111111-2222-3333-4444-555555555555";
    PLRHost::describe(host);
    PLRAnalytics::setTestProxyUrl(backend);
  }

  /// Returns when everything handed over so far has been carried out.
  static void drain() {
    while (!isAnswered()) {
    }
  }

  static std::string databaseFile(const std::string& folder) {
    return folder + "/pelorino/pelorino.db";
  }

 private:
  /// False if the question was dropped because the library was being torn down.
  static bool isAnswered() {
    auto answered = std::make_shared<std::promise<void>>();
    auto answer = answered->get_future();
    PLRAnalytics::getSDKVersion(
        [answered = std::move(answered)](const std::string&) { answered->set_value(); });
    try {
      answer.get();
      return true;
    } catch (const std::future_error&) {
      return false;
    }
  }
};

/// The parameters of the event that is reported everywhere here: five, one of each kind.
inline PLRCustomEventParameters fiveParameters() {
  PLRCustomEventParameters parameters;
  parameters.add("boss", "hydra");
  parameters.add("heads", 9);
  parameters.add("ratio", 0.25);
  parameters.add("alone", true);
  parameters.add("weapon", "two-handed sword");
  return parameters;
}

/// Where nobody listens: a connection is refused at once.
constexpr const char* unreachableBackend = "http://127.0.0.1:9";

}  // namespace pelorino::bench
