#include "PeopleRepository.h"

#include <sstream>
#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::PeopleCardEntry;

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

constexpr char keySeparator = ',';

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

constexpr Column columns[] = {
    column<&PeopleCard::idKey>(Entry::id),
    column<&PeopleCard::userId>(Entry::userId),
    column<PeopleCard, readJson, writeJson>(Entry::json),
    column<&PeopleCard::updated>(Entry::updated),
    column<&PeopleCard::cleared>(Entry::cleared),
    column<PeopleCard, readChangedKeys, writeChangedKeys>(Entry::changedKeys),
};

constexpr TableDescription table =
    describeOwnedTable<&PeopleCard::userId>(Entry::tableName, columns);

}  // namespace

PeopleRepository::PeopleRepository(std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
