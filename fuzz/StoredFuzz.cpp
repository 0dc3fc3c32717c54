// What a database file may hold. An input is the table's letter and the columns behind the row id,
// a line each: "-" for NULL, "#7" for an integer, anything else is a text.

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CurrencyAccrualResourcesRepository.h"
#include "EventRepository.h"
#include "Fuzz.h"
#include "IdentifiersRepository.h"
#include "LevelResourcesRepository.h"
#include "MessagingCategoryRepository.h"
#include "PeopleRepository.h"
#include "ProjectRepository.h"
#include "RealPaymentRepository.h"
#include "ReportsRepository.h"
#include "SQLiteProvider.h"
#include "SubscriptionRepository.h"
#include "TemporaryFolder.h"
#include "ToolsRepository.h"
#include "TutorialRepository.h"
#include "UserRepository.h"

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

std::shared_ptr<SQLiteProvider> database() {
  static const TemporaryFolder& folder = *new TemporaryFolder;
  static const auto& provider =
      *new auto(std::make_shared<SQLiteProvider>("key", folder.file("support")));
  return provider;
}

/// The values under the names of the columns behind the row id; the rest keep their defaults.
template <class Columns>
std::vector<ColumnValue> contentOf(const Values& values) {
  std::vector<ColumnValue> content;
  for (const auto& column : Columns::columns().subspan(1)) {
    if (content.size() == values.size()) break;
    content.push_back({column.name, values[content.size()]});
  }
  return content;
}

/// Keys with a comma come back as several, empty ones may be lost; the rest stays.
std::optional<SQLiteValue> withoutEmptyKeys(const std::optional<SQLiteValue>& value) {
  std::string kept;
  for (const char c : std::get<std::string>(*value)) {
    if (c != ',' || (!kept.empty() && kept.back() != ',')) kept += c;
  }
  if (kept.ends_with(',')) kept.pop_back();
  return kept;
}

template <class Model>
void expectSame(const Column<Model>& column, const Model& stored, const Model& read) {
  auto left = column.write(stored);
  auto right = column.write(read);
  if (column.name == SQLiteContracts::PeopleCardEntry::changedKeys) {
    left = withoutEmptyKeys(left);
    right = withoutEmptyKeys(right);
  }
  FUZZ_REQUIRE(left == right);
}

void checkModel(const PeopleCard& card) {
  const std::string json = peopleJson(card.properties);
  FUZZ_REQUIRE(peopleJson(peopleProperties(json)) == json);
}

template <class Model>
void checkModel(const Model&) {}

/// A row as a file could hold it is read, stored anew and read again.
template <class Repository, class Columns>
void checkTable(const Values& values) {
  const auto provider = database();
  provider->clear(Columns::tableName);
  // The table's own constraints keep some rows out.
  if (!provider->insert(Columns::tableName, contentOf<Columns>(values))) return;
  const auto rows = Repository(provider).list();
  provider->clear(Columns::tableName);
  for (const auto& model : rows) {
    checkModel(*model);
    FUZZ_REQUIRE(Repository(provider).insert(model));
    const auto read = Repository(provider).get(model->idKey);
    FUZZ_REQUIRE(read);
    for (const auto& column : Columns::columns()) expectSame(column, *model, *read);
  }
}

constexpr void (*tables[])(const Values&) = {
    checkTable<ProjectRepository, ProjectColumns>,
    checkTable<UserRepository, UserColumns>,
    checkTable<EventRepository, EventColumns>,
    checkTable<ReportsRepository, ReportsColumns>,
    checkTable<LevelResourcesRepository, LevelResourcesColumns>,
    checkTable<CurrencyAccrualResourcesRepository, CurrencyAccrualResourcesColumns>,
    checkTable<IdentifiersRepository, IdentifiersColumns>,
    checkTable<RealPaymentRepository, RealPaymentColumns>,
    checkTable<TutorialRepository, TutorialColumns>,
    checkTable<PeopleRepository, PeopleColumns>,
    checkTable<MessagingCategoryRepository, MessagingCategoryColumns>,
    checkTable<ToolsRepository, ToolsColumns>,
    checkTable<SubscriptionRepository, SubscriptionColumns>,
};

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  static const bool areLinesMade = (fuzz::makeAllLogLines(), true);
  (void)areLinesMade;
  if (size == 0 || data[0] < 'a') return -1;
  const std::size_t table = data[0] - std::size_t{'a'};
  if (table >= std::size(fuzz::tables)) return -1;
  fuzz::tables[table](fuzz::valuesOf(fuzz::textOf(data + 1, size - 1)));
  return 0;
}
