#include <filesystem>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr const char* identification = "/analytics/identification";

class Identity : public BlackBoxTest {
 protected:
  /// The value of a header of an exchange; null when it was not sent.
  static json::value header(const json::value& exchange, std::string_view name) {
    const json::value* value = exchange.at("headers").as_object().if_contains(name);
    return value == nullptr ? json::value() : *value;
  }

  json::array requests() { return backend().received(identification); }
  json::value lastReport() { return backend().received("/analytics/report").back(); }

  std::string randomIdentifier() {
    return json::value_to<std::string>(backend().events("di").back().event.at("uuid"));
  }
};

TEST_F(Identity, OfTheBackendIsAskedForUntilItComesAndForgottenWhileTrackingIsOff) {
  backend().answer(identification, {{"retryAfter", 100}}, 202);
  const auto host = startedHost();
  host->run(R"({"op":"setIdentifiersListener","on":true})");
  ASSERT_TRUE(comesTrue([&] { return requests().size() >= 3; }));
  EXPECT_EQ(requests()[2].at("body"), json::value({{"attempt", 3}}));
  backend().answer(identification, {{"pelorinoId", 7}, {"pelorinoIdTimestamp", -8}});
  EXPECT_EQ(host->resultOf("didReceivePelorinoId"), 7);

  host->run(R"({"op":"setTrackingAvailability","value":false})");
  host->customEvent("unseen");
  ASSERT_TRUE(host->logs("Event [ce] not created. Tracking is Disabled"));
  ASSERT_TRUE(comesTrue([&] { return backend().events("ts").size() == 1; }));
  host->run(R"({"op":"setTrackingAvailability","value":true})");
  ASSERT_TRUE(host->logs("the updated backendIdentifiers are", 2));
  EXPECT_EQ(header(requests().back(), "PelorinoId"), nullptr);
  host->customEvent("seen");
  ASSERT_TRUE(host->deliver());
  EXPECT_EQ(header(lastReport(), "PelorinoId"), "7");
  EXPECT_EQ(header(lastReport(), "PelorinoIdTimestamp"), "-8");
  EXPECT_EQ(backend().names(), std::vector<std::string>{"seen"});
  std::vector<json::value> allowed;
  for (const Arrived& status : backend().events("ts")) {
    allowed.push_back(status.event.at("trackingAllowed"));
  }
  EXPECT_EQ(allowed, (std::vector<json::value>{false, true}));
}

TEST_F(Identity, OfTheDeviceOutlivesTheDataOfTheApplication) {
  const struct {
    const char* label;
    const char* vendorIdentifier;
    bool dataIsDeleted;
    bool keysAreCleared;
    json::value previous;
    bool keepsRandom;
  } cases[] = {
      {"first start", "VENDOR-1", false, false, nullptr, false},
      {"next start", "VENDOR-1", false, false, nullptr, true},
      {"after a new installation", "VENDOR-1", true, false, nullptr, true},
      {"another vendor", "VENDOR-2", false, false, "VENDOR-1", true},
      {"another vendor, and a new installation", "VENDOR-3", true, false, "VENDOR-2", true},
      {"all forgotten", "VENDOR-3", true, true, nullptr, false},
  };
  std::string random;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    if (c.dataIsDeleted) std::filesystem::remove_all(file_.folder());
    HostProcess host(file_, url_, {{"vendorIdentifier", c.vendorIdentifier}});
    if (c.keysAreCleared) host.run(R"({"op":"clearKeychain"})");
    host.initialize();
    host.run(R"({"op":"getDeviceId"})");
    EXPECT_EQ(host.resultOf("getDeviceId"), c.vendorIdentifier);
    host.customEvent(c.label);
    ASSERT_TRUE(host.deliver());
    EXPECT_EQ(header(lastReport(), "DeviceId"), c.vendorIdentifier);
    EXPECT_EQ(header(lastReport(), "PreviousDeviceId"), c.previous);
    EXPECT_EQ(randomIdentifier() == random, c.keepsRandom);
    random = randomIdentifier();
    EXPECT_EQ(host.end(), 0);
  }
}

}  // namespace
}  // namespace pelorino::blackbox
