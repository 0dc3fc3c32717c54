#include "IdentifierGateway.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "KeychainStore.h"
#include "Logger.h"
#include "Text.h"

namespace pelorino {
namespace {

// Answers of the user on tracking.
constexpr int notDetermined = 0;
constexpr int authorized = 3;

// Names of stored items, frozen.
constexpr const char* currentId = "plr_v2_current_id";
constexpr const char* previousId = "plr_v2_prev_id";
constexpr const char* customUdid = "plr_v2_customUdid";
constexpr const char* olderIdfa = "plr_idfa";
constexpr const char* olderIdfv = "plr_idfv";

std::string accountOf(const std::string& appName, const char* name) {
  return appName + "-" + name;
}

/// Bytes that are no UTF-8 count as absent.
std::optional<std::string> decoded(std::optional<std::string> data) {
  if (data && repairUtf8(*data) != *data) data.reset();
  return data;
}

}  // namespace

bool TrackingHelper::trackingStatus(std::optional<int> status) {
  if (!status) {
    Logger::writeLog(PLRLogLevel::warning,
                     "AppTrackingTransparency.framework not included,please add "
                     "'AppTrackingTransparency' dependency");
    return false;
  }
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("ATTrackingManager trackingAuthorizationStatus equals [{}]", *status);
  });
  return *status == authorized || *status == notDetermined;
}

IdentifierCollector::IdentifierCollector(HostFacts& facts, KeyStore& keychain, Random& random)
    : facts_(facts), keychain_(keychain), random_(random) {}

DeviceUIDs IdentifierCollector::getUIDs() const {
  const std::string fallback = random_.uuid();
  const auto advertising = idfa();
  const std::string candidate = advertising ? *advertising : idfv().value_or(fallback);
  const auto appName = facts_.applicationName();
  if (!appName) return {fallback, std::nullopt};

  const auto saved = getSavedUID(*appName, currentId);
  if (saved && !saved->empty() && *saved != candidate) {
    // The predecessor goes first: a process that dies between the two writes then does both again.
    setSavedUID(*saved, *appName, previousId);
    setSavedUID(candidate, *appName, currentId);
    return {candidate, saved};
  }
  if (!saved || saved->empty()) setSavedUID(candidate, *appName, currentId);

  if (auto previous = getSavedUID(*appName, previousId)) return {candidate, std::move(previous)};
  auto migrated = tryMigratePrevUid(*appName, previousId);
  if (migrated == candidate) migrated.reset();
  return {candidate, std::move(migrated)};
}

std::string IdentifierCollector::uuid() const {
  const auto appName = facts_.applicationName();
  if (!appName) return random_.uuid();
  if (const auto saved = getSavedUID(*appName, customUdid)) return *saved;
  std::string made = random_.uuid();
  setSavedUID(made, *appName, customUdid);
  return made;
}

std::optional<std::string> IdentifierCollector::idfv() const {
  return facts_.vendorIdentifier();
}

std::optional<std::string> IdentifierCollector::idfa() const {
  auto identifier = facts_.advertisingIdentifier();
  if (!identifier || identifier->find_first_not_of("-0") == std::string::npos) return std::nullopt;
  return identifier;
}

bool IdentifierCollector::isTrackingAllowed() const {
  if (facts_.asksBeforeTracking()) {
    return TrackingHelper::trackingStatus(facts_.trackingAuthorization());
  }
  return idfa().has_value();
}

void IdentifierCollector::clearKeychain(HostFacts& facts, KeyStore& keychain) {
  const auto remove = [&](const std::string& account) {
    KeychainStore store(keychain);
    store.lock.sync([&] { store.deleteNoLock(account); });
  };
  const auto appName = facts.applicationName();
  for (const char* name : {currentId, previousId, customUdid}) {
    remove(name);
    if (appName) remove(accountOf(*appName, name));
  }
}

std::optional<std::string> IdentifierCollector::getSavedUID(const std::string& appName,
                                                            const char* account) const {
  return decoded(KeychainStore(keychain_).getData(accountOf(appName, account)));
}

void IdentifierCollector::setSavedUID(const std::string& uid, const std::string& appName,
                                      const char* account) const {
  KeychainStore(keychain_).set(uid, accountOf(appName, account));
}

std::optional<std::string> IdentifierCollector::getOlderSavedUID(const char* account) const {
  return decoded(KeychainStore(keychain_).getData(account));
}

/// The identifier that an older generation of the library has left, kept from now on as the
/// previous one, also when it is the one in force: the next process then finds it there.
std::optional<std::string> IdentifierCollector::tryMigratePrevUid(const std::string& appName,
                                                                  const char* account) const {
  auto older = getOlderSavedUID(olderIdfa);
  if (!older) older = getOlderSavedUID(olderIdfv);
  if (!older) return std::nullopt;
  older->resize(std::min(older->find(':'), older->size()));
  setSavedUID(*older, appName, account);
  return older;
}

}  // namespace pelorino
