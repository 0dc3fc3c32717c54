#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

#include "DeterministicTest.h"
#include "Host.h"
#include "LogCapture.h"
#include "PixelDensity.h"
#include "PlatformiOS.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

class PlatformiOSTest : public DeterministicTest {
 protected:
  PlatformiOSTest() {
    description.machine = std::string("iPhone10,3\0\0", 12);
    description.systemVersion = "14.4";
    description.preferredLanguages = {"zh-Hans-CN", "en"};
    description.region = "CN";
    description.screen = HostScreen{{375, 812}, 3, {1125, 2436}};
  }
  ~PlatformiOSTest() override { Host::describe({}); }

  /// What one read came to, and whether its answer came only later.
  std::pair<DeviceData, bool> read() {
    auto answer = std::make_shared<std::optional<DeviceData>>();
    platform->getDeviceData([answer](const DeviceData& data) { *answer = data; });
    const bool waits = !answer->has_value();
    system.runUntilIdle();
    return {answer->value(), waits};
  }

  void start() {
    Host::describe(description);
    platform = std::make_unique<PlatformiOS>(std::make_shared<PlatformStorage>());
  }

  HostDescription description;
  std::unique_ptr<PlatformiOS> platform;
};

TEST_F(PlatformiOSTest, ReadsTheDeviceOnceAndRefreshesWhatMayChange) {
  int probes = 0;
  description.integrityProbe = [&] { return ++probes > 0; };
  start();
  system.facts().values.secondsFromGmt = 3600;
  const auto [first, firstWaits] = read();
  EXPECT_TRUE(firstWaits) << "the probe runs on the main queue";
  EXPECT_EQ(first.language, "zh");
  EXPECT_EQ(first.country, "CN");
  EXPECT_EQ(first.osVersion, "14.4");
  EXPECT_EQ(first.model, "iPhone10,3");
  EXPECT_EQ(first.displayPpi, 458);
  EXPECT_EQ(first.displayResolution, "2436x1125");
  EXPECT_NEAR(first.displayDiagonal.value_or(0), 5.8585799, 1e-7);
  EXPECT_EQ(first.timeZoneOffset, 3600);
  EXPECT_TRUE(first.isRooted);

  description.machine = "iPad4,2";
  description.preferredLanguages.emplace();
  description.region.reset();
  Host::describe(description);
  system.facts().values.secondsFromGmt = -7200;
  const auto [second, secondWaits] = read();
  EXPECT_FALSE(secondWaits);
  EXPECT_EQ(second.language, std::nullopt);
  EXPECT_EQ(second.country, "");
  EXPECT_EQ(second.timeZoneOffset, -7200);
  EXPECT_EQ(second.model, "iPhone10,3");
  EXPECT_EQ(probes, 1);
}

TEST_F(PlatformiOSTest, LeavesOutWhatTheScreenDoesNotSay) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* label;
    const char* machine;
    std::optional<HostScreen> screen;
    std::optional<std::string> resolution;
    bool hasDiagonal;
  } cases[] = {
      {"no density", "iPad4,2", HostScreen{{768, 1024}, 2, {1536, 2048}}, "2048x1536", false},
      {"landscape, part of a pixel", "iPhone10,3", HostScreen{{812.5, 375}, 1, {2436, 1125}},
       "812x375", true},
      {"senseless numbers", "iPhone10,3", HostScreen{{1e300, 1}, 2, {nan, 1}}, {}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    description.machine = c.machine;
    description.screen = c.screen;
    start();
    const DeviceData data = read().first;
    EXPECT_EQ(data.displayResolution, c.resolution);
    EXPECT_EQ(data.displayDiagonal.has_value(), c.hasDiagonal);
  }
}

TEST_F(PlatformiOSTest, AProbeThatThrowsCountsAsFalseAndNobodyIsToldAfterTheEnd) {
  description.integrityProbe = []() -> bool { throw std::runtime_error("no access"); };
  start();
  const LogCapture log;
  EXPECT_FALSE(read().first.isRooted);
  EXPECT_EQ(log.lines(),
            (std::vector<std::string>{"ERROR The integrity probe ended with an error: no access"}));
  start();
  platform->getDeviceData([](const DeviceData&) { FAIL() << "after the end"; });
  platform.reset();
  system.runUntilIdle();
}

TEST_F(PlatformiOSTest, TellsADevelopmentBuildFromItsProfile) {
  const TemporaryFolder folder;
  description.bundleFolder = folder.path();
  start();
  EXPECT_EQ(platform->getApplicationData().sandboxState, 0) << "no profile";
  const std::pair<const char*, std::int64_t> cases[] = {
      {"<dict>\n\t<key>get-task-allow</key>\r\n <true/></dict>", 1},
      {"<key>get-task-allow</key><false/>", 2},
      {"<key>get-task-allow</key><true/>\xC3\xA9", 0},
  };
  for (const auto& [profile, state] : cases) {
    std::ofstream(folder.file("embedded.mobileprovision")) << profile;
    start();
    EXPECT_EQ(platform->getApplicationData().sandboxState, state) << profile;
  }
}

TEST_F(PlatformiOSTest, KeepsApplicationAndIdentifiersButNotTheLibrarysVersion) {
  description.keyStoreFile = "/keys";
  description.applicationVersion = "1.0";
  description.vendorIdentifier = "V";
  description.trackingAuthorization = 0;
  auto& stored = system.keyStoreValues("/keys").byAccount;
  stored = {{"other-plr_v2_current_id", "of another application"}};
  const auto others = stored;
  start();
  const ApplicationData application = platform->getApplicationData();
  EXPECT_EQ(application.applicationVersion, "1.0");
  EXPECT_EQ(application.applicationBuildVersion, "");
  const IdentifierData identifiers = platform->getIdentifierData();
  EXPECT_EQ(identifiers.deviceUIDs.current, "V");
  EXPECT_FALSE(identifiers.isLimitAdTrackingEnabled) << "not determined counts as allowed";

  description.applicationVersion = "2.0";
  description.vendorIdentifier = "W";
  Host::describe(description);
  SdkConstraints::setSdkVersion("engine-7");
  EXPECT_EQ(platform->getApplicationData().applicationVersion, "1.0");
  EXPECT_EQ(platform->getIdentifierData().deviceUIDs.current, "V");
  EXPECT_EQ(platform->getSdkData().sdkVersion, "engine-7");
  SdkConstraints::setSdkVersion("2.1.2");

  start();
  EXPECT_EQ(platform->getApplicationData().applicationVersion, "2.0");
  EXPECT_EQ(platform->getIdentifierData().deviceUIDs.prev, "V");
  PlatformiOS::clearKeychain();
  EXPECT_EQ(stored, others);
}

TEST(PixelDensity, FollowsFamilyMajorAndMinor) {
  const std::pair<const char*, std::optional<std::int64_t>> cases[] = {
      {"iPhone11,6", 458},
      {"iPhone11,7", {}},
      {"iPad8", 264},
      // Not of the form family, major, minor.
      {"", {}},
      {"iPhone,10,,3,7", 458},
      {"x86_64", {}},
      {"iPhone99999999999,3", {}},
  };
  for (const auto& [model, ppi] : cases) EXPECT_EQ(pixelDensity(model), ppi) << model;
}

}  // namespace
}  // namespace pelorino
