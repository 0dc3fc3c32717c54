#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "KeyStore.h"
#include "SynchronousQueue.h"

namespace pelorino {

/// When a stored item may be read, each as the constant that a query names.
enum class KeychainStoreAccessOptions {
  accessibleWhenUnlocked,
  accessibleWhenUnlockedThisDeviceOnly,
  accessibleAfterFirstUnlock,
  accessibleAfterFirstUnlockThisDeviceOnly,
  accessibleWhenPasscodeSetThisDeviceOnly,
};

/// Values by account name. Every operation builds a query of all its terms. Of these the key store
/// below, a file, knows only the account and the value. The file is readable by its owner alone and
/// is never synchronised.
///
/// Threads: any; `lock` serialises the operations of one instance.
/// Errors:  only lastResultCode() reports them.
class KeychainStore final {
 public:
  using Query = std::map<std::string, std::string, std::less<>>;

  /// Result codes.
  static constexpr std::int32_t noErr = 0;
  static constexpr std::int32_t ioErr = -36;
  static constexpr std::int32_t errSecItemNotFound = -25300;

  /// `items` outlives this object.
  explicit KeychainStore(KeyStore& items) : items_(items) {}

  // Interface only: the library leaves these as they are. Set before the first operation.
  std::string keyPrefix;
  std::optional<std::string> accessGroup;
  bool synchronizable = false;

  /// Held around deleteNoLock by its callers.
  SynchronousQueue lock{"com.pelorino.keychain"};

  /// Adds or replaces, in one step: the old item is there until the new one is.
  bool set(std::string_view data, std::string_view forKey,
           std::optional<KeychainStoreAccessOptions> withAccess = std::nullopt);

  /// The data, or with `asReference` a text that finds the item again.
  [[nodiscard]] std::optional<std::string> getData(std::string_view key, bool asReference = false);

  /// False when there was nothing to delete.
  bool deleteNoLock(std::string_view key);

  [[nodiscard]] Query addAccessGroupWhenPresent(Query query) const;
  [[nodiscard]] Query addSynchronizableIfRequired(Query query, bool addingItems) const;

  [[nodiscard]] const std::optional<Query>& lastQueryParameters() const {
    return lastQueryParameters_;
  }
  [[nodiscard]] std::int32_t lastResultCode() const { return lastResultCode_; }

 private:
  [[nodiscard]] Query query(std::string_view key) const;
  const std::string& remember(Query query, bool addingItems);
  bool finish(bool succeeded, std::int32_t codeOfFailure);

  KeyStore& items_;
  std::optional<Query> lastQueryParameters_;
  std::int32_t lastResultCode_ = noErr;
};

}  // namespace pelorino
