#include "Backend.h"

#include <cstdint>
#include <utility>

#include "BackendConfigUrl.h"

namespace pelorino {
namespace {

/// Turns a message into a JSON body with the headers that identify device and user.
class ContentFactory final {
 public:
  [[nodiscard]] static JSONContent makeContent(BackendMessage message) {
    const Identifiers& ids = message.identifiers;
    JSONContent content{.object = std::move(message.data), .headers = {}, .encodingKeys = {}};
    add(content, "DeviceId", std::optional(ids.deviceId));
    add(content, "PreviousDeviceId", ids.previousDeviceId);
    add(content, "UserId", ids.userId);
    add(content, "PreviousUserId", ids.previousUserId);
    add(content, "PelorinoId", ids.pelorinoId);
    add(content, "CrossPlatformPelorinoId", ids.crossPlatformPelorinoId);
    add(content, "PelorinoIdTimestamp", ids.pelorinoIdTimestamp);
    content.headers.emplace("X-Id-Encoding", "base64");
    return content;
  }

 private:
  /// A text, which goes out in Base64.
  static void add(JSONContent& content, const char* name, const std::optional<std::string>& value) {
    if (value) content.headers.emplace(name, *value);
    content.encodingKeys.emplace_back(name);
  }

  static void add(JSONContent& content, const char* name,
                  const std::optional<std::int64_t>& value) {
    if (value) content.headers.emplace(name, std::to_string(*value));
  }
};

}  // namespace

BackendMessage messageOf(const Reports& reports, const Identifiers& identifiers) {
  std::string uuids;
  for (const auto& report : reports.reports) {
    if (!uuids.empty()) uuids += ", ";
    uuids += report->uuid;
  }
  return {Encodable(reports.json()), identifiers, std::move(uuids)};
}

Response Backend::exchange(const char* path, const std::string& appID,
                           BackendMessage message) const {
  RequestBuilder builder = network_.post(BackendConfigUrl::baseApiUrl() + "/v2");
  builder.urlBuilder.path = path;
  builder.urlBuilder.setQueryParam("appId", appID);
  builder.requestIdentifier = std::move(message.requestIdentifier);
  builder.requestContent = ContentFactory::makeContent(std::move(message));
  return builder.build().send();
}

}  // namespace pelorino
