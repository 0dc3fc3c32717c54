#include "KeychainStore.h"

#include <array>
#include <cstddef>
#include <utility>

namespace pelorino {
namespace {

constexpr const char* account = "kSecAttrAccount";

constexpr std::array<const char*, 5> accessConstants = {
    "kSecAttrAccessibleWhenUnlocked",
    "kSecAttrAccessibleWhenUnlockedThisDeviceOnly",
    "kSecAttrAccessibleAfterFirstUnlock",
    "kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly",
    "kSecAttrAccessibleWhenPasscodeSetThisDeviceOnly",
};

}  // namespace

bool KeychainStore::set(std::string_view data, std::string_view forKey,
                        std::optional<KeychainStoreAccessOptions> withAccess) {
  return lock.sync([&] {
    Query adding = query(forKey);
    adding["kSecValueData"] = data;
    adding["kSecAttrAccessible"] = accessConstants[static_cast<std::size_t>(
        withAccess.value_or(KeychainStoreAccessOptions::accessibleWhenUnlocked))];
    return finish(items_.set(remember(std::move(adding), true), data), ioErr);
  });
}

std::optional<std::string> KeychainStore::getData(std::string_view key, bool asReference) {
  return lock.sync([&] {
    Query matching = query(key);
    matching["kSecMatchLimit"] = "kSecMatchLimitOne";
    matching[asReference ? "kSecReturnPersistentRef" : "kSecReturnData"] = "kCFBooleanTrue";
    const std::string& name = remember(std::move(matching), false);
    auto data = items_.get(name);
    finish(data.has_value(), errSecItemNotFound);
    return data && asReference ? std::optional(name) : data;
  });
}

bool KeychainStore::deleteNoLock(std::string_view key) {
  return finish(items_.remove(remember(query(key), false)), errSecItemNotFound);
}

KeychainStore::Query KeychainStore::addAccessGroupWhenPresent(Query query) const {
  if (accessGroup) query["kSecAttrAccessGroup"] = *accessGroup;
  return query;
}

KeychainStore::Query KeychainStore::addSynchronizableIfRequired(Query query,
                                                                bool addingItems) const {
  if (synchronizable) {
    query["kSecAttrSynchronizable"] = addingItems ? "kCFBooleanTrue" : "kSecAttrSynchronizableAny";
  }
  return query;
}

KeychainStore::Query KeychainStore::query(std::string_view key) const {
  return {{"kSecClass", "kSecClassGenericPassword"}, {account, keyPrefix + std::string(key)}};
}

/// Keeps the completed query and gives the account that it names.
const std::string& KeychainStore::remember(Query query, bool addingItems) {
  lastQueryParameters_ =
      addSynchronizableIfRequired(addAccessGroupWhenPresent(std::move(query)), addingItems);
  return lastQueryParameters_->find(account)->second;
}

bool KeychainStore::finish(bool succeeded, std::int32_t codeOfFailure) {
  lastResultCode_ = succeeded ? noErr : codeOfFailure;
  return succeeded;
}

}  // namespace pelorino
