#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "FakeFacts.h"
#include "IdentifierCollector.h"
#include "LogCapture.h"
#include "MemoryKeyStore.h"
#include "ResolvedHost.h"

namespace pelorino {
namespace {

using Stored = std::map<std::string, std::string, std::less<>>;

class FixedClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t milliseconds() const override { return 0; }
};

class CountingRandom final : public Random {
 public:
  [[nodiscard]] std::string uuid() override { return "RANDOM-" + std::to_string(++made_); }

 private:
  int made_ = 0;
};

class IdentifierCollectorTest : public ::testing::Test {
 protected:
  IdentifierCollectorTest() { description.applicationName = "game"; }

  Stored& stored() { return values->byAccount; }

  FakeFacts system;
  FixedClock clock;
  CountingRandom random;
  HostDescription description;
  ResolvedHost host{[this] { return std::make_shared<const HostDescription>(description); }, system,
                    clock};
  std::shared_ptr<MemoryKeyStore::Values> values = std::make_shared<MemoryKeyStore::Values>();
  MemoryKeyStore keychain{values};
  IdentifierCollector collector{host, keychain, random};
};

TEST_F(IdentifierCollectorTest, DecidesTheIdentifierFromWhatIsStored) {
  const std::string current = "game-plr_v2_current_id";
  const std::string previous = "game-plr_v2_prev_id";
  struct Case {
    const char* label;
    Stored before;
    std::optional<std::string> wantPrev;
    Stored after;
  };
  const Case cases[] = {
      {"first launch", {}, {}, {{current, "V"}}},
      {"an empty one is none", {{current, ""}}, {}, {{current, "V"}}},
      {"the same again", {{current, "V"}}, {}, {{current, "V"}}},
      {"the same, with a predecessor",
       {{current, "V"}, {previous, "P"}},
       "P",
       {{current, "V"}, {previous, "P"}}},
      {"changed", {{current, "OLD"}}, "OLD", {{current, "V"}, {previous, "OLD"}}},
      {"changed again",
       {{current, "OLD"}, {previous, "OLDER"}},
       "OLD",
       {{current, "V"}, {previous, "OLD"}}},
      {"left by an older generation",
       {{"plr_idfa", "A:B"}, {"plr_idfv", "C"}},
       "A",
       {{current, "V"}, {previous, "A"}, {"plr_idfa", "A:B"}, {"plr_idfv", "C"}}},
      {"left under the other name",
       {{"plr_idfv", "C:D"}},
       "C",
       {{current, "V"}, {previous, "C"}, {"plr_idfv", "C:D"}}},
      {"left, and still in force",
       {{"plr_idfa", "V"}},
       {},
       {{current, "V"}, {previous, "V"}, {"plr_idfa", "V"}}},
      {"a predecessor outranks what was left",
       {{previous, "P"}, {"plr_idfa", "A"}},
       "P",
       {{current, "V"}, {previous, "P"}, {"plr_idfa", "A"}}},
  };
  description.vendorIdentifier = "V";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    stored() = c.before;
    const DeviceUIDs ids = collector.getUIDs();
    EXPECT_EQ(ids.current, "V");
    EXPECT_EQ(ids.prev, c.wantPrev);
    EXPECT_EQ(stored(), c.after);
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
  EXPECT_TRUE(stored().empty());
}

TEST_F(IdentifierCollectorTest, TheRandomIdentifierOutlivesChangesAndLostWrites) {
  const std::string made = collector.uuid();
  description.advertisingIdentifier = "AD";
  (void)collector.getUIDs();
  EXPECT_EQ(collector.uuid(), made);

  values->isWritable = false;
  description.advertisingIdentifier = "AD2";
  const DeviceUIDs unsaved = collector.getUIDs();
  EXPECT_EQ(unsaved.current, "AD2");
  EXPECT_EQ(unsaved.prev, "AD");
  values->isWritable = true;
  EXPECT_EQ(collector.getUIDs().prev, "AD") << "the next launch does it again";
}

TEST_F(IdentifierCollectorTest, ClearingRemovesThisApplicationsIdentifiers) {
  for (const char* name : {"plr_v2_current_id", "plr_v2_prev_id", "plr_v2_customUdid"}) {
    for (const char* prefix : {"", "game-", "other-"}) stored()[std::string(prefix) + name] = "x";
  }
  stored()["plr_idfa"] = "left";
  IdentifierCollector::clearKeychain(host, keychain);
  EXPECT_EQ(stored(), (Stored{{"other-plr_v2_current_id", "x"},
                              {"other-plr_v2_prev_id", "x"},
                              {"other-plr_v2_customUdid", "x"},
                              {"plr_idfa", "left"}}));
}

TEST_F(IdentifierCollectorTest, TrackingIsAllowedUnlessTheUserSaidNo) {
  struct Case {
    const char* version;
    std::optional<int> status;
    bool allowed;
    std::vector<std::string> lines;
  };
  const auto told = [](int status) {
    return "DEBUG ATTrackingManager trackingAuthorizationStatus equals [" + std::to_string(status) +
           "]";
  };
  const Case cases[] = {
      {"14.0.0", 3, true, {told(3)}},
      {"14.0.0", 0, true, {told(0)}},
      {"14.0.0", 2, false, {told(2)}},
      {"14.0.0",
       {},
       false,
       {"WARNING AppTrackingTransparency.framework not included,please add "
        "'AppTrackingTransparency' dependency"}},
      {"13.7", 2, true, {}},
  };
  description.advertisingIdentifier = "AD";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.status.value_or(-1));
    description.systemVersion = c.version;
    description.trackingAuthorization = c.status;
    const LogCapture log;
    EXPECT_EQ(collector.isTrackingAllowed(), c.allowed);
    EXPECT_EQ(log.lines(), c.lines);
  }
}

}  // namespace
}  // namespace pelorino
