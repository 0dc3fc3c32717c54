#include <sstream>

#include "JsonColumn.h"
#include "Repositories.h"

namespace pelorino {
namespace {

/// Keeps the text beside the properties: a card that does not change is stored as it was read.
bool readJson(PeopleCard& card, const Cursor& cursor, int at) {
  auto json = cursor.text(at);
  if (!json) return false;
  card.properties = peopleProperties(*json);
  card.json = std::move(*json);
  return true;
}

std::optional<SQLiteValue> writeJson(const PeopleCard& card) {
  return card.json;
}

constexpr char keySeparator = ',';  ///< Part of the file's format.

bool readChangedKeys(PeopleCard& card, const Cursor& cursor, int at) {
  std::istringstream keys(cursor.text(at).value_or(std::string()));
  for (std::string key; std::getline(keys, key, keySeparator);) {
    card.changedKeys.push_back(std::move(key));
  }
  return true;
}

std::optional<SQLiteValue> writeChangedKeys(const PeopleCard& card) {
  std::string keys;
  for (const std::string& key : card.changedKeys) {
    if (&key != &card.changedKeys.front()) keys += keySeparator;
    keys += key;
  }
  return keys;
}

constexpr Column peopleCards[] = {
    column<&PeopleCard::userId>(
        "userId", "INTEGER CONSTRAINT peopleCardEntry_users_id_fk REFERENCES users(id)"),
    column<PeopleCard, readJson, writeJson>("json", "TEXT"),
    column<&PeopleCard::updated>("updated", "INTEGER DEFAULT 0 NOT NULL"),
    column<&PeopleCard::cleared>("cleared", "INTEGER DEFAULT 0 NOT NULL"),
    column<PeopleCard, readChangedKeys, writeChangedKeys>("changedKeys", "TEXT"),
};

constexpr Column messagingCategory[] = {
    column<&MessagingCategory::id>("identifier", "TEXT"),
    column<&MessagingCategory::buttons>("buttons", "TEXT"),
};

constexpr Column subscriptions[] = {
    column<&SubscriptionInfo::projectId>(
        "projectId",
        "INTEGER NOT NULL CONSTRAINT subscriptions_projects_id_fk REFERENCES projects(id)"),
    column<&SubscriptionInfo::products>("products", "TEXT DEFAULT '[]'"),
    column<&SubscriptionInfo::restoredTransaction>("restoredTransaction", "TEXT DEFAULT '[]'"),
    column<&SubscriptionInfo::alreadyRestored>("alreadyRestored", "INTEGER DEFAULT 0 NOT NULL"),
    column<&SubscriptionInfo::productIsChanged>("productIsChanged", "INTEGER DEFAULT 0 NOT NULL"),
    column<&SubscriptionInfo::alreadySendRestoreEvent>("alreadySendRestoreEvent",
                                                       "INTEGER DEFAULT 0 NOT NULL"),
};

}  // namespace

constinit const TableDescription PeopleCardEntry::table =
    describeOwnedTable<&PeopleCard::userId>("peopleCards", peopleCards);
constinit const TableDescription MessagingCategoryEntry::table =
    describeTable<MessagingCategory>("messagingCategory", messagingCategory);
constinit const TableDescription SubscriptionEntry::table =
    describeOwnedTable<&SubscriptionInfo::projectId>("subscriptions", subscriptions);

}  // namespace pelorino
