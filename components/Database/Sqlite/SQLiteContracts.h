#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// The schema: names of tables and columns, and the statements that make them. It is frozen on
/// disk: models read their rows by column index, so a column may only ever be added at the end of
/// its table, by a statement of a new step of `map`.
struct SQLiteContracts final {
  /// A statement of a step. One that adds a column names it, so that it is not run on a table that
  /// has the column: unlike the others it does not stand a repetition.
  struct Step {
    std::string sql;
    std::string_view table = {};
    std::string_view addedColumn = {};
  };

  using Map = std::array<std::vector<Step>, 2>;

  /// What is run on a file of version n: `map[n]` and all that follow. The twelve tables of the
  /// first generation (version 0), then what version 1 added to them.
  static const Map& map();
  static constexpr std::int64_t schemeVersion = 1;

  struct BaseEntry {
    static constexpr std::string_view id = "id";
  };

  struct ProjectEntry final : BaseEntry {
    static constexpr std::string_view tableName = "projects";
    static constexpr std::string_view applicationKey = "applicationKey";
    static constexpr std::string_view activeUserId = "activeUserId";
    static constexpr std::string_view trackingAvailable = "trackingAvailable";
    static constexpr std::string_view applicationBundle = "applicationBundle";
    static constexpr std::string_view applicationVersion = "applicationVersion";
    static constexpr std::string_view applicationBuildVersion = "applicationBuildVersion";
    static constexpr std::string_view configuration = "configuration";
    static constexpr std::string_view isReferralSent = "isReferralSent";
    static constexpr std::string_view savedTime = "savedTime";
    static constexpr std::string_view categoriesVersion = "categoriesVersion";
    static constexpr std::string_view isMigrated = "isMigrated";
  };

  struct UserEntry final : BaseEntry {
    static constexpr std::string_view tableName = "users";
    static constexpr std::string_view projectId = "projectId";
    static constexpr std::string_view level = "level";
    static constexpr std::string_view sessionId = "sessionId";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view previousUserId = "previousUserId";
    static constexpr std::string_view lastForegroundTime = "lastForegroundTime";
    static constexpr std::string_view lastBackgroundTime = "lastBackgroundTime";
    static constexpr std::string_view isDefaultUser = "isDefaultUser";
    static constexpr std::string_view isResourceAggregationEnable = "isResourceAggregationEnable";
  };

  struct EventEntry final : BaseEntry {
    static constexpr std::string_view tableName = "events";
    static constexpr std::string_view code = "code";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view eventJson = "eventJson";
  };

  struct ReportEntry final : BaseEntry {
    static constexpr std::string_view tableName = "reports";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view packagesJson = "packagesJson";
    static constexpr std::string_view uuid = "uuid";
  };

  struct LevelResourceEntry final : BaseEntry {
    static constexpr std::string_view tableName = "levelResource";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view type = "type";
    static constexpr std::string_view name = "name";
    static constexpr std::string_view amount = "amount";
  };

  struct CurrencyAccrualResourcesEntry final : BaseEntry {
    static constexpr std::string_view tableName = "currencyAccrualResources";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view type = "type";
    static constexpr std::string_view name = "name";
    static constexpr std::string_view amount = "amount";
    static constexpr std::string_view source = "source";
    static constexpr std::string_view timestamp = "timestamp";
  };

  struct DeviceIdentifiersEntry final : BaseEntry {
    static constexpr std::string_view tableName = "deviceIdentifiers";
    static constexpr std::string_view projectId = "projectId";
    static constexpr std::string_view deviceIdentifier = "deviceIdentifier";
    static constexpr std::string_view previousDeviceIdentifier = "previousDeviceIdentifier";
    static constexpr std::string_view pelorinoId = "pelorinoId";
    static constexpr std::string_view crossPlatformPelorinoId = "crossPlatformPelorinoId";
    static constexpr std::string_view uuid = "uuid";
    static constexpr std::string_view pelorinoIdTimestamp = "pelorinoIdTimestamp";
  };

  struct RealPaymentMarkEntry final : BaseEntry {
    static constexpr std::string_view tableName = "realPaymentMarks";
    static constexpr std::string_view projectId = "projectId";
    static constexpr std::string_view orderId = "orderId";
  };

  struct TutorialMarkEntry final : BaseEntry {
    static constexpr std::string_view tableName = "tutorialMarkEntry";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view step = "step";
  };

  struct PeopleCardEntry final : BaseEntry {
    static constexpr std::string_view tableName = "peopleCards";
    static constexpr std::string_view userId = "userId";
    static constexpr std::string_view json = "json";
    static constexpr std::string_view updated = "updated";
    static constexpr std::string_view cleared = "cleared";
    static constexpr std::string_view changedKeys = "changedKeys";
  };

  struct MessagingCategoryEntry final : BaseEntry {
    static constexpr std::string_view tableName = "messagingCategory";
    static constexpr std::string_view identifier = "identifier";
    static constexpr std::string_view buttons = "buttons";
  };

  struct SdkToolsEntry final : BaseEntry {
    static constexpr std::string_view tableName = "sdkTools";
    static constexpr std::string_view metadata = "metadata";
  };

  struct SubscriptionEntry final : BaseEntry {
    static constexpr std::string_view tableName = "subscriptions";
    static constexpr std::string_view projectId = "projectId";
    static constexpr std::string_view products = "products";
    static constexpr std::string_view restoredTransaction = "restoredTransaction";
    static constexpr std::string_view alreadyRestored = "alreadyRestored";
    static constexpr std::string_view productIsChanged = "productIsChanged";
    static constexpr std::string_view alreadySendRestoreEvent = "alreadySendRestoreEvent";
  };
};

}  // namespace pelorino
