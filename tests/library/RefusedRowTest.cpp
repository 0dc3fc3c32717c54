#include <pelorino/PLRUserCard.h>

#include "LibraryTest.h"

namespace pelorino {
namespace {

/// Makes the database refuse changes of a table, new rows unless said otherwise, or take them
/// again.
class RefusedRowTest : public LibraryTest {
 protected:
  void refuse(const std::string& table, const std::string& change = "INSERT") const {
    rows("CREATE TRIGGER refusal BEFORE " + change + " ON " + table +
         " BEGIN SELECT RAISE(ABORT, 'refused'); END");
  }
  void allow() const { rows("DROP TRIGGER refusal"); }
};

TEST_F(RefusedRowTest, AUserWhoCouldNotBeStoredIsStoredWithTheNextEventAndSoIsHisCard) {
  const auto name = [this] {
    return answerOf<std::string>([](const auto& handler) { PLRUserCard::getName(handler); });
  };
  start("anna");
  refuse("users");
  PLRAnalytics::setUserId("bert");
  PLRUserCard::setName("Bert");
  PLRAnalytics::tutorial(1);
  EXPECT_EQ(name(), "Bert");
  allow();
  PLRAnalytics::tutorial(1);
  delivered.clear();
  send();
  EXPECT_EQ(name(), "Bert");
  EXPECT_EQ(rows("SELECT users.userId FROM users JOIN projects ON users.id = activeUserId"),
            "bert");
  EXPECT_EQ(rows("SELECT count(*) FROM events WHERE userId < 0"), "0");
  for (const std::string table : {"peopleCards", "tutorialMarkEntry"}) {
    EXPECT_EQ(rows("SELECT sum(userId < 0), sum(userId = activeUserId) FROM projects, " + table),
              "0|1")
        << table;
  }
  ASSERT_FALSE(delivered.empty());
  EXPECT_EQ(header(delivered.back(), "UserId"), "YmVydA==") << "bert, in Base64";
  EXPECT_TRUE(holds(delivered.back(), R"("name":"Bert")"));
  EXPECT_TRUE(holds(delivered.back(), R"("code":"tr")"));
}

TEST_F(RefusedRowTest, WhenTheActiveUserHasNoRowTheOneOfThatNameIsTaken) {
  start();
  stop();
  rows("UPDATE projects SET activeUserId = 77");
  start();
  EXPECT_EQ(rows("SELECT activeUserId FROM projects"), "1");
}

TEST_F(RefusedRowTest, WithoutAStoredProjectTheLibraryDoesNotStart) {
  start();
  stop();
  rows("DELETE FROM projects");
  refuse("projects");
  start();
  EXPECT_TRUE(
      logged("ERROR In the Initialize method an error has occurred: the project cannot be "
             "stored"));
  EXPECT_EQ(rows("SELECT count(*) FROM users WHERE projectId < 0"), "0");
  allow();
  stop();
  start();
  report("boss");
  send();
  EXPECT_EQ(deliveredEvents().back(), "boss");
}

TEST_F(RefusedRowTest, AReportThatHasArrivedAndCannotBeDeletedIsNotSentAgainByTheNextLibrary) {
  start();
  report("boss");
  refuse("reports", "DELETE");
  send();
  stop();
  allow();
  EXPECT_EQ(rows("SELECT count(*) FROM reports WHERE packagesJson LIKE '%boss%'"), "1");
  start();
  send();
  EXPECT_EQ(timesDelivered("boss"), 1);
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
}

}  // namespace
}  // namespace pelorino
