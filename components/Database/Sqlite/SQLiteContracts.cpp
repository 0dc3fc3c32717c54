#include "SQLiteContracts.h"

#include <initializer_list>

namespace pelorino {
namespace {

struct ColumnDefinition {
  std::string_view name;
  std::string_view definition;
};

/// One line for each column, the primary key first.
std::string createTable(std::string_view table, std::initializer_list<ColumnDefinition> columns,
                        std::string_view tableConstraint = {}) {
  std::string sql = "CREATE TABLE IF NOT EXISTS ";
  sql.append(table).append(" (\n    ").append(SQLiteContracts::BaseEntry::id);
  sql.append(" INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT");
  for (const auto& [name, definition] : columns) {
    sql.append(",\n    ").append(name).append(" ").append(definition);
  }
  if (!tableConstraint.empty()) sql.append(",\n    ").append(tableConstraint);
  return sql.append("\n);");
}

std::string createTableProjects() {
  using Entry = SQLiteContracts::ProjectEntry;
  return createTable(Entry::tableName, {
                                           {Entry::applicationKey, "TEXT NOT NULL UNIQUE"},
                                           {Entry::activeUserId, "INTEGER"},
                                           {Entry::trackingAvailable, "INTEGER"},
                                           {Entry::applicationBundle, "TEXT"},
                                           {Entry::applicationVersion, "TEXT"},
                                           {Entry::applicationBuildVersion, "TEXT"},
                                           {Entry::configuration, "TEXT DEFAULT '{}' NOT NULL"},
                                           {Entry::isReferralSent, "INTEGER"},
                                           {Entry::savedTime, "INTEGER"},
                                           {Entry::categoriesVersion, "INTEGER"},
                                           {Entry::isMigrated, "INTEGER DEFAULT 0 NOT NULL"},
                                       });
}

std::string createTableUsers() {
  using Entry = SQLiteContracts::UserEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::projectId,
           "INTEGER NOT NULL CONSTRAINT users_projects_id_fk REFERENCES projects(id)"},
          {Entry::level, "INTEGER DEFAULT 1 NOT NULL"},
          {Entry::sessionId, "INTEGER"},
          {Entry::userId, "TEXT"},
          {Entry::previousUserId, "TEXT"},
          {Entry::lastForegroundTime, "INTEGER"},
          {Entry::lastBackgroundTime, "INTEGER"},
          {Entry::isDefaultUser, "INTEGER"},
          {Entry::isResourceAggregationEnable, "INTEGER"},
      },
      "UNIQUE(projectId, userId)");
}

std::string createTableEvents() {
  using Entry = SQLiteContracts::EventEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::code, "TEXT"},
          {Entry::userId, "INTEGER CONSTRAINT events_users_id_fk REFERENCES users(id)"},
          {Entry::eventJson, "TEXT"},
      });
}

std::string createTableReports() {
  using Entry = SQLiteContracts::ReportEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::userId, "INTEGER CONSTRAINT reports_users_id_fk REFERENCES users(id)"},
          {Entry::packagesJson, "TEXT"},
          {Entry::uuid, "TEXT DEFAULT '{}' NOT NULL"},
      });
}

std::string createTableLevelResources() {
  using Entry = SQLiteContracts::LevelResourceEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::userId, "INTEGER CONSTRAINT levelResource_users_id_fk REFERENCES users(id)"},
          {Entry::type, "INTEGER NOT NULL"},
          {Entry::name, "TEXT"},
          {Entry::amount, "INTEGER NOT NULL"},
      });
}

std::string createTableCurrencyAccrualResources() {
  using Entry = SQLiteContracts::CurrencyAccrualResourcesEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::userId,
           "INTEGER CONSTRAINT currencyAccrualResources_users_id_fk REFERENCES users(id)"},
          {Entry::type, "INTEGER NOT NULL"},
          {Entry::name, "TEXT"},
          {Entry::amount, "INTEGER NOT NULL"},
          {Entry::source, "TEXT"},
          {Entry::timestamp, "INTEGER NOT NULL"},
      });
}

std::string createTableDeviceIdentifiers() {
  using Entry = SQLiteContracts::DeviceIdentifiersEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::projectId,
           "INTEGER NOT NULL CONSTRAINT identifiers_projects_id_fk REFERENCES projects(id)"},
          {Entry::deviceIdentifier, "TEXT"},
          {Entry::previousDeviceIdentifier, "TEXT"},
          {Entry::pelorinoId, "INTEGER"},
          {Entry::crossPlatformPelorinoId, "INTEGER"},
          {Entry::uuid, "TEXT"},
      });
}

std::string createTableRealPaymentMarks() {
  using Entry = SQLiteContracts::RealPaymentMarkEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::projectId,
           "INTEGER CONSTRAINT realPaymentMarks_projects_id_fk REFERENCES projects(id)"},
          {Entry::orderId, "TEXT"},
      });
}

std::string createTableTutorialMarks() {
  using Entry = SQLiteContracts::TutorialMarkEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::userId, "INTEGER CONSTRAINT tutorialMarkEntry_users_id_fk REFERENCES users(id)"},
          {Entry::step, "INTEGER"},
      });
}

std::string createPeopleCardEntry() {
  using Entry = SQLiteContracts::PeopleCardEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::userId, "INTEGER CONSTRAINT peopleCardEntry_users_id_fk REFERENCES users(id)"},
          {Entry::json, "TEXT"},
          {Entry::updated, "INTEGER DEFAULT 0 NOT NULL"},
          {Entry::cleared, "INTEGER DEFAULT 0 NOT NULL"},
          {Entry::changedKeys, "TEXT"},
      });
}

std::string createTableMessagingCategory() {
  using Entry = SQLiteContracts::MessagingCategoryEntry;
  return createTable(Entry::tableName, {
                                           {Entry::identifier, "TEXT"},
                                           {Entry::buttons, "TEXT"},
                                       });
}

std::string createTableSdkTools() {
  using Entry = SQLiteContracts::SdkToolsEntry;
  return createTable(Entry::tableName, {
                                           {Entry::metadata, "TEXT DEFAULT '[]'"},
                                       });
}

std::string createTableSubscriptions() {
  using Entry = SQLiteContracts::SubscriptionEntry;
  return createTable(
      Entry::tableName,
      {
          {Entry::projectId,
           "INTEGER NOT NULL CONSTRAINT subscriptions_projects_id_fk REFERENCES projects(id)"},
          {Entry::products, "TEXT DEFAULT '[]'"},
          {Entry::restoredTransaction, "TEXT DEFAULT '[]'"},
          {Entry::alreadyRestored, "INTEGER DEFAULT 0 NOT NULL"},
          {Entry::productIsChanged, "INTEGER DEFAULT 0 NOT NULL"},
          {Entry::alreadySendRestoreEvent, "INTEGER DEFAULT 0 NOT NULL"},
      });
}

constexpr const char* updateTableDeviceIdentifiers =
    "ALTER TABLE deviceIdentifiers ADD COLUMN pelorinoIdTimestamp INTEGER;";

}  // namespace

const SQLiteContracts::Map& SQLiteContracts::map() {
  static const Map& map = *new Map{{
      {
          {createTableProjects()},
          {createTableUsers()},
          {createTableEvents()},
          {createTableReports()},
          {createTableLevelResources()},
          {createTableCurrencyAccrualResources()},
          {createTableDeviceIdentifiers()},
          {createTableRealPaymentMarks()},
          {createTableTutorialMarks()},
          {createPeopleCardEntry()},
          {createTableMessagingCategory()},
          {createTableSdkTools()},
      },
      {
          {createTableSubscriptions()},
          {updateTableDeviceIdentifiers, DeviceIdentifiersEntry::tableName,
           DeviceIdentifiersEntry::pelorinoIdTimestamp},
      },
  }};
  return map;
}

}  // namespace pelorino
