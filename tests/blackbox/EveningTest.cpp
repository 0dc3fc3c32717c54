#include <algorithm>
#include <fstream>
#include <map>
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
  std::vector<json::value> contents(const std::string& code, const std::set<std::string>& users) {
    std::vector<json::value> list;
    for (const Arrived& arrived : backend().events(code)) {
      if (!users.contains(arrived.userId)) continue;
      json::object event = arrived.event;
      for (const char* key : {"code", "timestamp", "sessionId"}) event.erase(key);
      list.emplace_back(std::move(event));
    }
    return list;
  }
};

TEST_F(Evening, ArrivesWholeAndUnderTheUserWhoPlayed) {
  HostProcess host(file_, url_);
  std::ifstream lines(PELORINO_EXAMPLES "/evening.jsonl");
  for (std::string line; std::getline(lines, line);) host.run(line);
  ASSERT_TRUE(host.drain());
  ASSERT_TRUE(deliver(host));

  const std::set<std::string> ada = {"ada", "ada-the-slayer"};
  const std::set<std::string> theo = {"théo"};
  const struct {
    const char* code;
    const std::set<std::string>& users;
    std::vector<std::string> want;
  } cases[] = {
      {"tr",
       ada,
       {R"({"level":1,"step":-1})", R"({"level":1,"step":1})", R"({"level":1,"step":-2})"}},
      {"tr", theo, {R"({"level":1,"step":-1})", R"({"level":1,"step":0})"}},
      {"cb", ada, {R"({"level":1,"balance":{"gold":100,"gems":3,"cœurs":5}})"}},
      {"rf",
       ada,
       {R"({"source":"newsletter","campaign":"Herbst 🍂","medium":"e-mail","term":"slime games"})"}},
      {"rp",
       ada,
       {R"({"level":1,"productId":"com.example.slimehunter.gems.small","orderId":"order-1001",)"
        R"("price":4.99,"currencyCode":"EUR"})"}},
      {"vp",
       ada,
       {R"({"level":1,"purchaseId":"potion_blue","purchaseAmount":3,"purchasePrice":{"gold":90},)"
        R"("purchaseType":"potions"})",
        R"({"level":1,"purchaseId":"sword_of_dawn","purchaseAmount":1,)"
        R"("purchasePrice":{"gems":20,"gold":150},"purchaseType":"weapons ⚔️"})"}},
      {"lu",
       ada,
       {R"({"level":2,"balance":{"gold":175,"gems":35,"cœurs":5},"spent":{"gold":240,"gems":20},)"
        R"("earned":{"gold":315,"gems":2},"bought":{"gems":50}})",
        R"({"level":3,"earned":{"gold":120}})"}},
      {"lu", theo, {R"({"level":6,"balance":{"gold":107}})"}},
      {"ca",
       ada,
       {R"({"level":1,"earned":{"slimes":{"gold":65},"treasure chest":{"gold":250,"gems":2}},)"
        R"("bought":{"shop":{"gems":50}}})",
        R"({"level":2,"earned":{"Mushroom Caves":{"gold":120}}})",
        R"({"level":3,"earned":{"slimes":{"gold":15}}})",
        R"({"level":3,"earned":{"good night":{"gold":10}}})"}},
      {"ca", theo, {R"({"level":1,"earned":{"slimes":{"gold":7}}})"}},
      {"pe",
       ada,
       {R"({"level":2,"name":"Mushroom Caves 🍄","spent":{"arrows":31},)"
        R"("earned":{"gold":120,"mushrooms":7},"parameters":)"
        R"({"success":true,"duration":240,"difficulty":3,"source":"map"}})"}},
      {"sc",
       ada,
       {R"({"level":3,"socialNetwork":"vk"})", R"({"level":3,"socialNetwork":"slime-book"})"}},
      {"sp", ada, {R"({"level":3,"socialNetwork":"vk","postReason":"level 3"})"}},
      {"adrv",
       ada,
       {R"({"source":"sdk","ad_network":"MegaAds","placement":"after a pause",)"
        R"("ad_unit":"interstitial","revenue":0.0125})",
        R"({"source":"sdk","ad_network":"MegaAds","revenue":0.0})"}},
  };
  for (const auto& [code, users, want] : cases) {
    std::vector<json::value> wanted;
    for (const std::string& text : want) wanted.push_back(json::parse(text));
    EXPECT_EQ(contents(code, users), wanted) << code << " of " << *users.begin();
  }
  for (const Arrived& arrived : backend().events("ce")) {
    const json::value* place = arrived.event.if_contains("inProgress");
    const std::map<std::string, json::value> within = {
        {"level_entered", {"Mushroom Caves 🍄"}},
        {"boss_defeated", {"Mushroom Caves 🍄"}},
        {"fell_into_the_water", {"Frozen Lake"}},
    };
    const auto known = within.find(arrived.name);
    EXPECT_EQ(place ? *place : json::value(), known == within.end() ? json::value() : known->second)
        << arrived.name;
  }

  const json::object adas = backend().summary("ada-the-slayer");
  EXPECT_EQ(adas.at("formerly"), "ada");
  EXPECT_EQ(adas.at("level"), 3);
  EXPECT_EQ(adas.at("card"), json::parse(R"({"name":"Ada Łukasiewicz","age":36,"gender":2,)"
                                         R"("guild":"Школа слаймов","slimes beaten":2,)"
                                         R"("title":"Slayer of Slimes 🗡️"})"));
  const json::object theos = backend().summary("théo");
  EXPECT_EQ(theos.at("level"), 6);
  EXPECT_EQ(theos.at("card"), json::parse(R"({"gender":1})"));

  std::set<std::string> codes;
  for (const Arrived& arrived : backend().events("")) {
    codes.insert(json::value_to<std::string>(arrived.event.at("code")));
    const json::value* session = arrived.event.if_contains("sessionId");
    if (!session) continue;
    const json::object& player = theo.contains(arrived.userId) ? theos : adas;
    const json::array& sessions = player.at("sessions").as_array();
    EXPECT_NE(std::ranges::find(sessions, *session), sessions.end()) << arrived.event;
  }
  EXPECT_EQ(codes, (std::set<std::string>{"adrv", "ca", "cb", "ce", "di", "lu", "pe", "pl", "rf",
                                          "rp", "sc", "sp", "ss", "tr", "ts", "ue", "vp"}));

  // The account finds nothing wrong, and would if an event had been stored that did not arrive, or
  // had arrived without being stored.
  std::vector<std::string> output = host.linesWith("");
  EXPECT_EQ(account(output), 0);
  const auto stored = std::ranges::find_if(output, [](const std::string& line) {
    return line.find("Create a new event") != std::string::npos;
  });
  ASSERT_NE(stored, output.end());
  const std::string line = *stored;
  output.erase(stored);
  EXPECT_EQ(account(output), 1);
  output.insert(output.end(), 2, line);
  EXPECT_EQ(account(output), 1);
  EXPECT_EQ(host.end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
