#include <filesystem>
#include <set>

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

  void answerIdentification(int status, const json::object& body) {
    backend().control("answer", {{"endpoint", identification}, {"status", status}, {"body", body}});
  }

  std::string randomIdentifier() {
    return json::value_to<std::string>(backend().events("di").back().event.at("uuid"));
  }
};

TEST_F(Identity, OfTheBackendIsAskedAgainUntilItIsThatOfThePresentUser) {
  answerIdentification(202, {{"retryAfter", 100}});
  const auto host = startedHost({{"userId", "first"}});
  host->run(R"({"op":"setIdentifiersListener","on":true})");
  ASSERT_TRUE(comesTrue([&] { return requests().size() >= 2; }));
  host->run(R"({"op":"setUserId","userId":"second"})");
  ASSERT_TRUE(host->logs("The userId [first] changed to [second]!"));
  EXPECT_TRUE(host->logs("user backend identifiers [second] has been canceled"));
  answerIdentification(200, {{"pelorinoId", 7}, {"pelorinoIdTimestamp", -8}});
  EXPECT_EQ(host->resultOf("didReceivePelorinoId"), 7);

  const json::array asked = requests();
  const std::size_t last = asked.size() - 1;
  for (std::size_t i = 0; i < last; ++i) {
    EXPECT_EQ(asked[i].at("body"), json::value({{"attempt", i + 1}}));
    EXPECT_EQ(header(asked[i], "UserId"), "first");
  }
  EXPECT_EQ(asked[last].at("body"), json::value({{"attempt", 1}}));
  EXPECT_EQ(header(asked[last], "UserId"), "second");
  EXPECT_EQ(host->linesWith("the user was changed. Request the identifiers again.").size(), 1U);
  EXPECT_EQ(host->linesWith("didReceivePelorinoId").size(), 1U) << "the first user's is dropped";

  host->customEvent("known");
  ASSERT_TRUE(deliver(*host));
  EXPECT_EQ(header(lastReport(), "UserId"), "second");
  EXPECT_EQ(header(lastReport(), "PelorinoId"), "7");
  EXPECT_EQ(header(lastReport(), "PelorinoIdTimestamp"), "-8");
  EXPECT_EQ(header(lastReport(), "CrossPlatformPelorinoId"), nullptr);
}

TEST_F(Identity, OfTheDeviceOutlivesTheDataOfTheApplication) {
  struct Case {
    const char* label;
    const char* vendorIdentifier;
    bool dataIsDeleted;
    bool keysAreCleared;
    json::value previous;
    bool isAskedAnew;
    bool keepsRandom;
  };
  const Case cases[] = {
      {"first start", "VENDOR-1", false, false, nullptr, true, false},
      {"next start", "VENDOR-1", false, false, nullptr, false, true},
      {"after a new installation", "VENDOR-1", true, false, nullptr, true, true},
      {"another vendor", "VENDOR-2", false, false, "VENDOR-1", true, true},
      {"another vendor, and a new installation", "VENDOR-3", true, false, "VENDOR-2", true, true},
      {"all forgotten", "VENDOR-3", true, true, nullptr, true, false},
  };
  std::string random;
  std::size_t asked = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    if (c.dataIsDeleted) std::filesystem::remove_all(file_.folder());
    HostProcess host(file_, url_, {{"vendorIdentifier", c.vendorIdentifier}});
    if (c.keysAreCleared) host.run(R"({"op":"clearKeychain"})");
    host.initialize();
    host.run(R"({"op":"getDeviceId"})");
    EXPECT_EQ(host.resultOf("getDeviceId"), c.vendorIdentifier);
    asked += c.isAskedAnew ? 1 : 0;
    EXPECT_TRUE(comesTrue([&] { return requests().size() == asked; }));
    host.customEvent(c.label);
    ASSERT_TRUE(deliver(host));
    EXPECT_EQ(header(lastReport(), "DeviceId"), c.vendorIdentifier);
    EXPECT_EQ(header(lastReport(), "PreviousDeviceId"), c.previous);
    EXPECT_EQ(randomIdentifier() == random, c.keepsRandom);
    random = randomIdentifier();
    if (c.isAskedAnew) {
      EXPECT_TRUE(host.logs("the updated backendIdentifiers are"));
      EXPECT_TRUE(host.drain());
    }
    EXPECT_EQ(host.end(), 0);
    EXPECT_EQ(requests().size(), asked);
  }
}

TEST_F(Identity, OfTheDeviceIsKeptByProcessesThatStartAtOnce) {
  const json::object keys{{"keyStoreFile", folder_.file("common.keys")}};
  constexpr std::size_t count = 8;
  std::vector<std::unique_ptr<DatabaseFile>> files;
  std::vector<std::unique_ptr<HostProcess>> hosts;
  for (std::size_t i = 0; i < count; ++i) {
    files.push_back(std::make_unique<DatabaseFile>());
    json::object description = keys;
    description["vendorIdentifier"] = i % 2 == 0 ? "EVEN" : "ODD";
    hosts.push_back(std::make_unique<HostProcess>(*files.back(), url_, description));
  }
  for (const auto& host : hosts) host->initialize();
  for (const auto& host : hosts) EXPECT_TRUE(host->drain());
  ASSERT_TRUE(comesTrue([&] { return backend().events("di").size() == count; }));
  std::set<std::string> random;
  for (const Arrived& info : backend().events("di")) {
    random.insert(json::value_to<std::string>(info.event.at("uuid")));
  }

  // Those that come later find one of the identifiers, and the same.
  std::set<std::string> found;
  for (int i = 0; i < 2; ++i) {
    std::filesystem::remove_all(file_.folder());
    const auto host = startedHost({}, keys);
    found.insert(randomIdentifier());
    EXPECT_EQ(host->end(), 0);
  }
  EXPECT_EQ(found.size(), 1U);
  EXPECT_TRUE(random.contains(*found.begin()));
}

TEST_F(Identity, IsForgottenWhileTrackingIsOff) {
  const auto host = startedHost();
  ASSERT_TRUE(host->logs("the updated backendIdentifiers are"));
  host->run(R"({"op":"setTrackingAvailability","value":false})");
  host->customEvent("unseen");
  ASSERT_TRUE(host->logs("Event [ce] not created. Tracking is Disabled"));
  ASSERT_TRUE(comesTrue([&] { return backend().events("ts").size() == 1; }));

  host->run(R"({"op":"setTrackingAvailability","value":true})");
  ASSERT_TRUE(host->logs("the updated backendIdentifiers are", 2));
  host->customEvent("seen");
  ASSERT_TRUE(deliver(*host));
  EXPECT_EQ(requests().size(), 2U);
  EXPECT_EQ(header(requests()[1], "PelorinoId"), nullptr);
  EXPECT_EQ(header(lastReport(), "PelorinoId").is_null(), false);
  EXPECT_EQ(backend().names(), std::vector<std::string>{"seen"});
  std::vector<json::value> allowed;
  for (const Arrived& status : backend().events("ts")) {
    allowed.push_back(status.event.at("trackingAllowed"));
  }
  EXPECT_EQ(allowed, (std::vector<json::value>{false, true}));
}

}  // namespace
}  // namespace pelorino::blackbox
