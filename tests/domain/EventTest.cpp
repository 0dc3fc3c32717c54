#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <string_view>

#include "CustomEvent.h"
#include "Event.h"
#include "LogCapture.h"
#include "SessionStart.h"
#include "UserEngagement.h"

namespace pelorino {
namespace {

/// Fields of the kinds that the events above do not have.
struct Purchase {
  static constexpr std::string_view code = "xx";
  std::int64_t sessionId = 3;
  std::int64_t timestamp = 2;
  std::map<std::string, std::int64_t> balance = {{"gem", 1}, {"gold", -5}};
  std::map<std::string, std::int64_t> price = {{"gold", 7}};
  std::optional<std::map<std::string, std::int64_t>> spent = {{}};
  std::optional<AnyCodable::Object> parameters;
  std::string network = "n";

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("sessionId", self.sessionId);
    visit("timestamp", self.timestamp);
    visit("balance", self.balance);
    visit(Field("price").entriesLabelled("currency", "price"), self.price);
    visit(Field("spent").leftOutWhenEmpty(), self.spent);
    visit(Field("parameters").nullWhenAbsent(), self.parameters);
    visit(Field("ad_network").labelled("network"), self.network);
  }
};

template <class Record>
void expectForms(const Record& record, const std::string& json, const std::string& text) {
  const Event event(record);
  EXPECT_EQ(event.getJson(), json);
  EXPECT_EQ(event.description(), text);
}

TEST(Event, HasAJsonFormAndATextForm) {
  expectForms(SessionStart{.timestamp = 10, .level = 2},
              R"({"code":"ss","timestamp":10,"level":2})",
              "\t code: ss\n\t timestamp: 10\n\t level: 2\n");
  // The shared fields come first in the text, the progression last.
  expectForms(UserEngagement{.timestamp = 20,
                             .level = 1,
                             .length = 5,
                             .sessionId = 10,
                             .inProgress = {{"a", "b"}},
                             .inExperiments = "e"},
              R"({"code":"ue","timestamp":20,"level":1,"length":5,"sessionId":10,)"
              R"("inProgress":["a","b"],"inExperiments":"e"})",
              "\t code: ue\n\t timestamp: 20\n\t sessionId: 10\n\t level: 1\n\t length: 5\n"
              "\t inProgress: a, b\n\t inExperiments: e\n");
  expectForms(CustomEvent{.timestamp = 1,
                          .sessionId = 2,
                          .level = 3,
                          .name = "n\"",
                          .parameters = {{"b", true}, {"d", 0.5}, {"i", 7}, {"t", "x"}}},
              R"({"code":"ce","timestamp":1,"sessionId":2,"level":3,"name":"n\"",)"
              R"("parameters":{"b":true,"d":0.5,"i":7,"t":"x"}})",
              "\t code: ce\n\t timestamp: 1\n\t sessionId: 2\n\t level: 3\n\t name: n\"\n"
              "\t parameters: \n\t\t parameter key: b value: true\n\t\t parameter key: d value: 0.5"
              "\n\t\t parameter key: i value: 7\n\t\t parameter key: t value: x\n");
  expectForms(Purchase{},
              R"({"code":"xx","sessionId":3,"timestamp":2,"balance":{"gem":1,"gold":-5},)"
              R"("price":{"gold":7},"parameters":null,"ad_network":"n"})",
              "\t code: xx\n\t timestamp: 2\n\t sessionId: 3\n"
              "\t balance: \n\t\t resource: gem amount: 1\n\t\t resource: gold amount: -5\n"
              "\t price: \n\t\t currency: gold price: 7\n\t network: n\n");
}

TEST(Event, ThatJsonCannotHoldIsEmptyAndSaysWhy) {
  const LogCapture log;
  const Event event(CustomEvent{.timestamp = 1,
                                .name = "n",
                                .parameters = {{"p", std::numeric_limits<double>::quiet_NaN()}}});
  EXPECT_EQ(event.getJson(), "");
  EXPECT_EQ(log.lines().at(0),
            "ERROR When trying to get json string from \n\t[" + event.description() +
                "] \n\tobject an error has occurred: JSON has no number that is not finite");
}

}  // namespace
}  // namespace pelorino
