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
  void TearDown() override { EXPECT_EQ(backend_.findings(), std::vector<std::string>()); }

  /// A host that has started and has delivered all of its start.
  std::unique_ptr<HostProcess> startedHost(const boost::json::object& configuration = {}) {
    auto host = std::make_unique<HostProcess>(file_, backend_.url());
    host->initialize(configuration);
    EXPECT_TRUE(host->drain());
    EXPECT_TRUE(comesTrue([&] { return host->waiting().empty(); })) << host->waiting();
    return host;
  }

  TemporaryFolder folder_;
  /// Below a folder whose name is awkward wherever one is quoted or encoded.
  DatabaseFile file_{"Jürgens Spiele's \"日本語\" %41 🐢"};
  BackendProcess backend_{folder_.file("backend.db")};
};

}  // namespace pelorino::blackbox
