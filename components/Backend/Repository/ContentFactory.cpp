#include "ContentFactory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JSONContent.h"

namespace pelorino {
namespace {

class HeaderCollector {
 public:
  /// A text, which goes out in Base64.
  void add(const char* name, const std::optional<std::string>& value) {
    if (value) headers.emplace(name, *value);
    encodingKeys.emplace_back(name);
  }

  void add(const char* name, const std::optional<std::int64_t>& value) {
    if (value) headers.emplace(name, std::to_string(*value));
  }

  RequestContentProtocol::Headers headers;
  std::vector<std::string> encodingKeys;
};

}  // namespace

std::shared_ptr<const RequestContentProtocol> ContentFactory::makeContent(
    const BackendMessage& message) const {
  const Identifiers& ids = message.identifiers;
  HeaderCollector collector;
  collector.add("DeviceId", std::optional(ids.deviceId));
  collector.add("PreviousDeviceId", ids.previousDeviceId);
  collector.add("UserId", ids.userId);
  collector.add("PreviousUserId", ids.previousUserId);
  collector.add("PelorinoId", ids.pelorinoId);
  collector.add("CrossPlatformPelorinoId", ids.crossPlatformPelorinoId);
  collector.add("PelorinoIdTimestamp", ids.pelorinoIdTimestamp);
  collector.headers.emplace("X-Id-Encoding", "base64");
  return std::make_shared<JSONContent>(message.data, std::move(collector.headers),
                                       std::move(collector.encodingKeys), "application/json");
}

}  // namespace pelorino
