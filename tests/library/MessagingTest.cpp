#include <pelorino/PLREventsRouter.h>

#include "TrackingTest.h"

namespace pelorino {
namespace {

using Router = PLREventsRouter;
using Categories = std::vector<PLRMessagingCategory>;

/// What a handler is given, as JSON: "a b" for the ids, or "-" when it was not called.
class MessagingTest : public TrackingTest {
 protected:
  std::string categoriesNow() {
    std::string found = "-";
    Router::getMessagingCategories([&](const Categories& all) {
      found.clear();
      for (const auto& category : all) found += category.json + " ";
    });
    system.runUntilIdle();
    return found;
  }
  std::string stored() {
    return rows("SELECT identifier || buttons FROM messagingCategory ORDER BY id") + "@" +
           rows("SELECT categoriesVersion FROM projects");
  }
  void answer(const std::string& pushCategories, int status = 200) {
    categories.answers.clear();
    categories.answer(status, R"({"pushCategories":)" + pushCategories + "}");
  }
};

const std::string ok = R"([{"id":"ok","text":"Ok","activationMode":null}])";
const std::string no = R"([{"id":"no","text":"No","activationMode":"background"}])";

std::string category(const std::string& id, const std::string& buttons) {
  return R"({"id":")" + id + R"(","buttons":)" + buttons + "}";
}

TEST_F(MessagingTest, CategoriesFollowTheAnswersOfTheBackend) {
  const std::string a = category("a", ok), b = category("b", no), c = category("c", "[]");
  const struct {
    const char* label;
    std::string answer;
    int status;
    std::string given;
    std::string rows;
    const char* counts;  // Null where the answer changes nothing.
  } steps[] = {
      {"nothing yet", R"({"version":1,"categories":null})", 200, "", "@1", "[0] [0] [1]"},
      {"new ones", R"({"version":2,"categories":[)" + a + "," + b + "]}", 200, a + " " + b + " ",
       "a" + ok + "\nb" + no + "@2", "[2] [0] [2]"},
      {"other buttons of one that is known",
       R"({"version":3,"categories":[)" + category("a", no) + "]}", 200, a + " " + b + " ",
       "a" + ok + "\nb" + no + "@3", "[0] [0] [3]"},
      {"one that goes, one that is not known",
       R"({"version":4,"categories":[],"removed":["b","x"]})", 200, a + " ", "a" + ok + "@4",
       "[0] [1] [4]"},
      {"one that comes and goes", R"({"version":5,"categories":[)" + c + R"(],"removed":["c"]})",
       200, a + " ", "a" + ok + "\nc[]@5", "[1] [1] [5]"},
      {"any status is an answer", R"({"version":6,"categories":[],"removed":["c"]})", 500, a + " ",
       "a" + ok + "@6", "[0] [1] [6]"},
      {"no answer", "7", 200, a + " ", "a" + ok + "@6", nullptr},
      {"no list of categories", R"({"version":8})", 200, a + " ", "a" + ok + "@6", nullptr},
      {"no id", R"({"version":8,"categories":[{"buttons":[]}]})", 200, a + " ", "a" + ok + "@6",
       nullptr},
  };
  std::string version = "0";
  for (const auto& step : steps) {
    SCOPED_TRACE(step.label);
    answer(step.answer, step.status);
    std::string given;
    const auto lines = linesOf([&] { given = categoriesNow(); });
    EXPECT_EQ(given, step.given);
    EXPECT_EQ(stored(), step.rows);
    EXPECT_EQ(
        *categories.requests.back().body,
        R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1.4","categoriesVersion":)" +
            version + R"(,"language":"en"})");
    std::string counts;
    for (const std::string& line : lines) {
      if (!line.starts_with("DEBUG [Messaging Module] Update")) continue;
      for (auto at = line.find('['); (at = line.find('[', at + 1)) != std::string::npos;) {
        counts += (counts.empty() ? "" : " ") + line.substr(at, line.find(']', at) + 1 - at);
      }
    }
    EXPECT_EQ(counts, step.counts ? step.counts : "");
    if (step.counts) version = rows("SELECT categoriesVersion FROM projects");
  }
  restart("ann");
  categories.answers.clear();
  EXPECT_EQ(categoriesNow(), a + " ") << "what is stored, without the backend";
}

TEST_F(MessagingTest, ARowThatTheDiskRefusesIsGivenOnceAndNoAnswerIsStoredTwice) {
  rows(
      "CREATE TRIGGER full BEFORE INSERT ON messagingCategory WHEN new.identifier='b' "
      "BEGIN SELECT RAISE(ABORT, 'full'); END");
  answer(R"({"version":2,"categories":[)" + category("a", ok) + "," + category("b", ok) + "]}");
  int answers = 0;
  const auto count = [&](const Categories& all) { answers += static_cast<int>(all.size()); };
  Router::getMessagingCategories(count);
  Router::getMessagingCategories(count);  // Asked before the first answer is stored.
  system.runUntilIdle();
  EXPECT_EQ(answers, 4);
  EXPECT_EQ(stored(), "a" + ok + "@2");
}

TEST_F(MessagingTest, PublicFormIsTheJsonAndItsParts) {
  answer(R"({"version":1,"categories":[)" + category("a", no) + "]}");
  Categories given;
  Router::getMessagingCategories([&](const Categories& all) { given = all; });
  system.runUntilIdle();
  ASSERT_EQ(given.size(), 1U);
  EXPECT_EQ(given[0].id, "a");
  ASSERT_EQ(given[0].buttons.size(), 1U);
  EXPECT_EQ(given[0].buttons[0].text, "No");
  EXPECT_EQ(given[0].buttons[0].activationMode, "background");
}

TEST_F(MessagingTest, ATeardownAmidARequestChangesNothingAndStillAnswers) {
  answer(R"({"version":1,"categories":[)" + category("a", ok) + "]}");
  categories.onRequest = [] { PLREngineWrapper::destroySDK(); };
  std::vector<std::string> answers(2, "-");
  for (std::string& mine : answers) {
    Router::getMessagingCategories(
        [&mine](const Categories& all) { mine = std::to_string(all.size()); });
  }
  system.runUntilIdle();
  EXPECT_NE(answers[0], "-");
  EXPECT_NE(answers[1], "-");
  EXPECT_EQ(linesOf([&] { EXPECT_EQ(categoriesNow(), "-"); }),
            (std::vector<std::string>{"ERROR In the getPushCategories(_:) method an error has "
                                      "occurred: The SDK is not initialized yet!"}));
}

TEST_F(MessagingTest, PushesAreEventsThatLeaveAtOnce) {
  const auto told = [&] { return TrackingTest::stored("'pt','po'", "'$.none'"); };
  Router::sendPushToken("to\xffken", true);
  Router::sendPushOpened(12, -3);
  Router::sendPushOpened(13, 4, "play");
  system.runUntilIdle();
  const std::string events = told();
  EXPECT_NE(events.find(R"("isAllowed":true,"token":"to�ken"})"), std::string::npos) << events;
  EXPECT_NE(events.find(R"({"code":"po","timestamp":12,"pushId":-3})"), std::string::npos);
  EXPECT_NE(events.find(R"({"code":"po","timestamp":13,"pushId":4,"button":"play"})"),
            std::string::npos);
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "0");

  PLRAnalytics::setTrackingAvailability(false);
  system.runUntilIdle();
  told();
  Router::sendPushToken("token", false);
  EXPECT_EQ(told(), "");

  stop();
  EXPECT_EQ(linesOf([] {
              Router::sendPushToken("token", true);
              Router::sendPushOpened(1, 2);
            }),
            (std::vector<std::string>{"ERROR In the pushToken(_:_:) method an error has occurred: "
                                      "The SDK is not initialized yet!",
                                      "ERROR In the pushOpened(_:_:_:) method an error has "
                                      "occurred: The SDK is not initialized yet!"}));
}

TEST_F(MessagingTest, MessagesOfTheMessagingLibraryJoinTheLog) {
  for (const std::int64_t level : {0, 1, 2, 3, 4, -1}) Router::sendLogMessage(level, "m");
  const auto lines = log.lines();
  EXPECT_EQ((std::vector<std::string>{lines.end() - 6, lines.end()}),
            (std::vector<std::string>{"DEBUG m", "ERROR m", "WARNING m", "INFO m", "DEBUG m",
                                      "DEBUG m"}));
}

}  // namespace
}  // namespace pelorino
