// What a database file may hold. An input is the table's letter and the columns behind the row id,
// a line each: "-" for NULL, "#7" for an integer, anything else is a text.

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "Fuzz.h"
#include "Repositories.h"
#include "SQLiteContracts.h"
#include "SqlText.h"
#include "TemporaryFolder.h"

namespace pelorino::fuzz {
namespace {

using Values = std::vector<std::optional<SQLiteValue>>;

Values valuesOf(std::string_view lines) {
  Values values;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::string line(lines.substr(0, end));
    lines.remove_prefix(std::min(end + 1, lines.size()));
    if (line == "-") {
      values.emplace_back();
    } else if (line.starts_with('#')) {
      values.emplace_back(static_cast<std::int64_t>(std::strtoll(line.c_str() + 1, nullptr, 10)));
    } else {
      values.emplace_back(line);
    }
  }
  return values;
}

SQLiteProvider& database() {
  static const TemporaryFolder& folder = *new TemporaryFolder;
  static auto& provider =
      *new SQLiteProvider("key", folder.file("support"), SQLiteContracts::schema());
  return provider;
}

/// The values of all columns but the row id, of the one row that the table has.
Values storedRow(SQLiteProvider& provider, std::string_view table) {
  Values row;
  int rows = 0;
  FUZZ_REQUIRE(provider.query({.tableName = table}, [&](const Cursor& cursor) {
    ++rows;
    for (int at = 1; at < cursor.columnCount(); ++at) row.push_back(cursor.value(at));
  }));
  FUZZ_REQUIRE(rows == 1);
  return row;
}

/// Of keys joined by commas, empty ones may be lost.
std::string withoutEmptyKeys(const std::string& keys) {
  std::string kept;
  for (const char c : keys) {
    if (c != ',' || (!kept.empty() && kept.back() != ',')) kept += c;
  }
  if (kept.ends_with(',')) kept.pop_back();
  return kept;
}

/// False when the table's own constraints keep the row out. Columns that it lacks keep their
/// defaults.
bool storeRow(SQLiteProvider& provider, std::string_view table, const Values& values) {
  std::vector<std::string> names;
  const std::string tableInfo = "pragma_table_info('" + std::string(table) + "')";
  provider.query({.tableName = tableInfo, .projection = {"name"}},
                 [&](const Cursor& cursor) { names.push_back(cursor.text(0).value()); });
  names.erase(names.begin());
  names.resize(std::min(names.size(), values.size()));
  const std::vector<std::string_view> columns(names.begin(), names.end());
  return provider
      .insert({.tableName = table, .insert = SqlText::insert(table, columns), .update = {}},
              SQLiteValues(values).first(names.size()))
      .has_value();
}

template <class Entry>
Values comparable(Values row) {
  if constexpr (std::is_same_v<Entry, PeopleCardEntry>) {
    row.back() = withoutEmptyKeys(std::get<std::string>(*row.back()));
  }
  return row;
}

template <class Repository, class Model>
bool readRest(Repository& /*repository*/, Model& /*model*/) {
  return true;
}
bool readRest(ReportsRepository& repository, Report& report) {
  return repository.readPackages(report);
}

void checkModel(const PeopleCard& card) {
  const std::string json = peopleJson(card.properties);
  FUZZ_REQUIRE(peopleJson(peopleProperties(json)) == json);
}

template <class Model>
void checkModel(const Model&) {}

/// A row as a file could hold it is read and stored anew. What is read from there and stored once
/// more is the same row.
template <class Repository, class Entry>
void checkTable(const Values& values) {
  SQLiteProvider& provider = database();
  provider.clear(Entry::table.name);
  if (!storeRow(provider, Entry::table.name, values)) return;
  Repository reader(provider);
  for (const auto& model : reader.list()) {
    if (!readRest(reader, *model)) continue;
    checkModel(*model);
    provider.clear(Entry::table.name);
    FUZZ_REQUIRE(Repository(provider).insert(model));
    const Values stored = comparable<Entry>(storedRow(provider, Entry::table.name));

    Repository second(provider);
    const auto read = second.get(model->idKey);
    FUZZ_REQUIRE(read && readRest(second, *read));
    provider.clear(Entry::table.name);
    FUZZ_REQUIRE(Repository(provider).insert(read));
    FUZZ_REQUIRE(comparable<Entry>(storedRow(provider, Entry::table.name)) == stored);
  }
}

constexpr void (*tables[])(const Values&) = {
    checkTable<ProjectRepository, ProjectEntry>,
    checkTable<UserRepository, UserEntry>,
    checkTable<EventRepository, EventEntry>,
    checkTable<ReportsRepository, ReportEntry>,
    checkTable<LevelResourcesRepository, LevelResourceEntry>,
    checkTable<CurrencyAccrualResourcesRepository, CurrencyAccrualResourcesEntry>,
    checkTable<IdentifiersRepository, DeviceIdentifiersEntry>,
    checkTable<RealPaymentRepository, RealPaymentMarkEntry>,
    checkTable<TutorialRepository, TutorialMarkEntry>,
    checkTable<PeopleRepository, PeopleCardEntry>,
    checkTable<MessagingCategoryRepository, MessagingCategoryEntry>,
    checkTable<ToolsRepository, SdkToolsEntry>,
    checkTable<SubscriptionRepository, SubscriptionEntry>,
};

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  fuzz::makeAllLogLines();
  if (size == 0 || data[0] < 'a') return -1;
  const std::size_t table = data[0] - std::size_t{'a'};
  if (table >= std::size(fuzz::tables)) return -1;
  fuzz::tables[table](fuzz::valuesOf(fuzz::textOf(data + 1, size - 1)));
  return 0;
}
