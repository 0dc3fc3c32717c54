#include <map>
#include <string>

#include "HostTest.h"
#include "IdentifierGateway.h"
#include "LogCapture.h"
#include "MemoryKeyStore.h"

namespace pelorino {
namespace {

using Stored = std::map<std::string, std::string, std::less<>>;

class CountingRandom final : public Random {
 public:
  [[nodiscard]] std::string uuid() override { return "RANDOM-" + std::to_string(++made_); }

 private:
  int made_ = 0;
};

class IdentifierCollectorTest : public HostTest {
 protected:
  IdentifierCollectorTest() { description.applicationName = "game"; }

  CountingRandom random;
  std::shared_ptr<MemoryKeyStore::Values> values = std::make_shared<MemoryKeyStore::Values>();
  MemoryKeyStore keychain{values};
  IdentifierCollector collector{host, keychain, random};
};

TEST_F(IdentifierCollectorTest, DecidesTheIdentifierFromWhatIsStored) {
  const struct {
    const char* label;
    Stored before;
    std::optional<std::string> prev;
    std::optional<std::string> storedPrev;
  } cases[] = {
      {"first launch", {}, {}, {}},
      {"an empty one is none", {{"game-plr_v2_current_id", ""}}, {}, {}},
      {"the same", {{"game-plr_v2_current_id", "V"}, {"game-plr_v2_prev_id", "P"}}, "P", "P"},
      {"changed", {{"game-plr_v2_current_id", "O"}, {"game-plr_v2_prev_id", "P"}}, "O", "O"},
      {"left by an older generation", {{"plr_idfa", "A:B"}, {"plr_idfv", "C"}}, "A", "A"},
      {"left under the other name", {{"plr_idfv", "C:D"}}, "C", "C"},
      {"left, and still in force", {{"plr_idfa", "V"}}, {}, "V"},
      {"a predecessor outranks it", {{"game-plr_v2_prev_id", "P"}, {"plr_idfa", "A"}}, "P", "P"},
  };
  description.vendorIdentifier = "V";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    values->byAccount = c.before;
    const DeviceUIDs ids = collector.getUIDs();
    EXPECT_EQ(ids.current, "V");
    EXPECT_EQ(ids.prev, c.prev);
    Stored after = c.before;
    after["game-plr_v2_current_id"] = "V";
    if (c.storedPrev) after["game-plr_v2_prev_id"] = *c.storedPrev;
    EXPECT_EQ(values->byAccount, after);
  }
}

TEST_F(IdentifierCollectorTest, PrefersAdvertisingThenVendorThenChance) {
  description.vendorIdentifier = "V";
  description.advertisingIdentifier = "AD0-1";
  EXPECT_EQ(collector.getUIDs().current, "AD0-1");
  description.advertisingIdentifier = "00000000-0000-0000-0000-000000000000";
  EXPECT_EQ(collector.idfa(), std::nullopt);
  EXPECT_EQ(collector.getUIDs().prev, "AD0-1") << "tracking was withdrawn";
  description.vendorIdentifier = "";
  const DeviceUIDs first = collector.getUIDs();
  const DeviceUIDs second = collector.getUIDs();
  EXPECT_EQ(first.prev, "V");
  EXPECT_EQ(second.prev, first.current);
  EXPECT_NE(second.current, first.current);
}

TEST_F(IdentifierCollectorTest, WithoutANameNothingIsStored) {
  description.applicationName.reset();
  system.values.executableName = "";
  description.vendorIdentifier = "V";
  EXPECT_EQ(collector.getUIDs().current, "RANDOM-1") << "not the vendor's";
  EXPECT_NE(collector.uuid(), collector.uuid());
  EXPECT_TRUE(values->byAccount.empty());
}

TEST_F(IdentifierCollectorTest, TheRandomIdentifierOutlivesTheOther) {
  const std::string made = collector.uuid();
  description.advertisingIdentifier = "AD";
  (void)collector.getUIDs();
  EXPECT_EQ(collector.uuid(), made);
}

TEST_F(IdentifierCollectorTest, TrackingIsAllowedUnlessTheUserSaidNo) {
  const std::string told = "DEBUG ATTrackingManager trackingAuthorizationStatus equals ";
  const std::string missing =
      "WARNING AppTrackingTransparency.framework not included,please add "
      "'AppTrackingTransparency' dependency";
  const struct {
    std::optional<std::string> version;
    std::optional<int> status;
    bool allowed;
    std::string line;
  } cases[] = {
      {"14.0.0", 3, true, told + "[3]"},  {"100", 0, true, told + "[0]"},
      {"14.0.0", 2, false, told + "[2]"}, {"14.0.0", {}, false, missing},
      {{}, 2, false, told + "[2]"},       {"13.9.9", 2, true, ""},
  };
  description.advertisingIdentifier = "AD";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    description.systemVersion = c.version;
    description.trackingAuthorization = c.status;
    const LogCapture log;
    EXPECT_EQ(collector.isTrackingAllowed(), c.allowed);
    EXPECT_EQ(log.lines(), std::vector(c.line.empty() ? 0 : 1, c.line));
  }
}

}  // namespace
}  // namespace pelorino
