#pragma once

#include <optional>
#include <string>

#include "HostFacts.h"
#include "KeyStore.h"
#include "Lazy.h"
#include "PlatformData.h"
#include "Random.h"

namespace pelorino {

/// Reads the user's answer on tracking.
class TrackingHelper final {
 public:
  TrackingHelper() = delete;

  /// True for an authorised status and for one that is not determined yet. `status` is absent where
  /// the host does not ask its user; that counts as refused and is logged at `warning`.
  [[nodiscard]] static bool trackingStatus(std::optional<int> status);
};

/// Decides by which identifier the backend knows this device, and keeps it, its predecessor and a
/// random identifier in the keychain, apart from the application's data.
///
/// Threads: the library's queues, one at a time; it reads and writes a file.
/// Errors:  none; what cannot be read counts as absent, what cannot be written is tried again in
///          the next process.
class IdentifierCollector final {
 public:
  /// All outlive this object.
  IdentifierCollector(HostFacts& facts, KeyStore& keychain, Random& random);

  /// The identifier in force and the one before it. Writes the keychain when the device is new or
  /// has changed its identity.
  [[nodiscard]] DeviceUIDs getUIDs() const;

  /// A random identifier that is made once.
  [[nodiscard]] std::string uuid() const;

  /// The vendor's identifier of the device.
  [[nodiscard]] std::optional<std::string> idfv() const;

  /// The advertising identifier; absent when it is all zeros, as it is where tracking is denied.
  [[nodiscard]] std::optional<std::string> idfa() const;

  [[nodiscard]] bool isTrackingAllowed() const;

  /// Deletes the three identifiers, those of this application and those under their bare names.
  static void clearKeychain(HostFacts& facts, KeyStore& keychain);

 private:
  [[nodiscard]] std::optional<std::string> getSavedUID(const std::string& appName,
                                                       const char* account) const;
  void setSavedUID(const std::string& uid, const std::string& appName, const char* account) const;
  [[nodiscard]] std::optional<std::string> getOlderSavedUID(const char* account) const;
  [[nodiscard]] std::optional<std::string> tryMigratePrevUid(const std::string& appName,
                                                             const char* account) const;

  HostFacts& facts_;
  KeyStore& keychain_;
  Random& random_;
};

/// Puts together what the collector decides.
class IdentifierInfoRepository final {
 public:
  explicit IdentifierInfoRepository(IdentifierCollector collector) : collector_(collector) {}

  [[nodiscard]] IdentifierData read() const {
    // In this order: the first writes the keychain, the others do not depend on it.
    IdentifierData data;
    data.deviceUIDs = collector_.getUIDs();
    data.isLimitAdTrackingEnabled = !collector_.isTrackingAllowed();
    data.idfv = collector_.idfv();
    data.idfa = collector_.idfa();
    data.uuid = collector_.uuid();
    return data;
  }

 private:
  IdentifierCollector collector_;
};

/// The device's identifiers, decided once in a process. Any thread of the library.
class IdentifierGateway final {
 public:
  explicit IdentifierGateway(IdentifierInfoRepository identifierInfoRepository)
      : identifierInfoRepository_(identifierInfoRepository) {}

  [[nodiscard]] IdentifierData getIdentifierData() {
    return identifierData_.get([&] { return identifierInfoRepository_.read(); });
  }

 private:
  IdentifierInfoRepository identifierInfoRepository_;
  Lazy<IdentifierData> identifierData_;
};

}  // namespace pelorino
