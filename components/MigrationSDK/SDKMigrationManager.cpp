#include "SDKMigrationManager.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "Logger.h"

namespace pelorino {
namespace {

constexpr const char* nativeFile = "UsersStorage";
constexpr const char* unityFile = "migrationData.json";

void logPassedOver(const char* file, const char* why) {
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("The data of an earlier version in {} are passed over: {}", file, why);
  });
}

/// Numbers are tried as integers first.
std::optional<PeopleValueType> cardValue(const ArchivedObject& archived) {
  if (const auto value = archived.integer()) return *value;
  if (auto value = archived.text()) return *std::move(value);
  if (const auto value = archived.real()) return *value;
  if (const auto value = archived.boolean()) return *value;
  if (archived.isNull()) return PeopleValueType();
  return std::nullopt;
}

PeopleProperties processUserCardInfo(const std::map<std::string, ArchivedObject>& preferences) {
  PeopleProperties properties;
  for (const auto& [key, archived] : preferences) {
    if (auto value = cardValue(archived)) properties.emplace(key, *std::move(value));
  }
  return properties;
}

}  // namespace

MigrationObject migrationObjectOf(std::string_view archive) {
  const KeyedArchive read(archive);
  const UsersStoragesMigration storages(read.root());
  const auto active = storages.dataStorages.find(storages.activeUserId);
  if (active == storages.dataStorages.end()) throw LegacyDataError("no data of the active user");
  DataStorageMigration user(active->second);
  return {.userId = std::move(user.userUid),
          .prevUserId = std::move(user.prevUid),
          .trackingAvailable = storages.trackingAvailable,
          .level = user.level,
          .userCard = user.playerPreferences
                          ? processUserCardInfo(user.playerPreferences->preferences)
                          : PeopleProperties(),
          .transactionIds = std::move(user.transactionIds),
          .tutorCompletedSteps = std::move(user.tutorCompletedSteps)};
}

MigrationObject migrationObjectOfJson(std::string_view json) {
  MigrationObject object;
  decode(JsonView(json), object);
  return object;
}

SDKMigrationManager::SDKMigrationManager(Tables tables, Files& files, std::string base,
                                         std::string applicationKey)
    : tables_(tables),
      files_(files),
      base_(std::move(base)),
      applicationKey_(std::move(applicationKey)) {}

void SDKMigrationManager::migrate(Project& project) const {
  if (base_.empty()) return;
  migrateFrom(nativeFile, getNativeMigratePath(), migrationObjectOf, project);
  migrateFrom(unityFile, getUnityMigratePath(), migrationObjectOfJson, project);
}

std::string SDKMigrationManager::getNativeMigratePath() const {
  return fmt::format("{}/pelorino_{}/{}", base_, applicationKey_, nativeFile);
}

std::string SDKMigrationManager::getUnityMigratePath() const {
  return fmt::format("{}/pelorino/{}/{}", base_, applicationKey_, unityFile);
}

void SDKMigrationManager::migrateFrom(const char* name, const std::string& path, Reader reader,
                                      Project& project) const {
  if (!files_.exists(path)) return;
  const auto [content, failure] = files_.read(path, maximalFile);
  if (!content) return logPassedOver(name, failure.c_str());
  std::optional<MigrationObject> object;
  try {
    object = reader(*content);
  } catch (const std::exception& error) {
    return logPassedOver(name, error.what());
  }
  migrateFromObject(*object, project);
}

void SDKMigrationManager::migrateFromObject(const MigrationObject& object, Project& project) const {
  const auto fail = [](const char* missing) {
    Logger::writeLog(PLRLogLevel::error,
                     [&] { return fmt::format("Migration failed: {} not found", missing); });
  };
  if (!object.userId) return fail("userId");
  if (!object.level) return fail("level");
  const RowId user = userOf(object, project);
  // Rows of a user whom the disk has refused would belong to nobody.
  const bool isStored = user != notStoredRowId;
  if (isStored) project.activeUserId = user;
  project.trackingAvailable = object.trackingAvailable;
  tables_.projects.update(project);
  if (isStored) insertRowsOf(user, object);
  for (const std::string& id : object.transactionIds) {
    static_cast<void>(tables_.payments.insert(std::make_shared<RealPaymentMark>(
        RealPaymentMark{.projectId = project.idKey, .orderId = id})));
  }
  // Last: a run that breaks off before is repeated at the next start.
  project.isMigrated = true;
  tables_.projects.update(project);
  Logger::writeLog(PLRLogLevel::debug,
                   [&] { return "Completely migrate data with data: \n" + object.description(); });
}

void SDKMigrationManager::insertRowsOf(RowId user, const MigrationObject& object) const {
  const auto card = std::make_shared<PeopleCard>();
  card->userId = user;
  card->properties = object.userCard;
  card->json = peopleJson(object.userCard);
  static_cast<void>(tables_.cards.insert(card));
  for (const std::int64_t step : object.tutorCompletedSteps) {
    static_cast<void>(tables_.tutorials.insert(
        std::make_shared<TutorialMark>(TutorialMark{.userId = user, .step = step})));
  }
}

/// The user of this name, who stays as he is, or a new one.
RowId SDKMigrationManager::userOf(const MigrationObject& object, const Project& project) const {
  const auto known = tables_.users.findOfProject(
      project.idKey, [&](const User& user) { return user.userId == object.userId; });
  if (known) return known->idKey;
  const auto user = std::make_shared<User>(project.idKey, object.userId);
  user->level = *object.level;
  user->previousUserId = object.prevUserId;
  static_cast<void>(tables_.users.insert(user));
  return user->idKey;
}

}  // namespace pelorino
