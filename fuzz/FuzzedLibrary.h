#pragma once

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "DeterministicSystem.h"
#include "Fuzz.h"
#include "TemporaryFolder.h"
#include "WireCheck.h"

namespace pelorino::fuzz {

/// The whole library on virtual time for one input, with a database file of its own. It must let
/// out nothing that the development backend finds wrong, no exception, and at its end no block may
/// be left waiting.
class FuzzedLibrary final {
 public:
  FuzzedLibrary() {
    system.reset();
    system.setMaximumSteps(maximumSteps);
    Logger::setLogLevel(PLRLogLevel::debug);
    Logger::setEngineLoggerMessageClosure([](PLRLogLevel level, const std::string& line) {
      const std::string_view message = std::string_view(line).substr(line.find(' ') + 1);
      // An exception that a block has let out.
      FUZZ_REQUIRE(level != PLRLogLevel::error || !message.starts_with("[Queue] A block on "));
    });
    PLRHostDescription host;
    host.applicationVersion = "1.4";
    host.bundleIdentifier = "com.example.game";
    host.supportDirectory = folder_.file("support");
    host.keyStoreFile = folder_.file("keys");
    host.vendorIdentifier = "11111111-2222-3333-4444-555555555555";
    PLRHost::describe(host);
    PLRHost::setApplicationState(PLRApplicationState::active);
    PLRAnalytics::setTestProxyUrl("");
    PLRAnalytics::setTestCustomUrl("");
    system.http().setHandler([this](const HttpRequest& request) { return answer(request); });
  }

  ~FuzzedLibrary() {
    PLREngineWrapper::destroySDK();
    PLRHost::setStore(nullptr);
    system.runUntilIdle();
    FUZZ_REQUIRE(system.abandon().empty());
  }

  FuzzedLibrary(const FuzzedLibrary&) = delete;
  FuzzedLibrary& operator=(const FuzzedLibrary&) = delete;

  /// Lets time pass, at most an hour of it: timers may tick every second.
  void advance(std::int64_t milliseconds) {
    constexpr std::int64_t longest = 60 * 60 * 1000;
    system.advance(std::chrono::milliseconds(std::clamp<std::int64_t>(milliseconds, 0, longest)));
  }

  DeterministicSystem& system = DeterministicSystem::instance();
  int status = 200;
  std::string configuration;  ///< Body of the answers that bring a configuration.
  std::string identifiers;    ///< Body of all others.

 private:
  /// Inputs are small; this is far more than one takes.
  static constexpr std::uint64_t maximumSteps = 200'000;

  /// "/analytics/report" of "https://host/v2/analytics/report?appId=key". A host may set any
  /// origin, so the path is looked for.
  static std::string endpointOf(std::string_view url) {
    for (const std::string endpoint :
         {"/analytics/config", "/analytics/identification", "/analytics/report",
          "/messaging/config", "/verify/payment"}) {
      if (url.find("/v2" + endpoint + '?') != std::string_view::npos) return endpoint;
    }
    return {};
  }

  [[nodiscard]] HttpResponse answer(const HttpRequest& request) const {
    const std::string endpoint = endpointOf(request.url);
    const std::string body = request.body ? *request.body : "";
    expectNothing(backend::checkBody(endpoint, body), body);
    backend::HeaderMap headers(request.headers.begin(), request.headers.end());
    expectNothing(backend::checkAndDecodeHeaders(headers), body);
    const std::string& answer = endpoint.ends_with("config") ? configuration : identifiers;
    return {.status = status, .body = answer, .error = {}};
  }

  static void expectNothing(backend::Verdict verdict, const std::string& body) {
    // The host itself says when a push was opened, and the library passes it on.
    std::erase_if(verdict, [](const std::string& finding) {
      return finding.ends_with("(po).timestamp is not a time in milliseconds");
    });
    if (verdict.empty()) return;
    std::fprintf(stderr, "%s\n", body.c_str());
    fail(verdict.front().c_str(), __FILE__, __LINE__);
  }

  TemporaryFolder folder_;
};

}  // namespace pelorino::fuzz
