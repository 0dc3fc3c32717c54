#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "BackendProcess.h"
#include "HostProcess.h"

namespace pelorino::blackbox {

/// A backend, the files of one application, and hosts that run one after another. At the end no
/// request may have broken the wire format.
class BlackBoxTest : public ::testing::Test {
 protected:
  void TearDown() override {
    if (!backend_) return;
    EXPECT_EQ(backend_->findings(), std::vector<std::string>());
  }

  BackendProcess& backend() { return *backend_; }

  void stopBackend() {
    backend_->stop();
    backend_.reset();
  }
  void restartBackend() { backend_ = startBackend(port_); }

  /// From now on the backend answers this configuration; what it leaves out is as ever.
  void configure(const boost::json::object& changes) {
    boost::json::object body{{"timeForRequest", 120'000}, {"countForRequest", 10},
                             {"eventParamsCount", 20},    {"sessionTimeout", 600'000},
                             {"serverTime", 1},           {"aliveTimeout", 300'000},
                             {"userCounting", true}};
    for (const auto& [key, value] : changes) body[key] = value;
    backend().answer("/analytics/config", body);
  }

  /// A host that has started and has delivered all of its start.
  std::unique_ptr<HostProcess> startedHost(const boost::json::object& configuration = {},
                                           const boost::json::object& description = {}) {
    auto host = std::make_unique<HostProcess>(file_, url_, description);
    host->initialize(configuration);
    EXPECT_TRUE(host->drain());
    EXPECT_TRUE(comesTrue([&] { return host->waiting().empty(); })) << host->waiting();
    return host;
  }

  /// The same, once the configuration that the backend answers is in force.
  std::unique_ptr<HostProcess> configuredHost(const boost::json::object& configuration = {}) {
    auto host = startedHost(configuration);
    EXPECT_TRUE(host->logs("The SDK analytics configuration has been received"));
    EXPECT_TRUE(host->drain());
    return host;
  }

  TemporaryFolder folder_;
  DatabaseFile file_;
  std::unique_ptr<BackendProcess> backend_ = startBackend(0);
  std::string url_ = backend_->url();
  int port_ = backend_->port();

 private:
  std::unique_ptr<BackendProcess> startBackend(int port) {
    return std::make_unique<BackendProcess>(folder_.file("backend.db"), port);
  }
};

}  // namespace pelorino::blackbox
