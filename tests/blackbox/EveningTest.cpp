#include <algorithm>
#include <fstream>
#include <set>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Evening : public BlackBoxTest {
 protected:
  /// What `pelorino-backend --account` makes of the lines that a host has written.
  int account(const std::vector<std::string>& hostLines) {
    const std::string output = folder_.file("host.out");
    std::ofstream file(output);
    for (const std::string& line : hostLines) file << line << "\n";
    file.close();
    Process process({PELORINO_BACKEND, "--data", folder_.file("backend.db"), "--account",
                     "--host-output", output});
    return process.waitForExit().value_or(-1);
  }

  /// The events of a code under any of the identifiers, without their times.
  json::array contents(const std::string& code, const std::set<std::string>& users) {
    json::array list;
    for (const Arrived& arrived : backend_.events(code)) {
      if (users.contains(arrived.userId)) list.push_back(arrived.content());
    }
    return list;
  }
};

constexpr const char* ofAda = R"({
  "tr": [{"level":1,"step":-1}, {"level":1,"step":1}, {"level":1,"step":-2}],
  "cb": [{"level":1,"balance":{"gold":100,"gems":3,"cœurs":5}}],
  "rf": [{"source":"newsletter","campaign":"Herbst 🍂","medium":"e-mail","term":"slime games"}],
  "rp": [{"level":1,"productId":"com.example.slimehunter.gems.small","orderId":"order-1001",
          "price":4.99,"currencyCode":"EUR"}],
  "vp": [{"level":1,"purchaseId":"potion_blue","purchaseAmount":3,"purchasePrice":{"gold":90},
          "purchaseType":"potions"},
         {"level":1,"purchaseId":"sword_of_dawn","purchaseAmount":1,
          "purchasePrice":{"gems":20,"gold":150},"purchaseType":"weapons ⚔️"}],
  "lu": [{"level":2,"balance":{"gold":175,"gems":35,"cœurs":5},"spent":{"gold":240,"gems":20},
          "earned":{"gold":315,"gems":2},"bought":{"gems":50}},
         {"level":3,"earned":{"gold":120}}],
  "ca": [{"level":1,"earned":{"slimes":{"gold":65},"treasure chest":{"gold":250,"gems":2}},
          "bought":{"shop":{"gems":50}}},
         {"level":2,"earned":{"Mushroom Caves":{"gold":120}}},
         {"level":3,"earned":{"slimes":{"gold":15}}},
         {"level":3,"earned":{"good night":{"gold":10}}}],
  "pe": [{"level":2,"name":"Mushroom Caves 🍄","spent":{"arrows":31},
          "earned":{"gold":120,"mushrooms":7},
          "parameters":{"success":true,"duration":240,"difficulty":3,"source":"map"}}],
  "sc": [{"level":3,"socialNetwork":"vk"}, {"level":3,"socialNetwork":"slime-book"}],
  "sp": [{"level":3,"socialNetwork":"vk","postReason":"level 3"}],
  "pt": [{"isAllowed":true,"token":"token-of-adas-telephone"}],
  "po": [{"pushId":31,"button":"hunt"}],
  "adrv": [{"source":"sdk","ad_network":"MegaAds","placement":"after a pause",
            "ad_unit":"interstitial","revenue":0.0125},
           {"source":"sdk","ad_network":"MegaAds","revenue":0.0}]
})";

constexpr const char* ofTheo = R"({
  "tr": [{"level":1,"step":-1}, {"level":1,"step":0}],
  "lu": [{"level":6,"balance":{"gold":107}}],
  "ca": [{"level":1,"earned":{"slimes":{"gold":7}}}]
})";

constexpr const char* placesOfEvents = R"({
  "level_entered": ["Mushroom Caves 🍄"],
  "boss_defeated": ["Mushroom Caves 🍄"],
  "fell_into_the_water": ["Frozen Lake"]
})";

TEST_F(Evening, ArrivesWholeAndUnderTheUserWhoPlayed) {
  HostProcess host(file_, backend_.url());
  std::ifstream lines(PELORINO_EXAMPLES "/evening.jsonl");
  for (std::string line; std::getline(lines, line);) host.run(line);
  ASSERT_TRUE(host.drain());
  ASSERT_TRUE(host.deliver());

  const std::set<std::string> ada = {"ada", "ada-the-slayer"};
  const std::set<std::string> theo = {"théo"};
  for (const auto& [users, text] : {std::pair(ada, ofAda), std::pair(theo, ofTheo)}) {
    const json::object wanted = json::parse(text).as_object();
    for (const auto& [code, want] : wanted) {
      EXPECT_EQ(contents(code, users), want) << code << " of " << *users.begin();
    }
  }
  json::object places;
  for (const Arrived& arrived : backend_.events("ce")) {
    const json::value* place = arrived.event.if_contains("inProgress");
    if (place) places[arrived.name] = *place;
  }
  EXPECT_EQ(places, json::parse(placesOfEvents));

  const json::object adas = backend_.summary("ada-the-slayer");
  EXPECT_EQ(adas.at("formerly"), "ada");
  EXPECT_EQ(adas.at("level"), 3);
  EXPECT_EQ(adas.at("card"), json::parse(R"({"name":"Ada Łukasiewicz","age":36,"gender":2,)"
                                         R"("guild":"Школа слаймов","slimes beaten":2,)"
                                         R"("title":"Slayer of Slimes 🗡️"})"));
  const json::object theos = backend_.summary("théo");
  EXPECT_EQ(theos.at("level"), 6);
  EXPECT_EQ(theos.at("card"), json::parse(R"({"gender":1})"));

  EXPECT_TRUE(host.logs("A development backend accepts everything")) << "the receipt's answer";
  EXPECT_EQ(backend_.received("/messaging/config").size(), 1U);

  // The account finds nothing wrong, and would if an event had been stored that did not arrive.
  std::vector<std::string> output = host.linesWith("");
  EXPECT_EQ(account(output), 0);
  const auto stored = std::ranges::find_if(output, [](const std::string& line) {
    return line.find("Create a new event") != std::string::npos;
  });
  ASSERT_NE(stored, output.end());
  output.push_back(std::string(*stored));
  EXPECT_EQ(account(output), 1);
  EXPECT_EQ(host.end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
