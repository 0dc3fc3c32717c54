#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "CachedRepository.h"
#include "DatabaseFile.h"
#include "EventRepository.h"
#include "LevelResourcesRepository.h"
#include "LogCapture.h"
#include "SQLiteProvider.h"
#include "ScriptedDatabase.h"
#include "UserRepository.h"

namespace pelorino {
namespace {

std::shared_ptr<EventObject> eventOf(RowId userId, std::string json = "{}") {
  EventObject event;
  event.code = "ce";
  event.userId = userId;
  event.json = std::move(json);
  return std::make_shared<EventObject>(event);
}

std::shared_ptr<LevelResource> resourceOf(RowId idKey, RowId userId, std::int64_t amount = 0) {
  LevelResource resource;
  resource.idKey = idKey;
  resource.userId = userId;
  resource.amount = amount;
  return std::make_shared<LevelResource>(resource);
}

// ---- What is asked of the database ----

class RepositoryOnScript : public ::testing::Test {
 protected:
  std::vector<std::string> calls() { return std::exchange(database_->calls, {}); }

  using Calls = std::vector<std::string>;
  std::shared_ptr<ScriptedDatabase> database_ = std::make_shared<ScriptedDatabase>();
  EventRepository events_{database_};
};

TEST_F(RepositoryOnScript, AnEmptyTableIsReadOnce) {
  EXPECT_EQ(events_.countOfUser(1), 0U);
  const auto event = eventOf(1);
  EXPECT_TRUE(events_.insert(event));
  events_.deleteItems(std::vector{event});
  EXPECT_TRUE(events_.list().empty());
  EXPECT_EQ(calls(), (Calls{"query events", "insert events", "delete events id IN (?)"}));
}

TEST_F(RepositoryOnScript, ATableIsReadAgainUntilItCouldBeReadAndAfterItWasCleared) {
  database_->works = false;
  EXPECT_TRUE(events_.list().empty());
  EXPECT_TRUE(events_.list().empty());
  EXPECT_EQ(calls(), (Calls{"query events", "query events"}));

  database_->works = true;
  EXPECT_TRUE(events_.list().empty());
  calls();
  events_.clear();
  EXPECT_TRUE(events_.list().empty());
  EXPECT_EQ(calls(), (Calls{"clear events", "query events"}));
}

TEST_F(RepositoryOnScript, AFailedInsertLeavesTheModelOutside) {
  database_->works = false;
  const auto event = eventOf(1);
  EXPECT_FALSE(events_.insert(event));
  EXPECT_EQ(event->idKey, notStoredRowId);
  EXPECT_EQ(events_.countOfUser(1), 0U);
}

TEST_F(RepositoryOnScript, IdsAreDeletedInAsManyStatementsAsTheyTake) {
  std::vector<std::shared_ptr<EventObject>> items;
  for (int i = 0; i < 10; ++i) {
    items.push_back(eventOf(1));
    ASSERT_TRUE(events_.insert(items.back()));
  }
  database_->limit = 4;
  calls();
  events_.deleteItems(items);
  events_.deleteItems({});
  EXPECT_EQ(calls(), (Calls{"delete events id IN (?,?,?,?)", "delete events id IN (?,?,?,?)",
                            "delete events id IN (?,?)"}));
  events_.deleteForDataForUsers(std::vector<RowId>{1, 2, 3, 4, 5});
  events_.deleteForDataForUsers({});
  EXPECT_EQ(calls(), (Calls{"delete events userId IN (?, ?, ?, ?)", "delete events userId IN (?)",
                            "delete events userId IN ()"}));
}

// ---- On real files ----

class RepositoryOnFile : public ::testing::Test {
 protected:
  void SetUp() override { open(); }
  void open() { database_ = std::make_shared<SQLiteProvider>("key", file_.support()); }

  DatabaseFile file_;
  std::shared_ptr<SQLiteProvider> database_;
};

TEST_F(RepositoryOnFile, TheFirstInsertFindsTheStoredRows) {
  file_.run("INSERT INTO events (code, userId, eventJson) VALUES ('a', 1, '{}'), ('b', 2, '{}')");
  EventRepository events(database_);
  EXPECT_TRUE(events.insert(eventOf(1)));
  EXPECT_EQ(events.countOfUser(1), 2U);
  EXPECT_EQ(events.ofUser(1)[0]->code, "a");
  EXPECT_EQ(events.ofUser(1)[1]->idKey, 3);
}

TEST_F(RepositoryOnFile, RowsThatCannotBeDeletedComeBackWithTheNextProcessOnly) {
  LogCapture log(PLRLogLevel::error);
  EventRepository events(database_);
  const auto event = eventOf(1);
  ASSERT_TRUE(events.insert(event));
  file_.run("CREATE TRIGGER full BEFORE DELETE ON events BEGIN SELECT RAISE(ABORT, 'full'); END");
  events.deleteItems(std::vector{event});
  EXPECT_EQ(log.lines().size(), 1U);
  EXPECT_TRUE(events.list().empty());
  EXPECT_EQ(events.countOfUser(1), 0U);

  open();
  EXPECT_EQ(EventRepository(database_).countOfUser(1), 1U);
}

TEST_F(RepositoryOnFile, ASecondRowOfTheSameUserIsRefused) {
  LogCapture log(PLRLogLevel::error);
  UserRepository users(database_);
  EXPECT_TRUE(users.insert(std::make_shared<User>(1, "u")));
  const auto twin = std::make_shared<User>(1, "u");
  EXPECT_FALSE(users.insert(twin));
  EXPECT_EQ(twin->idKey, notStoredRowId);
  EXPECT_EQ(users.ofProject(1).size(), 1U);
  EXPECT_EQ(log.lines().size(), 1U);
  EXPECT_TRUE(users.insert(std::make_shared<User>(1))) << "an absent id is unlike any other";
  EXPECT_TRUE(users.insert(std::make_shared<User>(1)));
}

TEST_F(RepositoryOnFile, UpdateStoresAndTakesThePlaceInTheCache) {
  LevelResourcesRepository resources(database_);
  ASSERT_TRUE(resources.insert(resourceOf(notStoredRowId, 1)));
  const auto other = resourceOf(1, 2, 8);
  resources.update(other);
  EXPECT_EQ(resources.get(1), other);
  EXPECT_EQ(resources.countOfUser(1), 0U);
  EXPECT_EQ(resources.ofUser(2), std::vector{other});
  EXPECT_EQ(file_.run("SELECT amount FROM levelResource"), "8");

  file_.run("INSERT INTO levelResource (userId, type, name, amount) VALUES (1, 0, '', 0)");
  resources.update(resourceOf(2, 1, 9));
  EXPECT_EQ(file_.run("SELECT amount FROM levelResource"), "8\n9");
  EXPECT_EQ(resources.get(2), nullptr) << "it was not in the cache";
}

TEST_F(RepositoryOnFile, AHundredThousandEventsAreReadAndDeletedWithoutWalking) {
  constexpr std::size_t count = 100'000;
  file_.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200000) "
      "INSERT INTO events (code, userId, eventJson) SELECT 'ce', i % 2, '{}' FROM n");
  EventRepository events(database_);
  auto items = events.ofUser(0);
  ASSERT_EQ(items.size(), count);
  std::shuffle(items.begin(), items.end(), std::mt19937(1));
  events.deleteItems(items);
  EXPECT_EQ(events.countOfUser(0), 0U);
  EXPECT_EQ(events.countOfUser(1), count);
  EXPECT_EQ(file_.run("SELECT userId, count(*) FROM events GROUP BY userId"), "1|100000");
}

TEST(RowList, RemovingTheOldestOneByOneDoesNotWalk) {
  constexpr RowId count = 300'000;
  RowList<int> rows;
  const auto item = std::make_shared<int>(0);
  for (RowId id = 1; id <= count; ++id) rows.set(id, item);
  for (RowId id = 1; id < count; ++id) {
    rows.remove(id);
    ASSERT_EQ(rows.find(id), nullptr);
  }
  EXPECT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows.all().size(), 1U);
}

/// What a repository must show, kept as plainly as possible.
struct PlainTable {
  std::vector<std::shared_ptr<EventObject>> rows;

  [[nodiscard]] std::vector<std::shared_ptr<EventObject>> ofUser(RowId userId) const {
    std::vector<std::shared_ptr<EventObject>> found;
    for (const auto& row : rows) {
      if (row->userId == userId) found.push_back(row);
    }
    return found;
  }
};

TEST_F(RepositoryOnScript, IndexesAgreeWithAPlainListUnderRandomOperations) {
  const auto seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto pick = [&](std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
  };
  constexpr std::size_t users = 4;

  EventRepository& events = events_;
  PlainTable plain;
  for (int step = 0; step < 20'000; ++step) {
    const std::size_t operation = pick(100);
    if (operation < 60 || plain.rows.empty()) {
      const auto event = eventOf(static_cast<RowId>(pick(users)));
      ASSERT_TRUE(events.insert(event));
      plain.rows.push_back(event);
    } else if (operation < 75) {
      std::vector<std::shared_ptr<EventObject>> chosen;
      std::sample(plain.rows.begin(), plain.rows.end(), std::back_inserter(chosen), pick(20),
                  random);
      events.deleteItems(chosen);
      std::erase_if(plain.rows, [&](const auto& row) {
        return std::find(chosen.begin(), chosen.end(), row) != chosen.end();
      });
    } else if (operation < 98) {
      const auto& old = plain.rows[pick(plain.rows.size())];
      const auto replacement = eventOf(static_cast<RowId>(pick(users)), "new");
      replacement->idKey = old->idKey;
      events.update(replacement);
      *std::find(plain.rows.begin(), plain.rows.end(), old) = replacement;
    } else {
      const auto userId = static_cast<RowId>(pick(users));
      events.deleteForDataForUsers(std::array{userId});
      std::erase_if(plain.rows, [&](const auto& row) { return row->userId == userId; });
    }
    if (step % 50 != 0) continue;
    ASSERT_EQ(events.list(), plain.rows) << step;
    for (RowId userId = 0; userId < static_cast<RowId>(users); ++userId) {
      ASSERT_EQ(events.ofUser(userId), plain.ofUser(userId)) << step;
      ASSERT_EQ(events.countOfUser(userId), plain.ofUser(userId).size()) << step;
    }
  }
}

}  // namespace
}  // namespace pelorino
