#include <gtest/gtest.h>

#include "CurrencyAccrualResourcesRepository.h"
#include "DatabaseFile.h"
#include "EventRepository.h"
#include "IdentifiersRepository.h"
#include "JsonHelpers.h"
#include "LevelResourcesRepository.h"
#include "LogCapture.h"
#include "MessagingCategoryRepository.h"
#include "PeopleRepository.h"
#include "ProjectRepository.h"
#include "RealPaymentRepository.h"
#include "ReportsRepository.h"
#include "SQLiteProvider.h"
#include "SubscriptionRepository.h"
#include "ToolsRepository.h"
#include "TutorialRepository.h"
#include "UserRepository.h"

namespace pelorino {
namespace {

class StoredModels : public ::testing::Test {
 protected:
  /// Stores a new model and one with every field set, and looks at their rows. Read by another
  /// process, and stored again as they were read, they must give the same rows.
  template <class Repository, class Columns, class Model>
  void expectRows(Columns, const Model& fresh, const Model& full, const std::string& rows) {
    const std::string table(Columns::tableName);
    SCOPED_TRACE(table);
    {
      Repository repository(open());
      for (const Model& model : {fresh, full}) {
        const auto item = std::make_shared<Model>(model);
        ASSERT_TRUE(repository.insert(item));
        EXPECT_EQ(repository.get(item->idKey), item);
      }
    }
    EXPECT_EQ(file_.run("SELECT * FROM " + table), rows);

    Repository repository(open());
    const auto read = repository.list();
    ASSERT_EQ(read.size(), 2U);
    file_.run("DELETE FROM " + table + "; DELETE FROM sqlite_sequence");
    for (const auto& item : read) ASSERT_TRUE(repository.insert(item));
    EXPECT_EQ(file_.run("SELECT * FROM " + table), rows);

    EXPECT_EQ(columnsOf(Columns::columns()),
              file_.run("SELECT group_concat(name) FROM pragma_table_info('" + table + "')"));
  }

  template <class Model>
  static std::string columnsOf(std::span<const Column<Model>> columns) {
    std::string names;
    for (const auto& column : columns) {
      if (!names.empty()) names += ',';
      names += column.name;
    }
    return names;
  }

  std::shared_ptr<SQLiteProvider> open() {
    return std::make_shared<SQLiteProvider>("key", file_.support());
  }

  /// The models of the rows that the statement makes.
  template <class Repository>
  auto read(const std::string& sql) {
    auto provider = open();
    file_.run(sql);
    return Repository(provider).list();
  }

  DatabaseFile file_;
};

Config configWithoutTime() {
  Config config;
  config.serverTime = 9;
  return config;
}

constexpr const char* plainConfig =
    R"({"timeForRequest":120000,"countForRequest":10,"eventParamsCount":20,"sessionTimeout":600000,"serverTime":9,"aliveTimeout":300000,"userCounting":true,"currencyAggregationTimeout":360000,"sbsConfigVersion":0})";

TEST_F(StoredModels, ComeBackAsTheyWere) {
  Project project("a");
  project.configuration = configWithoutTime();
  Project fullProject("b'\u00e9");
  fullProject.activeUserId = 2;
  fullProject.trackingAvailable = false;
  fullProject.applicationBundle = "bundle";
  fullProject.applicationVersion = "1.0";
  fullProject.applicationBuildVersion = "7";
  fullProject.configuration = configWithoutTime();
  fullProject.isReferralSent = true;
  fullProject.savedTime = 8;
  fullProject.categoriesVersion = 9;
  fullProject.isMigrated = true;
  expectRows<ProjectRepository>(ProjectColumns(), project, fullProject,
                                std::string("1|a||1||||") + plainConfig +
                                    "|0|||0\n2|b'\u00e9|2|0|bundle|1.0|7|" + plainConfig +
                                    "|1|8|9|1");

  User user(5, "u", true);
  User fullUser(5, std::nullopt, false);
  fullUser.level = 4;
  fullUser.sessionId = 1'700'000'000'000;
  fullUser.previousUserId = "before";
  fullUser.lastForegroundTime = 11;
  fullUser.lastBackgroundTime = 12;
  fullUser.isResourceAggregationEnable = false;
  fullUser.balanceIsSent = true;
  expectRows<UserRepository>(UserColumns(), user, fullUser,
                             "1|5|1||u||||1|1\n2|5|4|1700000000000||before|11|12|0|0");

  DeviceIdentifiers ids;
  DeviceIdentifiers fullIds;
  fullIds.projectId = 1;
  fullIds.deviceIdentifier = "d";
  fullIds.previousDeviceIdentifier = "p";
  fullIds.pelorinoId = 3;
  fullIds.crossPlatformPelorinoId = 4;
  fullIds.uuid = "u";
  fullIds.pelorinoIdTimestamp = 5;
  expectRows<IdentifiersRepository>(IdentifiersColumns(), ids, fullIds,
                                    "1|-1||||||\n2|1|d|p|3|4|u|5");

  EventObject event;
  EventObject fullEvent;
  fullEvent.code = "ce";
  fullEvent.userId = 2;
  fullEvent.json = R"({"code":"ce"})";
  expectRows<EventRepository>(EventColumns(), event, fullEvent, "1||-1|\n2|ce|2|{\"code\":\"ce\"}");

  Report report;
  report.uuid = "U1";
  Report fullReport;
  fullReport.uuid = "U2";
  fullReport.userId = 2;
  fullReport.appKey = "not stored";
  fullReport.packages.push_back({.language = "en",
                                 .appVersion = {},
                                 .appBuildVersion = {},
                                 .sdkVersion = "2.1.2",
                                 .sdkCodeVersion = 10,
                                 .bundle = {},
                                 .events = std::vector<std::string>{R"({"code":"ce"})"}});
  expectRows<ReportsRepository>(ReportsColumns(), report, fullReport,
                                R"(1|-1|[]|U1
2|2|[{"language":"en","appVersion":null,"appBuildVersion":null,"sdkVersion":"2.1.2","sdkCodeVersion":10,"bundle":null,"engine":"Unreal","events":[{"code":"ce"}]}]|U2)");

  expectRows<LevelResourcesRepository>(
      LevelResourcesColumns(), LevelResource(),
      LevelResource{.userId = 2, .type = LevelResourceType::spent, .name = "gold", .amount = -5},
      "1|-1|0||0\n2|2|2|gold|-5");
  expectRows<CurrencyAccrualResourcesRepository>(
      CurrencyAccrualResourcesColumns(), CurrencyAccrualResource(),
      CurrencyAccrualResource{.userId = 2,
                              .type = PLRAccrualType::bought,
                              .name = "gold",
                              .amount = 5,
                              .source = "quest",
                              .timestamp = 6},
      "1|-1|0||0||0\n2|2|1|gold|5|quest|6");
  expectRows<RealPaymentRepository>(RealPaymentColumns(), RealPaymentMark(),
                                    RealPaymentMark{.projectId = 2, .orderId = "o"},
                                    "1|-1|\n2|2|o");
  expectRows<TutorialRepository>(TutorialColumns(), TutorialMark(),
                                 TutorialMark{.userId = 2, .step = -2}, "1|-1|0\n2|2|-2");

  PeopleCard card;
  PeopleCard fullCard;
  fullCard.userId = 2;
  fullCard.properties = {{"n", {}}, {"s", "x"}, {"d", 0.5}, {"b", true}, {"i", 7}};
  fullCard.json = peopleJson(fullCard.properties);
  fullCard.changedKeys = {"s", "n"};
  fullCard.updated = true;
  fullCard.cleared = true;
  expectRows<PeopleRepository>(PeopleColumns(), card, fullCard,
                               "1|-1||0|0|\n"
                               "2|2|{\"b\":true,\"d\":0.5,\"i\":7,\"n\":null,\"s\":\"x\"}|1|1|s,n");

  SdkTools tools;
  SdkTools fullTools;
  fullTools.properties = {{"sdkVersion", "2.1.2"}};
  expectRows<ToolsRepository>(ToolsColumns(), tools, fullTools,
                              "1|{}\n2|{\"sdkVersion\":\"2.1.2\"}");

  MessagingCategory category;
  MessagingCategory fullCategory;
  fullCategory.id = "c";
  fullCategory.buttons.push_back({"b", "Go", std::nullopt});
  expectRows<MessagingCategoryRepository>(
      MessagingCategoryColumns(), category, fullCategory,
      "1||[]\n2|c|[{\"id\":\"b\",\"text\":\"Go\",\"activationMode\":null}]");

  SubscriptionInfo info;
  SubscriptionInfo fullInfo;
  fullInfo.projectId = 2;
  fullInfo.products.push_back({.productId = "p",
                               .price = Decimal::parse("4.990000000000000001").value(),
                               .regionCode = "US",
                               .currencyCode = "USD",
                               .introductoryPrice = Decimal(),
                               .discounts = {{{"d", Decimal::parse("1e-7").value()}}}});
  fullInfo.restoredTransaction.push_back({"p", {"t1", "t2"}});
  fullInfo.alreadyRestored = true;
  expectRows<SubscriptionRepository>(SubscriptionColumns(), info, fullInfo,
                                     R"(1|-1|[]|[]|0|0|0
2|2|[{"productId":"p","price":4.990000000000000001,"regionCode":"US","currencyCode":"USD","introductoryPrice":0,"discounts":{"d":1e-07}}]|[{"productID":"p","transactionIds":["t1","t2"]}]|1|0|0)");
}

TEST_F(StoredModels, CardsAreReadIntoTypedValues) {
  const auto cards = read<PeopleRepository>(
      "INSERT INTO peopleCards (userId, json, updated, changedKeys) VALUES "
      "(1, '{\"b\":true,\"i\":1,\"d\":1.5,\"n\":null,\"l\":[1],\"o\":{}}', 5, NULL)");
  ASSERT_EQ(cards.size(), 1U);
  const auto& properties = cards[0]->properties;
  EXPECT_EQ(properties.size(), 4U);
  EXPECT_TRUE(properties.at("b").isEqual(true));
  EXPECT_TRUE(properties.at("i").isEqual(1));
  EXPECT_TRUE(properties.at("d").isEqual(1.5));
  EXPECT_TRUE(properties.at("n").isNull());
  EXPECT_TRUE(cards[0]->updated);
  EXPECT_TRUE(cards[0]->changedKeys.empty());
}

TEST_F(StoredModels, RowsWithoutARequiredValueAreSkippedAndStay) {
  const auto events = read<EventRepository>(
      "INSERT INTO events (code, userId, eventJson) VALUES ('a', 1, '{}'), ('b', 1, NULL), "
      "(NULL, 1, '{}'), ('c', 'text', '{}'), ('d', 1, x'7B7D'), ('e', 1, '{}')");
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0]->code, "a");
  EXPECT_EQ(events[1]->code, "e");
  EXPECT_EQ(file_.run("SELECT count(*) FROM events"), "6");
}

TEST_F(StoredModels, OddValuesReadAsDefaults) {
  const LogCapture log;
  const auto projects = read<ProjectRepository>(
      "INSERT INTO projects (applicationKey, activeUserId) VALUES ('a', 'text'); "
      "INSERT INTO projects (applicationKey, configuration) VALUES ('b', 'garbage')");
  ASSERT_EQ(projects.size(), 2U);
  EXPECT_FALSE(projects[0]->trackingAvailable);
  EXPECT_EQ(projects[0]->activeUserId, std::nullopt);
  for (const auto& project : projects) {
    EXPECT_EQ(encodeJson(project->configuration), encodeJson(Config::defaulConfiguration()));
  }

  const auto resources = read<LevelResourcesRepository>(
      "INSERT INTO levelResource (userId, type, name, amount) VALUES (1, 7, '', 0), (1, -1, '', "
      "0), "
      "(1, 1, '', 0)");
  ASSERT_EQ(resources.size(), 3U);
  EXPECT_EQ(resources[0]->type, LevelResourceType::earned);
  EXPECT_EQ(resources[1]->type, LevelResourceType::earned);
  EXPECT_EQ(resources[2]->type, LevelResourceType::bought);

  const auto accruals = read<CurrencyAccrualResourcesRepository>(
      "INSERT INTO currencyAccrualResources (userId, type, name, amount, source, timestamp) "
      "VALUES (1, 2, '', 0, '', 0)");
  ASSERT_EQ(accruals.size(), 1U);
  EXPECT_EQ(accruals[0]->type, PLRAccrualType::earned);

  const auto reports = read<ReportsRepository>(
      "INSERT INTO reports (userId, packagesJson) VALUES (1, NULL), (1, '{}')");
  ASSERT_EQ(reports.size(), 2U);
  EXPECT_TRUE(reports[1]->packages.empty());
  EXPECT_EQ(reports[1]->packagesJson, "{}");

  EXPECT_EQ(read<SubscriptionRepository>("INSERT INTO subscriptions (projectId, products) VALUES "
                                         "(1, ''), (1, 'garbage'), (1, '[{\"price\":\"1\"}]')")
                .size(),
            3U);

  const auto tools = read<ToolsRepository>("INSERT INTO sdkTools (metadata) VALUES ('[]'), ('')");
  ASSERT_EQ(tools.size(), 2U);
  EXPECT_TRUE(tools[0]->properties.empty());
}

}  // namespace
}  // namespace pelorino
