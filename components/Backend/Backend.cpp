#include "Backend.h"

#include "BackendMessage.h"

namespace pelorino {
namespace {

std::string joinedUuids(const Reports& reports) {
  std::string uuids;
  for (const auto& report : reports.reports) {
    if (!uuids.empty()) uuids += ", ";
    uuids += report->uuid;
  }
  return uuids;
}

}  // namespace

ConfigAnswer Backend::requestConfig(const std::string& appID, const Identifiers& identifiers,
                                    const Versions& versions) {
  return repository_->requestConfig(appID, {Encodable(versions), identifiers});
}

BackendIdentifiers::Outcome Backend::requestIdentification(const std::string& appID,
                                                           std::int64_t attempt,
                                                           const Identifiers& identifiers) {
  return repository_->requestIdentification(
      appID, {Encodable(BackendIdentifiers::Attempt{attempt}), identifiers});
}

std::optional<PLRError> Backend::sendAnalytics(const std::string& appID,
                                               const Identifiers& identifiers,
                                               const Reports& reports) {
  return repository_->sendAnalytics(appID, {Encodable(reports.json()), identifiers},
                                    joinedUuids(reports));
}

PLRVerifyResponse Backend::sendVerifyReceipt(const std::string& appID, const Receipt& receipt,
                                             const Identifiers& identifiers) {
  return repository_->sendVerifyReceipt(appID, {Encodable(receipt), identifiers});
}

std::optional<MessagingConfig> Backend::requestMessagingConfig(
    const std::string& appID, const MessagingRequestObject& request,
    const Identifiers& identifiers) {
  return repository_->requestMessagingConfig(appID, {Encodable(request), identifiers});
}

}  // namespace pelorino
