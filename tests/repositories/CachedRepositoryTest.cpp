#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "CachedRepository.h"
#include "Repositories.h"
#include "ScriptedDatabase.h"

namespace pelorino {
namespace {

std::shared_ptr<EventObject> eventOf(RowId userId) {
  return std::make_shared<EventObject>(EventObject{.code = "ce", .userId = userId, .json = "{}"});
}

class RepositoryOnScript : public ::testing::Test {
 protected:
  std::vector<std::string> calls() { return std::exchange(database_.calls, {}); }

  using Calls = std::vector<std::string>;
  ScriptedDatabase database_;
  EventRepository events_{database_};
};

TEST_F(RepositoryOnScript, ATableIsReadOnceItCanBeAndAgainAfterItWasCleared) {
  database_.works = false;
  EXPECT_TRUE(events_.list().empty());
  const auto event = eventOf(1);
  EXPECT_FALSE(events_.insert(event));
  EXPECT_EQ(event->idKey, notStoredRowId);
  EXPECT_EQ(events_.countOfUser(1), 0U);
  EXPECT_EQ(calls(), (Calls{"query events", "query events", "insert events", "query events"}));

  database_.works = true;
  EXPECT_EQ(events_.countOfUser(1), 0U);
  EXPECT_TRUE(events_.insert(event));
  events_.deleteItems(std::vector{event});
  EXPECT_TRUE(events_.list().empty());
  EXPECT_EQ(calls(), (Calls{"query events", "insert events", "delete events id IN (?)"}));

  events_.clear();
  EXPECT_TRUE(events_.list().empty());
  EXPECT_EQ(calls(), (Calls{"clear events", "query events"}));
}

TEST_F(RepositoryOnScript, IdsAreDeletedInAsManyStatementsAsTheyTake) {
  std::vector<std::shared_ptr<EventObject>> items;
  for (int i = 0; i < 10; ++i) {
    items.push_back(eventOf(1));
    ASSERT_TRUE(events_.insert(items.back()));
  }
  database_.limit = 4;
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

TEST_F(RepositoryOnScript, IndexesAgreeWithAPlainListUnderRandomOperations) {
  const auto seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto pick = [&](std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
  };
  const auto pickUser = [&] { return static_cast<RowId>(pick(4)); };
  std::vector<std::shared_ptr<EventObject>> plain;
  for (int step = 0; step < 20'000; ++step) {
    const std::size_t operation = pick(100);
    if (operation < 60 || plain.empty()) {
      plain.push_back(eventOf(pickUser()));
      ASSERT_TRUE(events_.insert(plain.back()));
    } else if (operation < 75) {
      std::vector<std::shared_ptr<EventObject>> chosen;
      std::ranges::sample(plain, std::back_inserter(chosen), static_cast<int>(pick(20)), random);
      events_.deleteItems(chosen);
      std::erase_if(plain, [&](const auto& row) { return std::ranges::count(chosen, row) > 0; });
    } else if (operation < 98) {
      EventObject& row = *plain[pick(plain.size())];
      row.code = std::to_string(step);
      events_.update(row);
    } else {
      const RowId userId = pickUser();
      events_.deleteForDataForUsers(std::array{userId});
      std::erase_if(plain, [&](const auto& row) { return row->userId == userId; });
    }
    if (step % 50 != 0) continue;
    ASSERT_EQ(events_.list(), plain) << step;
    for (RowId userId = 0; userId < 4; ++userId) {
      auto ofUser = plain;
      std::erase_if(ofUser, [&](const auto& row) { return row->userId != userId; });
      ASSERT_EQ(events_.ofUser(userId), ofUser) << step;
      ASSERT_EQ(events_.countOfUser(userId), ofUser.size()) << step;
    }
  }
}

}  // namespace
}  // namespace pelorino
