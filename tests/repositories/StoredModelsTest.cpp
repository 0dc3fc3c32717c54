#include <gtest/gtest.h>

#include "DatabaseFile.h"
#include "JsonHelpers.h"
#include "Repositories.h"
#include "SQLiteContracts.h"

namespace pelorino {
namespace {

class StoredModels : public ::testing::Test {
 protected:
  /// Stores a new model and one with every field set, and looks at their rows. Read by another
  /// process, and stored again as they were read, they must give the same rows.
  template <class Repository, class Model>
  void expectRows(const std::string& table, const Model& full, const std::string& rows,
                  const Model& fresh = Model()) {
    SCOPED_TRACE(table);
    SQLiteProvider first = open();
    Repository writer(first);
    for (const Model& model : {fresh, full}) {
      const auto item = std::make_shared<Model>(model);
      ASSERT_TRUE(writer.insert(item));
      EXPECT_EQ(writer.get(item->idKey), item);
    }
    EXPECT_EQ(file_.run("SELECT * FROM " + table), rows);

    SQLiteProvider second = open();
    Repository reader(second);
    const auto read = reader.list();
    for (const auto& item : read) readRest(reader, *item);
    file_.run("DELETE FROM " + table + "; DELETE FROM sqlite_sequence");
    for (const auto& item : read) ASSERT_TRUE(reader.insert(item));
    EXPECT_EQ(file_.run("SELECT * FROM " + table), rows);
  }

  template <class Repository, class Model>
  void readRest(Repository& /*repository*/, Model& /*model*/) {}
  void readRest(ReportsRepository& repository, Report& report) {
    EXPECT_FALSE(report.hasPackages());
    EXPECT_TRUE(repository.readPackages(report));
  }

  SQLiteProvider open() { return {"key", file_.support(), SQLiteContracts::schema()}; }

  /// The models of the rows that the statement makes.
  template <class Repository>
  auto read(const std::string& sql) {
    SQLiteProvider provider = open();
    file_.run(sql);
    return Repository(provider).list();
  }

  DatabaseFile file_;
};

TEST_F(StoredModels, ComeBackAsTheyWere) {
  Project project("a");
  project.configuration = Config{.serverTime = 9};
  const std::string config = encodeJson(project.configuration);
  Project fullProject("b'\u00e9");
  fullProject.activeUserId = 2;
  fullProject.trackingAvailable = false;
  fullProject.applicationBundle = "bundle";
  fullProject.applicationVersion = "1.0";
  fullProject.applicationBuildVersion = "7";
  fullProject.configuration = project.configuration;
  fullProject.isReferralSent = true;
  fullProject.savedTime = 8;
  fullProject.categoriesVersion = 9;
  fullProject.isMigrated = true;
  expectRows<ProjectRepository>(
      "projects", fullProject,
      "1|a||1||||" + config + "|0|||0\n2|b'\u00e9|2|0|bundle|1.0|7|" + config + "|1|8|9|1",
      project);

  User user(5, std::nullopt, false);
  user.level = 4;
  user.sessionId = 1'700'000'000'000;
  user.previousUserId = "before";
  user.lastForegroundTime = 11;
  user.lastBackgroundTime = 12;
  user.isResourceAggregationEnable = false;
  user.balanceIsSent = true;
  expectRows<UserRepository>(
      "users", user, "1|5|1||u||||1|1\n2|5|4|1700000000000||before|11|12|0|0", User(5, "u", true));

  expectRows<IdentifiersRepository>("deviceIdentifiers",
                                    DeviceIdentifiers{.projectId = 1,
                                                      .deviceIdentifier = "d",
                                                      .previousDeviceIdentifier = "p",
                                                      .pelorinoId = 3,
                                                      .crossPlatformPelorinoId = 4,
                                                      .uuid = "u",
                                                      .pelorinoIdTimestamp = 5},
                                    "1|-1||||||\n2|1|d|p|3|4|u|5");
  expectRows<EventRepository>("events",
                              EventObject{.code = "ce", .userId = 2, .json = R"({"code":"ce"})"},
                              "1||-1|\n2|ce|2|{\"code\":\"ce\"}");

  Package package{.language = "en", .sdkVersion = "2.1.2", .sdkCodeVersion = 10, .bundle = {}};
  package.events = {R"({"code":"ce"})"};
  const std::vector packages{package};
  Report report(packages, "U2");
  report.userId = 2;
  report.appKey = "not stored";
  expectRows<ReportsRepository>("reports", report, "1|-1||\n2|2|" + encodeJson(packages) + "|U2");

  expectRows<LevelResourcesRepository>(
      "levelResource",
      LevelResource{.userId = 2, .type = LevelResourceType::spent, .name = "gold", .amount = -5},
      "1|-1|0||0\n2|2|2|gold|-5");
  expectRows<CurrencyAccrualResourcesRepository>(
      "currencyAccrualResources",
      CurrencyAccrualResource{.userId = 2,
                              .type = PLRAccrualType::bought,
                              .name = "gold",
                              .amount = 5,
                              .source = "quest",
                              .timestamp = 6},
      "1|-1|0||0||0\n2|2|1|gold|5|quest|6");
  expectRows<RealPaymentRepository>(
      "realPaymentMarks", RealPaymentMark{.projectId = 2, .orderId = "o"}, "1|-1|\n2|2|o");
  expectRows<TutorialRepository>("tutorialMarkEntry", TutorialMark{.userId = 2, .step = -2},
                                 "1|-1|0\n2|2|-2");

  PeopleCard card{.userId = 2, .json = {}, .changedKeys = {"s", "n"}, .updated = true};
  card.properties = {{"n", {}}, {"s", "x"}, {"d", 0.5}, {"b", true}, {"i", 7}};
  card.json = peopleJson(card.properties);
  expectRows<PeopleRepository>("peopleCards", card,
                               "1|-1||0|0|\n"
                               "2|2|{\"b\":true,\"d\":0.5,\"i\":7,\"n\":null,\"s\":\"x\"}|1|0|s,n");

  expectRows<ToolsRepository>("sdkTools", SdkTools{.properties = {{"sdkVersion", "2.1.2"}}},
                              "1|{}\n2|{\"sdkVersion\":\"2.1.2\"}");
  expectRows<MessagingCategoryRepository>(
      "messagingCategory", MessagingCategory{.id = "c", .buttons = {{"b", "Go", std::nullopt}}},
      "1||[]\n2|c|[{\"id\":\"b\",\"text\":\"Go\",\"activationMode\":null}]");

  SubscriptionInfo info;
  info.projectId = 2;
  info.products.push_back({.productId = "p",
                           .price = Decimal::parse("4.990000000000000001").value(),
                           .regionCode = "US",
                           .currencyCode = "USD",
                           .introductoryPrice = Decimal(),
                           .discounts = {{{"d", Decimal::parse("1e-7").value()}}}});
  info.restoredTransaction.push_back({"p", {"t1", "t2"}});
  info.alreadyRestored = true;
  expectRows<SubscriptionRepository>("subscriptions", info,
                                     R"(1|-1|[]|[]|0|0|0
2|2|[{"productId":"p","price":4.990000000000000001,"regionCode":"US","currencyCode":"USD","introductoryPrice":0,"discounts":{"d":1e-07}}]|[{"productID":"p","transactionIds":["t1","t2"]}]|1|0|0)");
}

TEST_F(StoredModels, ASecondRowOfTheSameUserIsRefused) {
  SQLiteProvider provider = open();
  UserRepository users(provider);
  EXPECT_TRUE(users.insert(std::make_shared<User>(1, "u")));
  EXPECT_FALSE(users.insert(std::make_shared<User>(1, "u")));
  EXPECT_EQ(users.ofProject(1).size(), 1U);
}

TEST_F(StoredModels, RowsWithoutARequiredValueAreSkippedAndStay) {
  const auto events = read<EventRepository>(
      "INSERT INTO events (code, userId, eventJson) VALUES ('a', 1, '{}'), ('b', 1, NULL), "
      "(NULL, 1, '{}'), ('c', 'text', '{}'), ('d', 1, x'7B7D'), ('e', 1, '{}')");
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0]->code + events[1]->code, "ae");
  EXPECT_EQ(file_.run("SELECT count(*) FROM events"), "6");
}

TEST_F(StoredModels, OddValuesOfAProjectReadAsDefaults) {
  const auto projects = read<ProjectRepository>(
      "INSERT INTO projects (applicationKey, activeUserId, configuration) "
      "VALUES ('a', 'text', 'garbage')");
  ASSERT_EQ(projects.size(), 1U);
  EXPECT_FALSE(projects[0]->trackingAvailable);
  EXPECT_EQ(projects[0]->activeUserId, std::nullopt);
  EXPECT_EQ(encodeJson(projects[0]->configuration), encodeJson(Config::defaulConfiguration()));
}

}  // namespace
}  // namespace pelorino
