#pragma once

#include <functional>
#include <memory>

#include "Clock.h"
#include "Facts.h"
#include "HostFacts.h"

namespace pelorino {

/// A host's description, completed with what the operating system says.
///
/// Threads: any. Without state.
class ResolvedHost final : public HostFacts {
 public:
  using Described = std::function<std::shared_ptr<const HostDescription>()>;

  /// `described` is asked at every read. `system` and `clock` outlive this object.
  ResolvedHost(Described described, Facts& system, Clock& clock);

  std::optional<std::string> applicationName() override;
  std::optional<std::string> applicationVersion() override;
  std::optional<std::string> applicationBuildVersion() override;
  std::optional<std::string> bundleIdentifier() override;
  std::optional<std::string> bundleFolder() override;
  std::vector<std::string> preferredLanguages() override;
  std::optional<std::string> region() override;
  std::int64_t secondsFromGmt() override;
  std::string machine() override;
  std::string systemVersion() override;
  std::optional<HostScreen> screen() override;
  std::optional<std::string> vendorIdentifier() override;
  std::optional<std::string> advertisingIdentifier() override;
  bool asksBeforeTracking() override;
  std::optional<int> trackingAuthorization() override;
  bool hasStoreDiscounts() override;

  /// The folder in which the library makes its own.
  [[nodiscard]] std::string supportDirectory();

  /// The file of the values that outlive the application's data.
  [[nodiscard]] std::string keyStoreFile();

  [[nodiscard]] std::optional<std::string> receiptFile();

 private:
  [[nodiscard]] std::string locale(const char* category);
  [[nodiscard]] std::string baseFolder(const char* variable, const char* belowHome);
  [[nodiscard]] std::string folderName();

  Described described_;
  Facts& system_;
  Clock& clock_;
};

}  // namespace pelorino
